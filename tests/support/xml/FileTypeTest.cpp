#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkFileAccess.h"
#include "CkSettings.h"
#include "FileSys.h"
#include "LogBase.h"
#include "Psdk.h"
#include "TempFolder.h"
#include "XString.h"

namespace {

using testing::HasSubstr;

constexpr const char* kYaUtf8 = "\xD1\x8F";
constexpr const char* kYaAnsi = "\xFF";

class FileType : public testing::Test {
 protected:
  // A Russian system's code page.
  FileType() { Psdk::setAnsiCodePage(1251); }

  int type(const std::string& path) {
    files_.put_Utf8(true);
    return files_.FileType(path.c_str());
  }
  int typeOfLink(const std::string& path) {
    XString text;
    text.setFromUtf8(path.c_str());
    LogNull log;
    return FileSys::filePathType(text, true, log);
  }

  fixture::TempFolder folder_;
  CkFileAccess files_;
};

TEST_F(FileType, TellsWhatAPathNames) {
  const std::string file = folder_.write("file", "x");
  const std::string link = folder_.file("link");
  const std::string dangling = folder_.file("dangling");
  ASSERT_EQ(::symlink(file.c_str(), link.c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", dangling.c_str()), 0);
  const std::string folder = folder_.path();
  struct Row {
    std::string path;
    int type;
    int typeOfLink;
  };
  for (const auto& row : {
           Row{file, 1, 1},
           Row{folder, 2, 2},
           Row{folder.substr(0, folder.size() - 1), 2, 2},
           Row{link, 1, 3},
           Row{dangling, 0, 3},
           Row{"/dev/null", 99, 99},
           Row{folder_.file("missing"), 0, 0},
           Row{"", 0, 0},
           Row{folder + "\r\n", 2, 2},
           Row{file + "\r", 1, 1},
           Row{folder_.file("missing\r\n"), 0, 0},
           Row{file + "/", -1, -1},
           Row{std::string(5000, 'x'), -1, -1},
       }) {
    EXPECT_EQ(type(row.path), row.type) << row.path;
    EXPECT_EQ(typeOfLink(row.path), row.typeOfLink) << row.path;
  }
  EXPECT_EQ(files_.FileType(nullptr), 0);
}

TEST_F(FileType, FindsNamesInTheAnsiCodePage) {
  folder_.write(kYaUtf8, "x");
  const std::string ansiFolder = folder_.makeFolder(kYaAnsi);
  EXPECT_EQ(type(folder_.file(kYaUtf8)), 1);
  ASSERT_EQ(::unlink(folder_.file(kYaUtf8).c_str()), 0);
  EXPECT_EQ(type(folder_.file(kYaUtf8)), 2);
  EXPECT_EQ(type(folder_.file(kYaUtf8) + "\r\n"), 2);
  files_.put_Utf8(false);
  EXPECT_EQ(files_.FileType(folder_.file(kYaAnsi).c_str()), 2);
  ASSERT_EQ(::rmdir(ansiFolder.c_str()), 0);

  CkSettings::setOemCodePage(866);
  folder_.write("\xEF", "x");
  EXPECT_EQ(type(folder_.file(kYaUtf8)), 1);
  EXPECT_EQ(type(folder_.file(kYaUtf8) + "\r"), 1);
  CkSettings::setOemCodePage(65001);
}

TEST_F(FileType, TellsWhy) {
  type(folder_.file("missing"));
  const std::string log = files_.lastErrorText();
  EXPECT_THAT(log, HasSubstr("FileType:\n"));
  EXPECT_THAT(log, HasSubstr("errno: 2"));
  EXPECT_THAT(log, HasSubstr("File not found using utf-8 filepath"));
  type(folder_.write("file", "x") + "/");
  EXPECT_THAT(files_.lastErrorText(), HasSubstr("Unable to open the file for read-only"));
  struct stat info = {};
  EXPECT_EQ(Psdk::ck_stat(nullptr, &info), -1);
}

}  // namespace
