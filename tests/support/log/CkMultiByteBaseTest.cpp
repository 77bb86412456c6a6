#include <array>
#include <new>
#include <set>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkMultiByteBase.h"
#include "CkSettings.h"
#include "CkString.h"
#include "ClsBase.h"
#include "TempFolder.h"
#include "XString.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// The least that a public class is made of.
class ClsProbe : public ClsBase {
 public:
  ~ClsProbe() override = default;
  void work(const char* line) {
    const CritSecExitor lock(this);
    const LogContextExitor context(*this, "Work");
    m_log.LogInfo(line);
    logSuccessFailure(true);
  }
};

class CkProbe : public CkMultiByteBase {
 public:
  explicit CkProbe(ClsProbe* impl) : CkMultiByteBase(impl) {}
  void work(const char* line) {
    if (auto* impl = static_cast<ClsProbe*>(aliveBase())) impl->work(line);
  }
};

TEST(CkMultiByteBase, TellsWhatTheLastCallDidAndNothingOlder) {
  CkProbe probe(new ClsProbe);
  EXPECT_STREQ(probe.lastErrorText(), "KestrumLog:\n--KestrumLog\n");
  probe.work("first");
  probe.work("second");
  const std::string text = probe.lastErrorText();
  EXPECT_THAT(text, StartsWith("KestrumLog:\n  Work:\n    DllDate: "));
  EXPECT_THAT(text, HasSubstr("    KestrumVersion: "));
  EXPECT_THAT(text, HasSubstr("    VerboseLogging: 0\n    second\n    Success.\n  --Work\n"));
  EXPECT_THAT(text, testing::Not(HasSubstr("first")));
  // Some languages want other line ends, in the text alone.
  for (const int language : {1, 664, 0}) {
    CkMultiByteBase::setLastErrorProgrammingLanguage(language);
    EXPECT_THAT(probe.lastErrorText(), StartsWith(language == 0 ? "KestrumLog:\n  Work:\n"
                                                                : "KestrumLog:\r\n  Work:\r\n"));
    EXPECT_THAT(probe.lastErrorXml(), HasSubstr("<info>Success.</info>\r\n"));
    EXPECT_THAT(probe.lastErrorHtml(), HasSubstr("Success.<br>\r\n"));
  }
}

TEST(CkMultiByteBase, ADestroyedHandleSaysSo) {
  constexpr const char* kGone = "Not a valid Kestrum object.";
  alignas(CkProbe) std::array<unsigned char, sizeof(CkProbe)> memory = {};
  auto* probe = new (memory.data()) CkProbe(new ClsProbe);
  EXPECT_STREQ(probe->debugLogFilePath(), "");
  probe->~CkProbe();
  for (const auto read : {&CkProbe::lastErrorText, &CkProbe::lastErrorHtml, &CkProbe::lastErrorXml,
                          &CkProbe::version, &CkProbe::debugLogFilePath}) {
    EXPECT_STREQ((probe->*read)(), kGone);
  }
  for (const auto read : {&CkProbe::LastErrorText, &CkProbe::LastErrorHtml, &CkProbe::LastErrorXml,
                          &CkProbe::get_Version, &CkProbe::get_DebugLogFilePath}) {
    CkString text("before");
    (probe->*read)(text);
    EXPECT_STREQ(text.getUtf8(), kGone);
  }
  EXPECT_FALSE(probe->get_VerboseLogging() || probe->get_LastMethodSuccess());
  EXPECT_FALSE(probe->SaveLastError("/dev/null"));
  probe->put_VerboseLogging(true);
  probe->put_LastMethodSuccess(true);
  probe->clearResultStrings();
}

TEST(CkMultiByteBase, AHandleWithoutItsInnerObjectHasNothingToTell) {
  alignas(ClsProbe) std::array<unsigned char, sizeof(ClsProbe)> memory = {};
  auto* impl = new (memory.data()) ClsProbe;
  CkProbe probe(impl);
  probe.put_LastMethodSuccess(true);
  impl->~ClsProbe();
  EXPECT_STREQ(probe.lastErrorText(), "");
  EXPECT_FALSE(probe.get_LastMethodSuccess());
  EXPECT_FALSE(probe.SaveLastError("/dev/null"));

  CkProbe without(nullptr);
  EXPECT_STREQ(without.lastErrorText(), "m_base is NULL.");
}

TEST(CkMultiByteBase, ALineCanBePutInFromOutside) {
  auto* impl = new ClsProbe;
  CkProbe probe(impl);
  impl->injectStatus("Check", false);
  EXPECT_STREQ(probe.lastErrorText(),
               "KestrumLog:\n  Check:\n    Failed.\n  --Check\n--KestrumLog\n");
  impl->injectError("Note", "no paper");
  EXPECT_STREQ(probe.lastErrorText(),
               "KestrumLog:\n  Note:\n    no paper\n  --Note\n--KestrumLog\n");
}

TEST(CkMultiByteBase, LocksCanBeSwitchedOffForAllThatFollow) {
  for (const auto& [text, areOff] : {std::pair("singlethreaded", true), std::pair("else", true),
                                     std::pair("MultiThreaded", false)}) {
    ClsProbe probe;
    XString option;
    option.setFromUtf8(text);
    probe.put_UncommonOptions(option);
    EXPECT_EQ(LogBase::m_singleThreaded, areOff);
    probe.work("still works");
  }
}

TEST(CkMultiByteBase, AResultOutlivesTheNextNine) {
  CkProbe probe(new ClsProbe);
  const char* first = probe.version();
  const std::string version = first;
  EXPECT_FALSE(version.empty());
  std::set<const char*> results = {first};
  for (int i = 0; i < 9; ++i) results.insert(probe.lastErrorText());
  EXPECT_EQ(results.size(), 10U);
  EXPECT_EQ(first, version);
  probe.clearResultStrings();
  EXPECT_EQ(probe.version(), version);
}

TEST(CkMultiByteBase, ResultsAreAnsiUnlessAskedForUtf8) {
  const int codePage = CkSettings::getAnsiCodePage();
  CkSettings::setAnsiCodePage(1251);
  CkProbe probe(new ClsProbe);
  probe.put_Utf8(true);
  probe.put_DebugLogFilePath("/tmp/\xD0\x96");
  EXPECT_STREQ(probe.debugLogFilePath(), "/tmp/\xD0\x96");
  probe.put_Utf8(false);
  EXPECT_STREQ(probe.debugLogFilePath(), "/tmp/\xC6");
  CkSettings::setAnsiCodePage(codePage);
}

TEST(CkMultiByteBase, SavesTheLogAsXml) {
  const fixture::TempFolder folder;
  CkProbe probe(new ClsProbe);
  probe.work("here");
  EXPECT_FALSE(probe.SaveLastError(" "));
  EXPECT_FALSE(probe.SaveLastError((folder.file("none/log.xml")).c_str()));
  const std::string path = folder.file("log.xml");
  for (int i = 0; i < 2; ++i) ASSERT_TRUE(probe.SaveLastError((" " + path + "\n").c_str()));
  const std::string content = folder.read("log.xml");
  EXPECT_THAT(content, StartsWith("<KestrumLog>\r\n  <Work>\r\n"));
  EXPECT_THAT(content, testing::EndsWith("</KestrumLog>\r\n"));
  EXPECT_EQ(content.rfind("<KestrumLog>"), 0U) << "the second takes the place of the first";
}

}  // namespace
