#include <cerrno>
#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkLogger.h"
#include "LogTesting.h"
#include "TickCount.h"

namespace {

using fixture::htmlOf;
using fixture::textOf;
using fixture::xmlOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST(LogTree, AFreshLogIsItsRoot) {
  _ckLogger log;
  EXPECT_EQ(textOf(log), "KestrumLog:\n--KestrumLog\n");
  EXPECT_EQ(htmlOf(log), "KestrumLog:<blockquote>\r\n</blockquote>\r\n");
  EXPECT_EQ(xmlOf(log), "<KestrumLog>\r\n</KestrumLog>\r\n");
}

TEST(LogTree, EachKindOfEntryHasItsThreeRenderings) {
  _ckLogger log;
  {
    const LogContextExitor connect(log, "Connect");
    log.LogInfo("a & b");
    const LogContextExitor inner(log, "inner");
    log.LogError("x < y");
    log.LogXml("<raw/>");
    log.LogData(" host name ", "scale");
  }
  EXPECT_EQ(textOf(log),
            "KestrumLog:\n"
            "  Connect:\n"
            "    a & b\n"
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
            "a &amp; b<br>\r\n"
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
            "    <info><![CDATA[a & b]]></info>\r\n"
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

TEST(LogTree, ElapsedTimeIsLoggedUnlessTheCounterWrapped) {
  _ckLogger log;
  log.LogElapsedMs("sane", ckTickCount());
  log.LogElapsedMs("future", ckTickCount() + 60'000);
  EXPECT_THAT(textOf(log), HasSubstr("sane: Elapsed time: "));
  EXPECT_THAT(textOf(log), HasSubstr(" millisec\n"));
  EXPECT_THAT(textOf(log), Not(HasSubstr("future")));
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

TEST(LogTree, AContextOpenedBeforeTimesWereAskedForHasNone) {
  _ckLogger log;
  log.EnterContext("early", true);
  log.m_verbose = true;
  log.LeaveContext();
  EXPECT_THAT(textOf(log), HasSubstr("  early:\n"));
  EXPECT_THAT(xmlOf(log), HasSubstr("<early>"));
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

TEST(LogTree, ANullLogTakesEverythingAndKeepsNothing) {
  LogNull log;
  EXPECT_TRUE(log.LogError("e"));
  EXPECT_TRUE(log.LogData("t", "v"));
  EXPECT_TRUE(log.EnterContext("c", true));
  EXPECT_TRUE(log.LeaveContext());
  EXPECT_EQ(textOf(log), "");
}

}  // namespace
