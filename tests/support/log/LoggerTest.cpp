#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkLogger.h"
#include "ClsBase.h"
#include "TempFolder.h"
#include "TickCount.h"
#include "XString.h"

namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
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
  for (const auto& [value, content] :
       {std::pair("plain \"text\" 'here'", "plain \"text\" 'here'"),
        std::pair("a\nb", "<![CDATA[a\nb]]>"), std::pair("a\tb", "<![CDATA[a\tb]]>"),
        std::pair("a>b", "<![CDATA[a>b]]>"), std::pair("<![CDATA[a]]>", "<![CDATA[a]]>"),
        std::pair("<![CDATA[a", "<![CDATA[<![CDATA[a]]>")}) {
    _ckLogger log;
    log.LogData("v", value);
    EXPECT_THAT(xmlOf(log), HasSubstr("<v>" + std::string(content) + "</v>"));
  }
}

TEST(LogTree, TaggedDataOfOtherTypes) {
  _ckLogger log;
  log.LogData("my tag", nullptr);
  EXPECT_FALSE(log.LogData(" \r\n", "lost"));
  log.LogDataBool("yes", true);
  log.LogDataInt64("int64", -9'000'000'000LL);
  log.LogHex("hex", 0xBEEF);
  XString text;
  text.setFromUtf8("0123456789");
  log.LogStringMax("cut", text, 9);
  log.LogStringMax("whole", text, 10);
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n  my_tag: (NULL)\n  yes: True\n  int64: -9000000000\n  hex: 0xbeef\n"
            "  cut: 012345678...\n  whole: 0123456789\n--KestrumLog\n");
  log.ClearLog();
  log.MemoryAllocFailed(3, 512);
  errno = ENOENT;
  log.LogLastErrorOS();
  EXPECT_EQ(errno, ENOENT);
  log.LogElapsedMs("past", ckTickCount() - 5);
  // Of a counter that wrapped meanwhile nothing is told.
  log.LogElapsedMs("future", ckTickCount() + 1'000'000);
  log.LogElapsedMs("long ago", ckTickCount() - 900'000'000);
  EXPECT_THAT(textOf(log),
              MatchesRegex("KestrumLog:\n  Memory allocation failed.\n  failurePoint: 3\n"
                           "  numBytes: 512\n  errno: 2\n"
                           "  osErrorMessage: No such file or directory\n"
                           "  past: Elapsed time: [0-9]+ millisec\n--KestrumLog\n"));
}

TEST(LogTree, ContextsThatAreEmptyOrLeftTooOften) {
  _ckLogger log;
  log.LeaveContext();
  { const LogContextExitor top(log, "top"); }
  {
    const LogContextExitor outer(log, "outer");
    log.LogInfo("line");
    { const LogContextExitor inner(log, "inner"); }
    { const LogContextExitor unwanted(log, "unwanted", false); }
  }
  log.LeaveContext();
  log.LogInfo("under the root");
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n  top:\n  --top\n  outer:\n    line\n  --outer\n"
            "  under the root\n--KestrumLog\n");
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
  EXPECT_THAT(textOf(log), ContainsRegex("  slow\\([1-9][0-9]*ms\\):\n"));
  EXPECT_THAT(htmlOf(log), ContainsRegex("slow\\([1-9][0-9]*ms\\):<blockquote>"));
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

TEST(LogTree, NestsAsDeepAsMemoryGoes) {
  constexpr int kDepth = 100'000;
  _ckLogger log;
  for (int i = 0; i < kDepth; ++i) ASSERT_TRUE(log.EnterContext("d", false));
  EXPECT_TRUE(log.LogInfo("down here"));
  const std::string html = htmlOf(log);
  EXPECT_EQ(html.size(), 25U + 15 + 15 + kDepth * (16U + 15));
  EXPECT_THAT(html.substr(html.size() / 2), HasSubstr("down here<br>\r\n"));
}

TEST(LogSwitches, HaveAStack) {
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
  log.popNullLogging();  // one too many changes nothing
  EXPECT_FALSE(log.m_nullLogging);
  EXPECT_EQ(textOf(log), "KestrumLog:\n  seen\n--KestrumLog\n");
}

TEST(LogNull, TakesEverythingAndHasNothing) {
  LogNull log;
  log.m_nullLogging = false;
  log.pushVerboseLogging(true);
  EXPECT_TRUE(log.m_nullLogging && !log.m_verbose);
  EXPECT_TRUE(log.EnterContext("context", true) && log.LogError("e") && log.LogInfo("i") &&
              log.LogXml("<x/>") && log.LogData("tag", "value") && log.LeaveContext());
  EXPECT_TRUE(log.DbgLogInfo("i") && log.DbgLogData("tag", "value") && log.DbgLogInt("n", 1));
  EXPECT_EQ(textOf(log) + xmlOf(log) + htmlOf(log), "");
}

class DebugFile : public testing::Test {
 protected:
  DebugFile() { writeTo(path); }

  void writeTo(const std::string& file) {
    XString name;
    name.setFromUtf8(file.c_str());
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
  log.LeaveContext();  // a surplus one doesn't go below the margin
  log.m_nullLogging = true;
  log.DbgLogInfo("lost");
  log.DbgLogData("tag", "lost");
  log.DbgLogInt("lost", 6);
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
            "    (leaveContext)\n"
            "(leaveContext)\n");
}

TEST_F(DebugFile, IndentsEachLevelUntilAClearAndEndsWithAnEmptyPath) {
  for (int i = 0; i < 150; ++i) log.EnterContext("c", true);
  log.LogInfo("deep");
  log.ClearLog();
  log.LogInfo("line");
  writeTo(folder.file("no/such/folder/debug.log"));
  EXPECT_TRUE(log.LogInfo("two"));
  writeTo("");
  EXPECT_TRUE(log.LogInfo("three"));
  EXPECT_THAT(folder.read("debug.log"), EndsWith("\n" + std::string(600, ' ') + "deep\nline\n"));
}

// Nobody waits for who may read from a pipe.
TEST_F(DebugFile, MayBeAPipe) {
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  writeTo(pipe);
  EXPECT_TRUE(log.LogInfo("to nobody"));
  EXPECT_FALSE(log.SaveXML(false, pipe.c_str()));
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_TRUE(log.LogInfo("to the reader"));
  char bytes[100] = {};
  EXPECT_GT(::read(reader, bytes, sizeof bytes - 1), 0);
  EXPECT_STREQ(bytes, "to the reader\n");
  // What a full pipe can't take is lost, and nothing more.
  EXPECT_TRUE(log.LogInfo(std::string(200'000, 'x').c_str()));
  EXPECT_FALSE(log.SaveXML(false, pipe.c_str()));
  ::close(reader);
}

// For the thread sanitizer, too.
TEST(LogThreads, TwoMayUseOneObject) {
  class ClsWorker : public ClsBase {
   public:
    void work() {
      const CritSecExitor lock(this);
      const LogContextExitor context(*this, "Work");
      m_log.LogDataLong("n", 1);
    }
  } worker;
  _ckLogger log;
  const auto work = [&] {
    for (int i = 0; i < 300; ++i) {
      {
        const LogContextExitor context(log, "c");
        log.LogInfo("line");
      }
      if (i % 100 == 0) textOf(log);
      if (i % 130 == 0) log.m_verbose = !log.m_verbose;
      worker.work();
      XString text;
      worker.get_LastErrorText(text);
      ASSERT_THAT(text.getUtf8(), EndsWith("    n: 1\n  --Work\n--KestrumLog\n"));
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_THAT(textOf(log), EndsWith("--KestrumLog\n"));
}

}  // namespace
