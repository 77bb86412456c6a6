#include <cerrno>
#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkLogger.h"
#include "ClsBase.h"
#include "TempFolder.h"
#include "TickCount.h"
#include "XString.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

std::string rendered(LogBase& log, bool (LogBase::*render)(StringBuffer&)) {
  StringBuffer out;
  (log.*render)(out);
  return std::string(out.view());
}

std::string textOf(LogBase& log) { return rendered(log, &LogBase::getText); }
std::string htmlOf(LogBase& log) { return rendered(log, &LogBase::getHtml); }
std::string xmlOf(LogBase& log) { return rendered(log, &LogBase::getXml); }

TEST(LogTree, EachKindOfEntryHasItsThreeRenderings) {
  _ckLogger log;
  {
    const LogContextExitor connect(log, "Connect");
    log.LogInfo("a & \"b\"");
    const LogContextExitor inner(log, "inner");
    log.LogError("x < y");
    log.LogXml("<raw/>");
    log.LogData(" host name ", "scale");
  }
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n"
            "  Connect:\n"
            "    a & \"b\"\n"
            "    inner:\n"
            "      x < y\n"
            "      <raw/>\n"
            "      host_name: scale\n"
            "    --inner\n"
            "  --Connect\n"
            "--KestrumLog\n");
  EXPECT_EQ(htmlOf(log),
            "KestrumLog:<blockquote>\r\n"
            "Connect:<blockquote>\r\n"
            "a &amp; &quot;b&quot;<br>\r\n"
            "inner:<blockquote>\r\n"
            "x &lt; y<br>\r\n"
            "&lt;raw/&gt;<br>\r\n"
            "host_name: scale<br>\r\n"
            "</blockquote>\r\n"
            "</blockquote>\r\n"
            "</blockquote>\r\n");
  EXPECT_EQ(xmlOf(log),
            "<KestrumLog>\r\n"
            "  <Connect>\r\n"
            "    <info><![CDATA[a & \"b\"]]></info>\r\n"
            "    <inner>\r\n"
            "      <error><![CDATA[x < y]]></error>\r\n"
            "      <raw/>\r\n"
            "      <host_name>scale</host_name>\r\n"
            "    </inner>\r\n"
            "  </Connect>\r\n"
            "</KestrumLog>\r\n");
}

TEST(LogTree, AValueIsWrappedUnlessItIsWrappedAlready) {
  struct {
    const char* value;
    const char* element;
  } const cases[] = {
      {"plain \"text\" 'here'", "<v>plain \"text\" 'here'</v>"},
      {"a\nb", "<v><![CDATA[a\nb]]></v>"},
      {"a\tb", "<v><![CDATA[a\tb]]></v>"},
      {"a>b", "<v><![CDATA[a>b]]></v>"},
      {"<![CDATA[a]]>", "<v><![CDATA[a]]></v>"},
      {"<![CDATA[a", "<v><![CDATA[<![CDATA[a]]></v>"},
  };
  for (const auto& c : cases) {
    _ckLogger log;
    log.LogData("v", c.value);
    EXPECT_THAT(xmlOf(log), HasSubstr(c.element)) << c.value;
  }
}

TEST(LogTree, TaggedDataOfOtherTypes) {
  _ckLogger log;
  log.LogData("my tag", nullptr);
  EXPECT_FALSE(log.LogData(" \r\n", "lost"));
  log.LogDataBool("yes", true);
  log.LogDataBool("no", false);
  log.LogDataLong("long", -7);
  log.LogDataUint32("uint", 4'294'967'295U);
  log.LogDataInt64("int64", -9'000'000'000LL);
  log.LogHex("hex", 0xBEEF);
  XString text;
  text.setFromUtf8("01234567890123456789");
  log.LogDataX("x", text);
  log.LogStringMax("cut", text, 10);
  log.LogStringMax("whole", text, 20);
  log.MemoryAllocFailed(3, 512);
  errno = ENOENT;
  log.LogLastErrorOS();
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n"
            "  my_tag: (NULL)\n"
            "  yes: True\n"
            "  no: False\n"
            "  long: -7\n"
            "  uint: 4294967295\n"
            "  int64: -9000000000\n"
            "  hex: 0xbeef\n"
            "  x: 01234567890123456789\n"
            "  cut: 0123456789...\n"
            "  whole: 01234567890123456789\n"
            "  Memory allocation failed.\n"
            "  failurePoint: 3\n"
            "  numBytes: 512\n"
            "  errno: 2\n"
            "  osErrorMessage: No such file or directory\n"
            "--KestrumLog\n");
}

TEST(LogTree, AnEmptyContextVanishesUnlessItStandsUnderTheRoot) {
  _ckLogger log;
  { const LogContextExitor top(log, "top"); }
  {
    const LogContextExitor outer(log, "outer");
    log.LogInfo("line");
    { const LogContextExitor inner(log, "inner"); }
    { const LogContextExitor unwanted(log, "unwanted", false); }
  }
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n"
            "  top:\n"
            "  --top\n"
            "  outer:\n"
            "    line\n"
            "  --outer\n"
            "--KestrumLog\n");
}

TEST(LogTree, SurplusLeavesDontCloseTheRoot) {
  _ckLogger log;
  log.LeaveContext();
  log.EnterContext("a", false);
  log.LeaveContext();
  log.LeaveContext();
  log.LogInfo("under the root");
  EXPECT_THAT(textOf(log), HasSubstr("\n  under the root\n--KestrumLog\n"));
}

TEST(LogTree, VerboseContextsShowTheirTime) {
  _ckLogger log;
  log.m_verbose = true;
  log.EnterContext("slow", true);
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  // An open context has no time in the text, and its start in the other renderings.
  EXPECT_THAT(textOf(log), HasSubstr("  slow:\n"));
  EXPECT_THAT(xmlOf(log), HasSubstr("<slow ms=\""));
  log.LeaveContext();
  EXPECT_THAT(textOf(log), testing::ContainsRegex("  slow\\([1-9][0-9]*ms\\):\n"));
  EXPECT_THAT(htmlOf(log), testing::ContainsRegex("slow\\([1-9][0-9]*ms\\):<blockquote>"));
}

TEST(LogTree, AFullContextDropsWhatComes) {
  _ckLogger log;
  log.EnterContext("loop", false);
  for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(log.LogInfo("x"));
  EXPECT_FALSE(log.LogInfo("one too many"));
  // A context that finds no room isn't opened, so that leaving it closes the one around it.
  EXPECT_FALSE(log.EnterContext("no room", false));
  log.LeaveContext();
  EXPECT_TRUE(log.LogInfo("a level higher"));
  EXPECT_THAT(textOf(log), EndsWith("    x\n  --loop\n  a level higher\n--KestrumLog\n"));
  EXPECT_THAT(textOf(log), Not(HasSubstr("one too many")));
}

TEST(LogTree, EndlessNestingCostsNeitherStackNorMemory) {
  _ckLogger log;
  for (int i = 0; i < 100'000; ++i) log.EnterContext("deeper", false);
  EXPECT_LT(textOf(log).size(), 3'000'000U);
  for (int i = 0; i < 100'000; ++i) log.LeaveContext();
  log.ClearLog();
  EXPECT_EQ(textOf(log), "KestrumLog:\n--KestrumLog\n");
}

TEST(LogTree, WhileNullLoggingNothingIsAdded) {
  _ckLogger log;
  log.pushNullLogging(true);
  log.LogError("e");
  log.EnterContext("c", true);
  log.LogDataLong("n", 1);
  log.LeaveContext();
  log.pushNullLogging(false);
  log.LogInfo("seen");
  log.popNullLogging();
  log.LogInfo("unseen");
  log.popNullLogging();
  EXPECT_FALSE(log.m_nullLogging);
  log.popNullLogging();  // one too many changes nothing
  EXPECT_EQ(textOf(log), "KestrumLog:\n  seen\n--KestrumLog\n");
}

/// Lines become a tree when somebody reads, or when there are many.
TEST(LogTree, IsTheSameWheneverItIsRead) {
  const std::vector<std::string> texts = {"", "Socket", " a tag ", std::string(400, 'x'),
                                          std::string(3000, 'y')};
  std::mt19937 random(7);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int round = 0; round < 300; ++round) {
    _ckLogger read;
    _ckLogger unread;
    const std::size_t length = 1 + below(60);
    for (std::size_t i = 0; i < length; ++i) {
      const std::size_t choice = below(19);
      const char* text = below(9) == 0 ? nullptr : texts[below(texts.size())].c_str();
      for (_ckLogger* log : {&read, &unread}) {
        switch (choice) {
          case 0: log->ClearLog(); break;
          case 1: log->m_nullLogging = !log->m_nullLogging; break;
          case 2: log->LogXml(text); break;
          case 3:
          case 4: log->LogError(text); break;
          case 5:
          case 6: log->LogData(text == nullptr ? "tag" : text, text); break;
          case 7:
          case 8:
          case 9: log->EnterContext(text, true); break;
          case 10:
          case 11:
          case 12: log->LeaveContext(); break;
          default: log->LogInfo(text); break;
        }
      }
      textOf(read);
    }
    EXPECT_EQ(textOf(read), textOf(unread)) << round;
    EXPECT_EQ(xmlOf(read), xmlOf(unread)) << round;
  }
}

TEST(LogNull, TakesEverythingAndHasNothing) {
  LogNull log;
  EXPECT_TRUE(log.EnterContext("context", true) && log.LogError("e") && log.LogInfo("i") &&
              log.LogXml("<x/>") && log.LogData("tag", "value") && log.LeaveContext());
  EXPECT_TRUE(log.DbgLogInfo("i") && log.DbgLogData("tag", "value") && log.DbgLogInt("n", 1));
  log.ClearLog();
  EXPECT_EQ(textOf(log) + xmlOf(log) + htmlOf(log), "");
  const fixture::TempFolder folder;
  EXPECT_TRUE(log.SaveXML(false, folder.file("log.xml").c_str()));
  EXPECT_FALSE(std::filesystem::exists(folder.file("log.xml")));
}

TEST(LogTree, ElapsedTimeIsToldUnlessTheCounterWrapped) {
  _ckLogger log;
  log.LogElapsedMs("past", ckTickCount() - 5);
  log.LogElapsedMs("future", ckTickCount() + 1'000'000);
  log.LogElapsedMs("long ago", ckTickCount() - 900'000'000);
  EXPECT_THAT(textOf(log), testing::MatchesRegex("KestrumLog:\n"
                                                 "  past: Elapsed time: [0-9]+ millisec\n"
                                                 "--KestrumLog\n"));
}

TEST(LogTree, ThePushBeyondTheStackIsIgnored) {
  _ckLogger log;
  for (int i = 0; i < 64; ++i) log.pushVerboseLogging(true);
  log.pushVerboseLogging(false);
  EXPECT_TRUE(log.m_verbose);
  for (int i = 0; i < 63; ++i) log.popVerboseLogging();
  EXPECT_TRUE(log.m_verbose);
  log.popVerboseLogging();
  EXPECT_FALSE(log.m_verbose);
}

class DebugFile : public testing::Test {
 protected:
  DebugFile() {
    XString name;
    name.setFromUtf8(path.c_str());
    log.put_DebugLogFilePath(name);
  }

  fixture::TempFolder folder;
  const std::string path = folder.file("debug.log");
  _ckLogger log;
};

TEST_F(DebugFile, FollowsTheLogLineByLine) {
  log.EnterContext("Connect", true);
  log.LogInfo("trying");
  log.LogData("the host", "scale");
  log.EnterContext("inner", true);
  log.LogError("refused");
  log.DbgLogInfo("only here");
  log.DbgLogData("tag", "value");
  log.DbgLogInt("n", 5);
  log.LeaveContext();
  log.LeaveContext();
  EXPECT_EQ(folder.read("debug.log"),
            "Connect:\n"
            "    trying\n"
            "    the_host: scale\r\n"
            "    inner:\n"
            "        refused\n"
            "only here\n"
            "tag: value\n"
            "n: 5\n"
            "        (leaveContext)\n"
            "    (leaveContext)\n");
}

TEST_F(DebugFile, StartsAtTheMarginAfterAClear) {
  log.EnterContext("a", true);
  log.EnterContext("b", true);
  log.ClearLog();
  log.LeaveContext();  // a surplus one doesn't go below the margin
  log.LogInfo("line");
  EXPECT_EQ(folder.read("debug.log"), "a:\n    b:\n(leaveContext)\nline\n");
}

TEST_F(DebugFile, EndsWithAnEmptyPathAndIgnoresABadOne) {
  XString name;
  log.get_DebugLogFilePath(name);
  EXPECT_EQ(name.getUtf8(), path);
  log.LogInfo("one");
  name.setFromUtf8((folder.file("no/such/folder/debug.log")).c_str());
  log.put_DebugLogFilePath(name);
  EXPECT_TRUE(log.LogInfo("two"));
  name.clear();
  log.put_DebugLogFilePath(name);
  EXPECT_TRUE(log.LogInfo("three"));
  log.get_DebugLogFilePath(name);
  EXPECT_TRUE(name.isEmpty());
  EXPECT_EQ(folder.read("debug.log"), "one\n");
}

class ClsWorker : public ClsBase {
 public:
  void work() {
    const CritSecExitor lock(this);
    const LogContextExitor context(*this, "Work");
    m_log.LogDataLong("n", 1);
  }
};

template <typename Work>
void inTwoThreads(Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
}

TEST(LogThreads, TwoMayWriteAndReadOneLog) {
  _ckLogger log;
  inTwoThreads([&] {
    for (int i = 0; i < 500; ++i) {
      log.EnterContext("c", true);
      log.LogInfo("line");
      log.LogDataLong("i", i);
      log.LeaveContext();
      if (i % 100 == 0) textOf(log);
      if (i % 130 == 0) log.m_verbose = !log.m_verbose;
    }
  });
  EXPECT_THAT(textOf(log), EndsWith("--KestrumLog\n"));
}

TEST(LogThreads, CallsOfOneObjectDontMix) {
  ClsWorker worker;
  inTwoThreads([&] {
    for (int i = 0; i < 300; ++i) {
      worker.work();
      XString text;
      worker.get_LastErrorText(text);
      ASSERT_THAT(text.getUtf8(), EndsWith("    n: 1\n  --Work\n--KestrumLog\n"));
    }
  });
}

}  // namespace
