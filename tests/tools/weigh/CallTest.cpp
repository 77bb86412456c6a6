// Every method, raw.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Run.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

json value(const char* type, const json& content) { return {{"type", type}, {"value", content}}; }
const json kEmpty = value("empty", nullptr);
const json kTrue = value("bool", true);
const json kFalse = value("bool", false);

struct Case {
  Arguments arguments;
  bool executed;
  json returned;
  json params;
  int exitCode = kGood;
};

void PrintTo(const Case& one, std::ostream* out) { *out << testing::PrintToString(one.arguments); }

class CallOf : public testing::TestWithParam<Case> {};

/// Methods whose outcome is the same in every run; empty parameters are those that aren't given.
INSTANTIATE_TEST_SUITE_P(
    Methods, CallOf,
    testing::Values(
        Case{{"GetVersion"}, true, value("text", "4.3.25 (05.03.2020)"), json::array()},
        Case{{"ПолучитьОписание"},
             true,
             kTrue,
             {value("text", "OrbeloScalesDriver"),
              value("text", "Драйвер электронных весов для простого взвешивания (NativeAPI)."),
              value("text", "ЭлектронныеВесы"), value("uint32", 2002), kFalse, kTrue,
              value("text", "")}},
        Case{{"GetLastError"}, true, value("uint32", 1099), {value("text", "UnknownError")}},
        Case{{"SetParameter", "coeff", "s:1,5"},
             true,
             kTrue,
             {value("text", "coeff"), value("text", "1,5")}},
        Case{{"SetParameter", "coeff", "5"},
             false,
             kEmpty,
             {value("text", "coeff"), value("int32", 5)},
             kScaleFailed},
        Case{{"УстановитьПараметр", "n:model", "d:1.5"},
             true,
             kTrue,
             {value("narrow", "model"), value("double", 1.5)}},
        Case{{"Close", "unknown"}, true, kTrue, {value("text", "unknown")}},
        Case{{"GetAdditionalActions"}, true, kTrue, {kEmpty}},
        Case{{"DoAdditionalAction", "b:true"}, true, kTrue, {kTrue}},
        Case{{"Calibrate", "unknown"},
             true,
             kFalse,
             {value("text", "unknown"), kEmpty},
             kScaleFailed},
        Case{{"GetWeight", "u:7"}, false, kEmpty, {value("uint32", 7), kEmpty}, kScaleFailed},
        Case{{"GetWeight", "unknown"},
             true,
             kFalse,
             {value("text", "unknown"), value("double", 0.0)},
             kScaleFailed},
        Case{{"SetPrice", "unknown", "1250"},
             true,
             kFalse,
             {value("text", "unknown"), value("int32", 1250)},
             kScaleFailed},
        Case{{"GetWeightPriceCost", "unknown"},
             true,
             kFalse,
             {value("text", "unknown"), value("double", 0.0), value("double", 0.0),
              value("double", 0.0), value("int32", 0)},
             kScaleFailed},
        // Refused with its value set, always.
        Case{{"GetInterfaceRevision"}, false, value("uint32", 2002), json::array()},
        Case{{"SetPathDllFolder", "/dev/null"},
             true,
             kFalse,
             {value("text", "/dev/null")},
             kScaleFailed},
        Case{{"SetPathDllFolder", "/proc/self"}, true, kTrue, {value("text", "/proc/self")}}));

TEST_P(CallOf, ShowsWhatCameBack) {
  const Case& one = GetParam();
  const ProgramRun run = weigh(Arguments{"call", "--json"} + one.arguments);
  EXPECT_EQ(run.exitCode, one.exitCode) << run.err;
  ASSERT_EQ(run.records().size(), 1U);
  const json record = run.records()[0];
  EXPECT_EQ(record["executed"], one.executed);
  EXPECT_EQ(record["returned"], one.returned);
  EXPECT_EQ(record["params"], one.params);
}

TEST(Call, OpensAScaleForItsId) {
  sim::SimulatedScale scale(13, sim::Transport::Pty);
  scale.setWeight(4.5);
  const auto options = optionsOf(scale);
  const json weight =
      weigh(Arguments{"call", "ПолучитьВес", "@id", "--json"} + options).records().at(0);
  EXPECT_EQ(weight["method"], 11);
  EXPECT_EQ(weight["returned"], kTrue);
  EXPECT_EQ(weight["params"][1], value("double", 4.5));
  EXPECT_EQ(weight["last_error"]["text"], "OK");

  const json test = weigh(Arguments{"call", "DeviceTest", "--json"} + options).records().at(0);
  EXPECT_EQ(test["params"][0], value("text", "Вес:  4.500; "));
}

TEST(Call, OpenGivesAnIdAndGetParametersThePage) {
  const json opened = weigh({"call", "Open", "--json"}).records().at(0);
  EXPECT_EQ(opened["params"][0]["value"].get<std::string>().size(), 20U);

  const ProgramRun page = weigh({"page"});
  EXPECT_THAT(page.out,
              StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\r\n<Settings>\r\n"));
  const json raw = weigh({"call", "GetParameters", "--json"}).records().at(0);
  EXPECT_EQ(raw["params"][0]["value"], page.out);
}

TEST(Call, ShowsAsTextWhatWasCalled) {
  const ProgramRun run = weigh({"call", "GetWeight", "unknown"});
  EXPECT_EQ(run.exitCode, kScaleFailed);
  EXPECT_EQ(run.out,
            "method      11 GetWeight (ПолучитьВес)\n"
            "call        executed\n"
            "returned    bool false\n"
            "param 0     text unknown\n"
            "param 1     double 0.0\n"
            "last error  8 Ошибка_8: DeviceID не найден.\n");
  EXPECT_THAT(run.err, HasSubstr("scale error 8"));
}

TEST(Call, TurnsDownWhatIsNoCall) {
  struct Wrong {
    Arguments arguments;
    const char* told;
  };
  for (const auto& [arguments, told] : std::vector<Wrong>{
           {{"Getweight"}, "no method 'Getweight'"},
           {{"Open", "a", "b"}, "Open takes 1 parameters, not 2"},
           {{"Close", "i:x"}, "parameter 'i:x'"},
           {{"Close", "i:2147483648"}, "from -2147483648 to 2147483647"},
           {{"Close", "u:-1"}, "parameter 'u:-1'"},
           {{"Close", "d:"}, "no number"},
           {{"Close", "b:yes"}, "neither true nor false"},
       }) {
    const ProgramRun run = weigh(Arguments{"call"} + arguments);
    EXPECT_EQ(run.exitCode, kWrongUsage);
    EXPECT_THAT(run.err, HasSubstr(told));
  }
}

}  // namespace
