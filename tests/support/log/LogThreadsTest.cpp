#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ClsBase.h"
#include "LogTesting.h"
#include "XString.h"

namespace {

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
      if (i % 100 == 0) fixture::textOf(log);
      if (i % 130 == 0) log.m_verbose = !log.m_verbose;
    }
  });
  EXPECT_THAT(fixture::textOf(log), testing::EndsWith("--KestrumLog\n"));
}

TEST(LogThreads, CallsOfOneObjectDontMix) {
  ClsWorker worker;
  inTwoThreads([&] {
    for (int i = 0; i < 300; ++i) {
      worker.work();
      XString text;
      worker.get_LastErrorText(text);
      ASSERT_THAT(text.getUtf8(), testing::EndsWith("    n: 1\n  --Work\n--KestrumLog\n"));
    }
  });
}

}  // namespace
