// Refuses memory at every point of a log's life.

#include <string>

#include <gtest/gtest.h>

#include "CkHashMap.h"
#include "CkLogger.h"
#include "CkMultiByteBase.h"
#include "ClsBase.h"
#include "MemoryWatch.h"
#include "RunningShort.h"
#include "TempFolder.h"
#include "XString.h"

namespace {

using fixture::MemoryShortage;
using fixture::withMoreAndMoreMemory;

TEST(LogMemory, NeitherThrowsNorTellsHalf) {
  const fixture::TempFolder folder;
  const std::string path = folder.file("log.xml");
  XString longText;
  longText.setFromUtf8(std::string(300, 'x').c_str());
  withMoreAndMoreMemory([&](int allocations) {
    _ckLogger log;
    bool saved = false;
    bool taken = true;
    bool isShort = false;
    {
      const MemoryShortage shortage(allocations);
      {
        const LogContextExitor context(log, "context");
        taken = log.LogDataInt64("int64", INT64_MIN) && log.LogElapsedMs("elapsed", 1) &&
                log.LogHex("hex", ~0U) && log.LogInfo(longText.getUtf8()) &&
                log.LogStringMax("cut", longText, 290) && log.LogXml(longText.getUtf8()) &&
                log.LogError(longText.getUtf8());
      }
      // Of a context that could be entered the end is never lost.
      taken = log.LogInfo("behind it") && taken;
      saved = log.SaveXML(false, path.c_str());
      isShort = shortage.isHit();
    }
    // What was taken is there when somebody reads with enough memory again.
    StringBuffer later;
    EXPECT_TRUE(log.getXml(later));
    EXPECT_TRUE(!saved || folder.read("log.xml") == later.view());
    if (taken) {
      EXPECT_NE(later.view().find("  </context>\r\n  <info>behind it</info>\r\n</Kes"),
                later.view().npos);
    }
    EXPECT_TRUE(isShort || (saved && taken));
  });
}

TEST(LogMemory, AMapKeepsWhatItHas) {
  const StringBuffer key(std::string(100, 'k').c_str());
  withMoreAndMoreMemory([&](int allocations) {
    _ckHashMap map;
    auto value = std::make_unique<NonRefCountedObj>();
    const MemoryShortage shortage(allocations);
    const bool inserted = map.hashInsert(key, std::move(value));
    EXPECT_TRUE(inserted || shortage.isHit());
    EXPECT_EQ(map.getSize(), inserted ? 1 : 0);
    EXPECT_EQ(map.hashLookup(key) != nullptr, inserted);
    EXPECT_EQ(map.hashLookup(StringBuffer()), nullptr);
  });
}

TEST(LogMemory, AResultsSlotComesBackToLife) {
  class ClsProbe : public ClsBase {};
  class CkProbe : public CkMultiByteBase {
   public:
    CkProbe() : CkMultiByteBase(new ClsProbe) {}
  };
  withMoreAndMoreMemory([](int allocations) {
    CkProbe probe;
    {
      const MemoryShortage shortage(allocations);
      const char* const result = probe.version();
      EXPECT_TRUE(shortage.isHit() || (result != nullptr && *result != 0));
    }
    for (int i = 0; i < 10; ++i) EXPECT_STRNE(probe.version(), nullptr);
  });
}

}  // namespace
