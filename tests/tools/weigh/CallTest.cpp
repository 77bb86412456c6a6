// Every method, raw.

#include <algorithm>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "Run.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

json value(const std::string& type, const json& content) {
  return {{"type", type}, {"value", content}};
}

/// Of "double 0.0" or "empty".
json valueOf(const std::string& text) {
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::string type = text.substr(0, end);
  const std::string content = text.substr(std::min(end + 1, text.size()));
  if (type == "text" || type == "narrow") return value(type, content);
  return value(type, type == "empty" ? json() : json::parse(content));
}

TEST(Call, ShowsWhatCameBack) {
  const std::string kRefused = "refused | ";
  for (const fixture::DataRow& row : fixture::dataRows("weigh_calls.txt")) {
    SCOPED_TRACE(row.left);
    const bool executed = !row.right.starts_with(kRefused);
    std::string wanted = row.right.substr(executed ? 0 : kRefused.size());
    std::vector<json> values;
    for (std::size_t bar = 0; bar != wanted.npos;) {
      bar = wanted.find(" | ");
      values.push_back(valueOf(wanted.substr(0, bar)));
      if (bar != wanted.npos) wanted.erase(0, bar + std::string(" | ").size());
    }
    const json returned = values.front();
    values.erase(values.begin());

    const ProgramRun run = weigh(Arguments{"call", "--json"} + wordsOf(row.left));
    const bool failed = returned == value("bool", false) || returned == value("empty", nullptr);
    EXPECT_EQ(run.exitCode, failed ? kScaleFailed : kGood) << run.err;
    ASSERT_EQ(run.records().size(), 1U);
    const json record = run.records()[0];
    EXPECT_EQ(record["executed"], executed);
    EXPECT_EQ(record["returned"], returned);
    EXPECT_EQ(record["params"], json(values));
  }
}

TEST(Call, OpensAScaleForItsId) {
  sim::SimulatedScale scale(13, sim::Transport::Pty);
  scale.setWeight(4.5);
  const auto options = optionsOf(scale);
  const json weight =
      weigh(Arguments{"call", "ПолучитьВес", "@id", "--json"} + options).records().at(0);
  EXPECT_EQ(weight["method"], 11);
  EXPECT_EQ(weight["returned"], value("bool", true));
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
  EXPECT_EQ(weigh({"page", "--json"}).records().at(0)["page"], page.out);
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

}  // namespace
