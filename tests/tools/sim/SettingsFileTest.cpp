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

TEST(SettingsFile, HoldsTheScalesAndGoesAtTheEnd) {
  const sim::TemporaryDirectory folder;
  {
    const SettingsFile file(folder.path(), {{.number = 13, .isComPort = 1, .comPortName = "/tmp/a"},
                                            {.number = 113, .tcpPort = 4001}});
    const auto entries = readSettings(file.path());
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 2U);
    EXPECT_EQ(entries->at(0).port(), "/tmp/a");
    EXPECT_EQ(entries->at(1).rate(), 4001);
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
