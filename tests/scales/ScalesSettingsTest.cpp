#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "FakeScale.h"
#include "HexBytes.h"
#include "ScalesWrapper.h"
#include "TempFolder.h"

namespace {

using fixture::FakeScale;
using fixture::makeFake;
using fixture::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSettings = "settings.xml";

/// One scale of the file as its text, with model 1 where the attributes don't say otherwise.
std::string entry(const std::string& tag, const std::string& attributes) {
  return "<" + tag + " fType=\"1\" " + attributes + "/>\n";
}

class ScalesSettings : public testing::Test {
 protected:
  ScalesSettings() { world_ = {}; }

  int load() { return load(folder_.path()); }
  int load(const std::string& folder) {
    CkString path(folder.c_str(), true);
    return scales_.SetPathDllFolder(path);
  }
  /// Loads a file with these elements under a root, and gives "id, coeff, leave, connection" of
  /// each scale that was made.
  std::vector<std::string> scalesOf(const std::string& elements) {
    folder_.write(kSettings, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Root>\r\n" + elements +
                                 "</Root>\r\n");
    world_.notes.clear();
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(scales_.GetLastError(), 0);
    // All scales are made before the first of them tests its connection.
    std::vector<std::string> result;
    std::size_t tested = 0;
    for (const std::string& note : world_.notes) {
      if (note.starts_with("id ")) result.push_back(note);
      if (note.starts_with("coeff ") || note.starts_with("leave ")) result.back() += ", " + note;
      if (note.starts_with("serial ") || note.starts_with("network "))
        result.at(tested++) += ", " + note;
    }
    return result;
  }

  fixture::FakeWorld& world_ = FakeScale::world;
  TempFolder folder_;
  CScalesWrapper scales_{makeFake};
};

TEST_F(ScalesSettings, ReadsSerialAndNetworkScales) {
  EXPECT_THAT(
      scalesOf(entry("SCALES3",
                     R"(fNum="7" fIsComPort="1" fComBaudRate="9600" fTCPPort="5" )"
                     R"(fLeaveConnect="1" fComPortName="/dev/x" fHost="h" fCoeff="0,5")") +
               entry("SCALES0", R"(fNum="-12" fIsComPort="0" fComBaudRate="9600" fTCPPort="20108" )"
                                R"(fComPortName="/dev/x" fHost="host" fCoeff="1.000")")),
      ElementsAre("id -12, coeff 1.000000, leave 0, network host 20108",
                  "id 7, coeff 0.500000, leave 1, serial /dev/x 9600"));
}

TEST_F(ScalesSettings, ReadsTheHundredTagsAndNoOthers) {
  EXPECT_THAT(
      scalesOf(
          entry("SCALES99", R"(fNum="99" fCoeff="1")") +
          entry("SCALES100", R"(fNum="100" fCoeff="1")") +
          entry("SCALES", R"(fNum="1" fCoeff="1")") + entry("SCALES01", R"(fNum="2" fCoeff="1")") +
          entry("scales1", R"(fNum="3" fCoeff="1")") + entry("OTHER", R"(fNum="4" fCoeff="1")") +
          "<Group>" + entry("SCALES5", R"(fNum="5" fCoeff="1")") + "</Group>\n" +
          entry("SCALES0", R"(fNum="0" fCoeff="1")") + entry("SCALES0", R"(fNum="6" fCoeff="1")")),
      ElementsAre("id 0, coeff 1.000000, leave 0, network  0",
                  "id 99, coeff 1.000000, leave 0, network  0"));
}

TEST_F(ScalesSettings, MissingAttributesAreZeroAndEmpty) {
  // Without a coefficient every weight of the scale is 0.
  EXPECT_THAT(scalesOf(entry("SCALES1", "")),
              ElementsAre("id 0, coeff 0.000000, leave 0, network  0"));
  EXPECT_THAT(scalesOf(entry("SCALES1", R"(fIsComPort="7" fCoeff="")")),
              ElementsAre("id 0, coeff 0.000000, leave 0, serial  0"));
  EXPECT_THAT(scalesOf(entry("SCALES1", R"(fIsComPort="yes" fNum="4x" fCoeff="abc")")),
              ElementsAre("id 4, coeff 0.000000, leave 0, network  0"));
  // The text goes to the number reader as it is: here a minus counts.
  EXPECT_THAT(scalesOf(entry("SCALES1", R"(fCoeff=" -2,5kg")")),
              ElementsAre("id 0, coeff -2.500000, leave 0, network  0"));
}

TEST_F(ScalesSettings, ARepeatedNumberReplacesAndAnUnknownModelIsSkipped) {
  scalesOf(entry("SCALES1", R"(fNum="7" fHost="old")") +
           R"(<SCALES2 fNum="8" fType="5" fHost="none"/>)" +
           entry("SCALES3", R"(fNum="7" fHost="new")"));
  EXPECT_EQ(world_.alive, 1);
  EXPECT_NE(scales_.GetScalesObject("new"), nullptr);
  EXPECT_EQ(scales_.GetScalesObject("8"), nullptr);
}

TEST_F(ScalesSettings, AFailedTestIsNoFailureOfTheFolder) {
  world_.openCode = 1;
  EXPECT_THAT(scalesOf(entry("SCALES1", R"(fNum="7")")).size(), 1U);
  EXPECT_NE(scales_.GetScalesObject("7"), nullptr);
}

TEST_F(ScalesSettings, AFolderWithoutAReadableFileIsASuccess) {
  const std::string whole =
      "<Root>" + entry("SCALES1", R"(fNum="7" fHost="host" fCoeff="1")") + "</Root>";
  for (const std::string& content :
       {std::string(), std::string("no xml"), std::string("\xEF\xBB\xBF"), std::string(100000, '<'),
        std::string(4, 0), std::string("<"), std::string("<>"), std::string("</>"),
        std::string("<!--"), std::string("<?"), std::string("<Root"),
        std::string("<Root><SCALES1 fNum=")}) {
    scales_.AddScalesObject("port", 9600, 1, 0, "before", 0, 1.0);
    folder_.write(kSettings, content);
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(world_.alive, 0) << content.substr(0, 40);
  }
  // Every cut of a good file is one of the two.
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    folder_.write(kSettings, whole.substr(0, size));
    EXPECT_EQ(load(), 0);
    EXPECT_LE(world_.alive, 1);
  }
  EXPECT_EQ(world_.alive, 1);
  std::remove(folder_.file(kSettings).c_str());
  EXPECT_EQ(load(), 0);
  EXPECT_EQ(world_.alive, 0);
  EXPECT_EQ(scales_.LoadIniSettings(), 1);
  folder_.makeFolder(kSettings);
  EXPECT_EQ(load(), 0);
}

TEST_F(ScalesSettings, TakesTheFolderWithOrWithoutItsSlash) {
  folder_.write(kSettings, "<Root>" + entry("SCALES1", R"(fNum="7")") + "</Root>");
  const std::string& path = folder_.path();
  EXPECT_EQ(load(path.substr(0, path.size() - 1)), 0);
  EXPECT_EQ(load(path), 0);
  EXPECT_THAT(world_.notes, testing::Not(testing::Contains("folder " + path + "/")));
  EXPECT_EQ(std::count(world_.notes.begin(), world_.notes.end(), "folder " + path), 2);
}

TEST_F(ScalesSettings, AFolderThatIsNoneChangesNothing) {
  scales_.AddScalesObject("port", 9600, 1, 0, "7", 0, 1.0);
  const std::string file = folder_.write("file", "");
  EXPECT_EQ(load(file), 130);
  EXPECT_EQ(scales_.GetLastError(), 130);
  EXPECT_NE(scales_.GetScalesObject("7"), nullptr);
  EXPECT_EQ(load(folder_.file("missing")), 130);
  EXPECT_EQ(load(folder_.path() + std::string(65536, 'x')), 130);
  // The bad value stays, and the scales to come log there.
  world_.notes.clear();
  EXPECT_EQ(load(file), 130);
  scales_.AddScalesObject("port", 9600, 1, 0, "8", 0, 1.0);
  EXPECT_EQ(world_.notes.front(), "folder " + file + "/");
}

TEST_F(ScalesSettings, ReadsTheCoefficientAsAPersonTypesIt) {
  std::vector<std::pair<std::string, double>> rows = {{std::string(49, '0') + "7", 7.0},
                                                      {std::string(65536, '0') + "7", 0.0}};
  for (const fixture::DataRow& row : fixture::dataRows("coefficients.txt")) {
    rows.emplace_back(fixture::characters(row.left), std::stod(row.right));
  }
  for (const auto& [typed, value] : rows) {
    scales_.Set_param_mp_coeff(CkString("9"));
    EXPECT_EQ(scales_.Set_param_mp_coeff(CkString(typed.c_str(), true)), 0);
    EXPECT_EQ(scales_.GetLastError(), 1099);
    scales_.Set_param_mp_model(1);
    CkString id;
    scales_.CreateScalesObject(id);
    EXPECT_EQ(scales_.GetScalesObject(id.getAnsi())->GetCoeff(), value) << typed;
    scales_.CloseAllComPorts();
  }
}

}  // namespace
