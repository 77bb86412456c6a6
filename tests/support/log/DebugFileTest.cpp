#include <gtest/gtest.h>

#include "CkLogger.h"
#include "TempFolder.h"

namespace {

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

TEST_F(DebugFile, TellsTheTimeOfATimedContext) {
  log.m_verbose = true;
  log.EnterContext("a", true);
  log.LeaveContext();
  const std::string content = folder.read("debug.log");
  EXPECT_TRUE(content.starts_with("a:\n    (leaveContext ")) << content;
  EXPECT_TRUE(content.ends_with("ms)\n")) << content;
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

}  // namespace
