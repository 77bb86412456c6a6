// The archive for support: what is in it, and what isn't.

#include <archive.h>
#include <archive_entry.h>

#include <filesystem>
#include <map>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Run.h"
#include "TempFolder.h"

namespace {

using nlohmann::json;
using sim::SimulatedScale;
using sim::Transport;
using testing::AllOf;
using testing::HasSubstr;
using testing::Key;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// The files of an archive with their contents.
std::map<std::string, std::string> unpacked(const std::string& file) {
  std::map<std::string, std::string> files;
  const std::unique_ptr<archive, int (*)(archive*)> reader(::archive_read_new(),
                                                           &::archive_read_free);
  ::archive_read_support_format_tar(reader.get());
  ::archive_read_support_filter_gzip(reader.get());
  EXPECT_EQ(::archive_read_open_filename(reader.get(), file.c_str(), 10240), ARCHIVE_OK);
  archive_entry* entry = nullptr;
  while (::archive_read_next_header(reader.get(), &entry) == ARCHIVE_OK) {
    std::string& content = files[::archive_entry_pathname(entry)];
    content.resize(static_cast<std::size_t>(::archive_entry_size(entry)));
    ::archive_read_data(reader.get(), content.data(), content.size());
  }
  return files;
}

TEST(Report, PacksVerdictSettingsLogsAndFactsAndNothingElse) {
  SimulatedScale scale(13, Transport::Pty);
  scale.setWeight(1.25);
  const fixture::TempFolder folder;
  const std::string settings = "<S>" + serialEntry(0, 7, 13, scale.devicePath()) + "</S>";
  folder.write("settings.xml", settings);
  folder.write("log.txt", "");
  folder.write("log_scales_7.log", "whole");
  constexpr std::size_t kMostOfLog = 262144;
  folder.write("log_scales_8.log", "begin" + std::string(kMostOfLog - 3, 'x') + "end");
  folder.write("passwords.txt", "secret");
  folder.makeFolder("log_scales_folder.log");
  std::filesystem::create_symlink(folder.file("passwords.txt"), folder.file("log_scales_9.log"));

  const fixture::TempFolder target;
  const std::string file = target.file("report.tar.gz");
  const ProgramRun run = weigh({"report", folder.path(), "--output", file});
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  const auto files = unpacked(file);
  EXPECT_THAT(files, UnorderedElementsAre(
                         Key("orbelo-report/verdict.txt"), Key("orbelo-report/verdict.jsonl"),
                         Key("orbelo-report/system.json"), Key("orbelo-report/settings.xml"),
                         Key("orbelo-report/logs/log_scales_7.log"),
                         Key("orbelo-report/logs/log_scales_8.log")));
  EXPECT_THAT(files.at("orbelo-report/verdict.txt"),
              AllOf(HasSubstr("Scale 7: model 13"), HasSubstr("Verdict: good")));
  EXPECT_EQ(json::parse(files.at("orbelo-report/verdict.jsonl"))["weight"], 1.25);
  EXPECT_EQ(files.at("orbelo-report/settings.xml"), settings);
  EXPECT_EQ(files.at("orbelo-report/logs/log_scales_7.log"), "whole");
  EXPECT_EQ(files.at("orbelo-report/logs/log_scales_8.log"),
            std::string(kMostOfLog - 3, 'x') + "end");
  const json facts = json::parse(files.at("orbelo-report/system.json"));
  EXPECT_THAT(facts["system"]["kernel"].get<std::string>(), StartsWith("Linux "));
  EXPECT_NE(facts["versions"]["component"], json());
  EXPECT_EQ(facts["folder"]["log_switched_on"], true);
  EXPECT_TRUE(facts["ports"].is_array());

  // What is packed is told, and a file that is cut with both sizes.
  for (const auto& [name, content] : files)
    EXPECT_THAT(run.out, HasSubstr(name.substr(name.find('/') + 1)));
  EXPECT_THAT(run.out, HasSubstr("the last 262144 of 262149 bytes"));
  EXPECT_FALSE(target.has("report.tar.gz.part"));
}

TEST(Report, LimitsTheNumberOfLogs) {
  const fixture::TempFolder folder;
  for (int i = 0; i < 34; ++i)
    folder.write("log_scales_" + std::to_string(i) + ".log", std::to_string(i));
  const std::string file = folder.file("report.tar.gz");
  const ProgramRun run =
      weigh({"report", folder.path(), "--no-doctor", "--json", "--output", file});
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  ASSERT_EQ(run.records().size(), 1U);
  EXPECT_EQ(run.records()[0]["packed"].size(), 33U) << "32 logs and the facts";
  EXPECT_EQ(run.records()[0]["left_out"].size(), 2U);
  EXPECT_EQ(unpacked(file).size(), 33U);
}

TEST(Report, PacksAFolderWithoutUsableSettings) {
  const fixture::TempFolder folder;
  folder.write("settings.xml", "no document");
  const std::string file = folder.file("report.tar.gz");
  const ProgramRun run = weigh({"report", folder.path(), "--output", file});
  EXPECT_EQ(run.exitCode, kGood) << run.err;
  const auto files = unpacked(file);
  EXPECT_EQ(files.at("orbelo-report/settings.xml"), "no document");
  EXPECT_THAT(files.at("orbelo-report/verdict.txt"), HasSubstr("settings.xml"));
}

}  // namespace
