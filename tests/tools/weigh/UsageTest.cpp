// The command line, and a component that isn't one.

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "Run.h"
#include "TempFolder.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(Usage, HelpTellsEveryCommandWithAnExample) {
  const ProgramRun help = weigh({"--help"});
  EXPECT_EQ(help.exitCode, kGood);
  for (const char* command : {"read", "watch", "tare", "price", "test", "models", "page",
                              "settings", "find", "explain", "call"}) {
    EXPECT_THAT(help.out, HasSubstr(std::string("\n  ") + command + " "));
    const ProgramRun own = weigh({command, "--help"});
    EXPECT_EQ(own.exitCode, kGood);
    EXPECT_THAT(own.out, HasSubstr(std::string("Example:\n  weigh ") + command));
    for (const auto& [language, example] :
         {std::pair{"--lang=ru", "Пример:\n  weigh "}, {"--lang=uk", "Приклад:\n  weigh "}}) {
      EXPECT_THAT(weigh({command, "--help", language}).out,
                  AllOf(HasSubstr(std::string(example) + command), Not(HasSubstr("Options"))));
    }
    std::istringstream lines(own.out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
  }
}

TEST(Usage, WrongWordsEndWithCodeTwoAndARemedy) {
  for (const fixture::DataRow& row : fixture::dataRows("weigh_usage.txt")) {
    SCOPED_TRACE(row.left);
    const ProgramRun run = weigh(wordsOf(row.left));
    EXPECT_EQ(run.exitCode, kWrongUsage);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(row.right));
    if (row.heading == "words") {
      EXPECT_THAT(run.err, HasSubstr("--help` shows how it is used"));
    }
  }
}

TEST(Usage, NumbersAreDecimalAsThePageWritesThem) {
  // "08" is how the page writes model 8, and no number of base eight.
  const ProgramRun run = weigh({"read", "--model", "08", "--port", "/dev/no-such-scale"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  EXPECT_THAT(run.err, HasSubstr("scale error 1: Ошибка_1"));
}

TEST(Usage, ModelWithoutDriverIsTheScalesError) {
  const ProgramRun run = weigh({"read", "--model", "5", "--json", "--price"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  ASSERT_EQ(run.records().size(), 1U);
  EXPECT_EQ(run.records()[0]["code"], 5);
  EXPECT_THAT(run.err, AllOf(HasSubstr("scale error 5: Ошибка_5"), HasSubstr("`weigh models`")));
}

TEST(Usage, ComponentThatIsNoneIsToldWithARemedy) {
  const fixture::TempFolder folder;
  struct Wrong {
    std::string component;
    const char* told;
    const char* remedy;
  };
  for (const auto& [component, told, remedy] : std::vector<Wrong>{
           {folder.file("none.so"), "the component isn't there: ", "cmake --build"},
           {folder.write("text.so", "no library"), "can't be loaded: ", "fresh build"},
           {folder.path(), "can't be loaded: ", "fresh build"},
           {"/lib/x86_64-linux-gnu/libm.so.6", "it has no export GetClassObject", "fresh build"},
       }) {
    const ProgramRun run = weigh({"read", "--component", component});
    EXPECT_EQ(run.exitCode, kWrongUsage);
    EXPECT_THAT(run.err, AllOf(HasSubstr(component), HasSubstr(told), HasSubstr(remedy)));
  }
}

TEST(Models, AreListedWithTheirDrivers) {
  const auto all = weigh({"models", "--json"}).records();
  ASSERT_EQ(all.size(), 46U);
  EXPECT_EQ(all[13]["name"], "CAS (АР, AD, DB, ER, EM, SW, CS)");
  EXPECT_EQ(all[13]["driver"], true);
  EXPECT_EQ(all[5]["driver"], false);
  EXPECT_EQ(all[20]["unit"], "kg");
  EXPECT_EQ(weigh({"models", "--json", "--driver"}).records().size(), 37U);
  EXPECT_THAT(weigh({"models"}).out, HasSubstr("\n13     yes     "));
}

}  // namespace
