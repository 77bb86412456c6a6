// The guides for installers, in every language: they explain each error and each verdict, and what
// they point to is there.

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResultCode.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path kTop = ORBELO_TOP;

std::string contentOf(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

/// The first group of each match.
std::vector<std::string> matches(const std::string& text, const char* pattern) {
  const std::regex expression(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
       ++match) {
    found.push_back((*match)[1]);
  }
  return found;
}

class Guide : public testing::TestWithParam<const char*> {
 protected:
  const fs::path file_ = kTop / "docs" / GetParam();
  const std::string text_ = contentOf(file_);
};

INSTANTIATE_TEST_SUITE_P(Languages, Guide,
                         testing::Values("guide.md", "ru/guide.md", "uk/guide.md"));

TEST_P(Guide, ExplainsEveryErrorWithItsCodeAndText) {
  for (const ResultCode code :
       {kSuccess, kNoConnection, kSerialPortError, kNoAnswer, kPriceFormat, kNotSupported,
        kOverload, kDeviceIdNotFound, kAlreadyOpen, kWrongFolder, kUnknown}) {
    EXPECT_THAT(text_, HasSubstr("\n| " + std::to_string(code) + " | " + resultText(code)));
  }
}

TEST_P(Guide, ExplainsEveryVerdictOfTheDoctor) {
  std::string sources;
  for (const char* name : {"Doctor.cpp", "DoctorDevice.cpp", "DoctorHost.cpp", "DoctorLine.cpp"})
    sources += contentOf(kTop / "tools" / "weigh" / name);
  const auto codes = matches(sources, R"(\.code = "([a-z-]+)\")");
  ASSERT_GT(codes.size(), 20U);
  for (const std::string& code : codes) EXPECT_THAT(text_, HasSubstr('`' + code + '`'));
}

TEST_P(Guide, PointsToWhatIsThere) {
  const auto targets = matches(text_, R"(\]\(([^)#]+)[)#])");
  ASSERT_GT(targets.size(), 6U);
  for (const std::string& target : targets) {
    EXPECT_TRUE(fs::exists(file_.parent_path() / target)) << target;
  }
}

}  // namespace
