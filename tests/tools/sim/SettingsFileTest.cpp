#include <fstream>
#include <iterator>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Endpoint.h"
#include "SettingsFile.h"

namespace {

using testing::HasSubstr;

std::string textOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(SettingsFile, NamesSerialAndNetworkScalesAndGoesAtTheEnd) {
  const sim::TemporaryDirectory folder;
  {
    const SettingsFile file(folder.path(),
                            {{13, 13, "/tmp/a \"&\" <b/13", 0}, {113, 13, "127.0.0.1", 4001}});
    const std::string text = textOf(file.path());
    EXPECT_THAT(text, HasSubstr("<SCALES0 fNum=\"13\" fType=\"13\" fIsComPort=\"1\" "
                                "fComBaudRate=\"9600\" fTCPPort=\"0\" fLeaveConnect=\"0\" "
                                "fComPortName=\"/tmp/a &quot;&amp;&quot; &lt;b/13\" fHost=\"\" "
                                "fCoeff=\"1.000\"/>"));
    EXPECT_THAT(text, HasSubstr("<SCALES1 fNum=\"113\" fType=\"13\" fIsComPort=\"0\" "
                                "fComBaudRate=\"9600\" fTCPPort=\"4001\" fLeaveConnect=\"0\" "
                                "fComPortName=\"\" fHost=\"127.0.0.1\""));
    // A file that a simulation left behind is replaced.
    const SettingsFile again(folder.path(), {});
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SettingsFile, LeavesTheSettingsOfOthersAlone) {
  const sim::TemporaryDirectory folder;
  const auto path = folder.path() / "settings.xml";
  std::ofstream(path) << "<ROOT><SCALES0 fNum=\"1\"/></ROOT>";
  EXPECT_THROW(SettingsFile(folder.path(), {}), std::runtime_error);
  EXPECT_THAT(textOf(path), HasSubstr("<ROOT>"));
}

TEST(SettingsFile, HoldsNoMoreScalesThanTheComponentReads) {
  const sim::TemporaryDirectory folder;
  EXPECT_THROW(SettingsFile(folder.path(), std::vector<SettingsEntry>(101)), std::runtime_error);
}

}  // namespace
