// What each of the sixteen methods takes, gives and refuses.

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Component.h"
#include "DataFile.h"
#include "PtyLine.h"
#include "TempFolder.h"

namespace {

using host::CallResult;
using host::NarrowText;
using host::Value;

constexpr int kEmulator = 20;
constexpr int kWithoutDriver = 5;
constexpr const char* kUnknownId = "Ошибка_8: DeviceID не найден.";

class Methods : public testing::Test {
 protected:
  CallResult call(std::string_view name, std::vector<Value> params = {}) {
    return component_.call(name, std::move(params));
  }
  /// What a call answers that must be executed.
  Value answer(std::string_view name, std::vector<Value> params = {}) {
    const CallResult result = call(name, std::move(params));
    EXPECT_TRUE(result.executed) << name;
    return result.result;
  }
  bool holds(std::string_view name, std::vector<Value> params = {}) {
    return answer(name, std::move(params)) == Value(true);
  }
  void set(const char* name, Value value) { EXPECT_TRUE(holds("SetParameter", {name, value})); }
  std::string open() { return std::get<std::string>(call("Open").params.at(0)); }
  std::string openEmulator() {
    set("model", kEmulator);
    return open();
  }
  unsigned lastError() { return component_.lastError().code; }

  host::Component component_{ORBELO_COMPONENT};
};

TEST_F(Methods, TellWhatTheDriverIs) {
  EXPECT_EQ(answer("GetVersion"), Value("4.3.25 (05.03.2020)"));
  const CallResult description = call("ПолучитьОписание");
  EXPECT_EQ(description.result, Value(true));
  EXPECT_EQ(description.params,
            (std::vector<Value>{"OrbeloScalesDriver",
                                "Драйвер электронных весов для простого взвешивания (NativeAPI).",
                                "ЭлектронныеВесы", 2002U, false, true, ""}));
  std::string page = fixture::dataFile("parameters.xml");
  for (std::size_t at = 0; (at = page.find('\n', at)) != page.npos; at += 2)
    page.insert(at, 1, '\r');
  const CallResult parameters = call("GetParameters");
  EXPECT_EQ(parameters.result, Value(true));
  EXPECT_EQ(parameters.params, std::vector<Value>{page});
  // Refused, with its value set all the same.
  const CallResult revision = call("GetInterfaceRevision");
  EXPECT_FALSE(revision.executed);
  EXPECT_EQ(revision.result, Value(2002U));
}

TEST_F(Methods, LastErrorGivesCodeAndText) {
  for (const char* name : {"GetAdditionalActions", "DoAdditionalAction"}) {
    const CallResult nothing = call(name, {"action"});
    EXPECT_EQ(nothing.result, Value(true));
    EXPECT_EQ(nothing.params, std::vector<Value>{"action"});
  }
  EXPECT_EQ(answer("GetLastError"), Value(1099U));
  EXPECT_EQ(component_.lastError().text, "UnknownError");
  EXPECT_TRUE(holds("Close", {"nobody"}));
  EXPECT_EQ(answer("GetLastError"), Value(0U));
  EXPECT_EQ(component_.lastError().text, "OK");
}

TEST_F(Methods, OpenGivesAnIdWhateverHappened) {
  EXPECT_THAT(openEmulator(), testing::MatchesRegex("[0-9A-Fa-f]{20}"));
  EXPECT_EQ(lastError(), 0U);
  for (const int model : {5, 6, 15, 22, 32, 42, 45, 46, -1}) {
    set("model", model);
    const CallResult opened = call("Open");
    EXPECT_EQ(opened.result, Value(true));
    EXPECT_EQ(std::get<std::string>(opened.params.at(0)).size(), 20U);
    EXPECT_EQ(lastError(), 5U);
    EXPECT_FALSE(holds("GetWeight", {opened.params.at(0)}));
    EXPECT_EQ(lastError(), 8U);
  }
  set("model", 13);
  set("cport", "/no/such/device");
  EXPECT_TRUE(holds("Open"));
  EXPECT_EQ(lastError(), 1U);
}

TEST_F(Methods, WeightIsWrittenWhateverTheResult) {
  const CallResult unknown = call("GetWeight", {"nobody"});
  EXPECT_EQ(unknown.result, Value(false));
  EXPECT_EQ(unknown.params.at(1), Value(0.0));
  EXPECT_EQ(component_.lastError().text, kUnknownId);

  const std::string id = openEmulator();
  int good = 0;
  for (int i = 0; i < 100; ++i) {
    const CallResult read = call("ПолучитьВес", {id});
    const unsigned code = lastError();
    EXPECT_EQ(read.result, Value(code == 0));
    EXPECT_THAT(code, testing::AnyOf(0U, 3U));
    EXPECT_GT(std::get<double>(read.params.at(1)), 0.07);
    good += code == 0 ? 1 : 0;
  }
  EXPECT_GT(good, 50);
}

TEST_F(Methods, WeightPriceCostFillsFour) {
  const CallResult unknown = call("GetWeightPriceCost", {"nobody", 1, 2, 3, 4, 5});
  EXPECT_EQ(unknown.result, Value(false));
  EXPECT_EQ(unknown.params, (std::vector<Value>{"nobody", 0.0, 0.0, 0.0, 0, 5}));

  set("coeff", "0,5");
  const std::string id = openEmulator();
  EXPECT_TRUE(holds("SetPrice", {id, 1250}));
  for (int i = 0; i < 20; ++i) {
    const CallResult read = call("GetWeightPriceCost", {id});
    EXPECT_EQ(read.params.at(2), Value(12.5));
    // The cost is that of the weight before its correction.
    EXPECT_NEAR(std::get<double>(read.params.at(3)), 25.0 * std::get<double>(read.params.at(1)),
                0.011);
    EXPECT_THAT(read.params.at(4), testing::AnyOf(Value(0), Value(1)));
  }
}

TEST_F(Methods, SetPriceTakesTheBitsOfANumber) {
  const std::string id = openEmulator();
  // Widened without sign, -1 is no negative price for the registry.
  EXPECT_TRUE(holds("SetPrice", {id, -1}));
  EXPECT_EQ(lastError(), 0U);
  EXPECT_FALSE(holds("SetPrice", {"nobody", 1}));
  EXPECT_EQ(lastError(), 8U);
}

TEST_F(Methods, DeviceTestTellsItsResultAsAText) {
  const auto testText = [&] {
    const CallResult tested = call("ТестУстройства");
    EXPECT_EQ(tested.result, Value(true));
    EXPECT_EQ(tested.params.at(1), Value());
    EXPECT_EQ(lastError(), 0U);
    return std::get<std::string>(tested.params.at(0));
  };
  set("model", kWithoutDriver);
  EXPECT_EQ(testText(), kUnknownId);
  set("model", 13);
  set("cport", "/no/such/device");
  EXPECT_EQ(testText(),
            "Ошибка_1: Не возможно установить соединение. Убедитесь в правильности имени СОМ "
            "порта, возможно, он занят другим приложением.");
  fixture::PtyLine line;
  line.play(fixture::silent());
  set("cport", line.path());
  set("cbaudrate", 9600);
  EXPECT_EQ(testText(), "Ошибка_3: Нет ответа от весов.");
  set("model", kEmulator);
  for (int i = 0; i < 3; ++i) {
    // A weight below ten is padded to six places.
    EXPECT_THAT(testText(), testing::MatchesRegex("Вес: ( [0-9]|[0-9]{2,3})\\.[0-9]{3}; "
                                                  "|Ошибка_3: Нет ответа от весов\\."));
  }
  // No place is left for the scale of the test.
  for (int i = 0; i < 100; ++i) open();
  EXPECT_EQ(testText(), kUnknownId);
}

TEST_F(Methods, SetParameterTakesWhatItKnowsAndPassesTheRestOver) {
  for (const Value& value : {Value(7), Value(1.5), Value(true), Value("text"), Value()}) {
    for (const char* name : {"model", "conntype", "conleave", "cbaudrate", "eport", "nonsense", "",
                             "MODEL", "coeff", "cport", "ehost"}) {
      const bool wantsText = std::set<std::string>{"coeff", "cport", "ehost"}.contains(name);
      const CallResult taken = call("SetParameter", {name, value});
      const bool refused = wantsText && !std::holds_alternative<std::string>(value);
      EXPECT_EQ(taken.executed, !refused);
      EXPECT_EQ(taken.result, refused ? Value() : Value(true));
      EXPECT_EQ(taken.params, (std::vector<Value>{name, value}));
    }
  }
  EXPECT_EQ(lastError(), 1099U);
  // A name may come as a narrow text, too.
  EXPECT_TRUE(holds("SetParameter", {NarrowText{"model"}, kEmulator}));
  open();
  EXPECT_EQ(lastError(), 0U);
}

TEST_F(Methods, FolderBringsTheScalesOfItsFile) {
  fixture::TempFolder folder;
  const std::string path = folder.makeFolder("Весы");
  folder.write(
      "Весы/settings.xml",
      R"(<Настройки><SCALES3 fNum="7" fType="20" fHost="весы.рф" fCoeff="1"/></Настройки>)");
  const auto knows = [&](const std::string& id) {
    call("GetWeight", {id});
    return lastError() != 8U;
  };
  const std::string opened = openEmulator();
  EXPECT_TRUE(holds("SetPathDllFolder", {path}));
  EXPECT_EQ(lastError(), 0U);
  EXPECT_TRUE(knows("7"));
  EXPECT_TRUE(knows("весы.рф"));
  EXPECT_FALSE(knows(opened));

  EXPECT_FALSE(holds("SetPathDllFolder", {"/etc/passwd"}));
  EXPECT_EQ(answer("GetLastError"), Value(130U));
  EXPECT_EQ(component_.lastError().text,
            "Ошибка_130: Путь к папке компоненты указан НЕправильный: '/etc/passwd/'");
  EXPECT_TRUE(knows("7"));
}

TEST_F(Methods, IdsMayHoldCyrillicLetters) {
  // A scale answers to its port's name; ids travel as windows-1251.
  set("cport", "Весы №1");
  openEmulator();
  EXPECT_TRUE(holds("Calibrate", {"Весы №1"}));
  EXPECT_TRUE(holds("Calibrate", {NarrowText{"\xC2\xE5\xF1\xFB \xB9"
                                             "1"}}));
  EXPECT_FALSE(holds("Calibrate", {"Весы №2"}));
  EXPECT_TRUE(holds("Close", {"Весы №1"}));
  EXPECT_FALSE(holds("Calibrate", {"Весы №1"}));
}

TEST_F(Methods, KeepNothingInCommonWithThoseOfAnotherObject) {
  const std::string id = openEmulator();
  host::Component second(ORBELO_COMPONENT);
  second.call("SetParameter", {"model", kWithoutDriver});
  EXPECT_NE(second.call("Open").params.at(0), Value(id));
  EXPECT_EQ(lastError(), 0U);
  EXPECT_EQ(second.lastError().code, 5U);
  EXPECT_EQ(second.call("GetWeight", {id}).result, Value(false));
  EXPECT_EQ(second.lastError().code, 8U);
  { host::Component third(ORBELO_COMPONENT); }
  call("GetWeight", {id});
  EXPECT_NE(lastError(), 8U);
}

/// A text without a pointer.
constexpr host::OtherValue kNullText{kVariantWideString};
constexpr host::OtherValue kNullNarrowText{kVariantNarrowString};

TEST_F(Methods, TakeNullTextsAsEmptyOnes) {
  for (const Value& null : {Value(kNullText), Value(kNullNarrowText)}) {
    set("cport", "port");
    openEmulator();
    EXPECT_TRUE(holds("SetParameter", {null, 5}));
    for (const char* name : {"coeff", "cport", "ehost"}) set(name, null);
    EXPECT_FALSE(holds("GetWeight", {null}));
    EXPECT_EQ(lastError(), 8U);
    EXPECT_TRUE(holds("Close", {null}));
    // The file system's root is a folder.
    EXPECT_TRUE(holds("SetPathDllFolder", {null}));
  }
  component_.object().SetLocale(nullptr);
  EXPECT_TRUE(component_.object().RegisterExtensionAs(nullptr));
}

/// What a variant holds that nobody has written to.
constexpr host::OtherValue kUntouched{0x7777};

/// Calls as no careful host makes them: too few parameters, of the wrong kind, and none.
TEST_F(Methods, RefuseCallsWithoutTheirTextAndTouchNothing) {
  for (const std::string_view name : {"SetParameter", "Close", "Calibrate", "GetWeight", "SetPrice",
                                      "GetWeightPriceCost", "SetPathDllFolder"}) {
    SCOPED_TRACE(name);
    const long number = component_.findMethod(name)->number;
    const auto tried = [&](const Value& first, long count, bool array = true) {
      const std::vector<Value> values(5, first);
      host::Variants params(values, component_.memory());
      host::Variants result(std::vector<Value>{kUntouched}, component_.memory());
      const bool executed = component_.object().CallAsFunc(number, result.data(),
                                                           array ? params.data() : nullptr, count);
      EXPECT_EQ(params.values(), values);
      EXPECT_EQ(result.values().front() == Value(kUntouched), !executed);
      return executed;
    };
    for (const Value& first : {Value(), Value(7), Value(1.5), Value(true)}) {
      EXPECT_FALSE(tried(first, 5));
    }
    for (const long count : {0L, 1L, 5L, -1L}) EXPECT_FALSE(tried("/no/such/folder", count, false));
    // One method doesn't look at the count.
    for (const long count : {0L, -1L}) {
      EXPECT_EQ(tried("/no/such/folder", count), name == "SetPathDllFolder");
    }
  }
}

TEST_F(Methods, WriteNothingPastTheirParameters) {
  std::vector<Value> values(8, Value(kUntouched));
  values[0] = openEmulator();
  for (const host::Method& method : component_.methods()) {
    for (long count = 0; count <= 7; ++count) {
      SCOPED_TRACE(testing::Message() << method.name << " with " << count);
      host::Variants params(values, component_.memory());
      host::Variants result(std::vector<Value>{kUntouched}, component_.memory());
      IComponentBase& object = component_.object();
      object.CallAsFunc(method.number, result.data(), params.data(), count);
      const std::vector<Value> after = params.values();
      const auto own = static_cast<std::size_t>(std::min(count, method.parameters));
      for (std::size_t i = own; i < values.size(); ++i) EXPECT_EQ(after[i], values[i]) << i;
      // Without an array, or without a place for the result, a call does what it can.
      object.CallAsFunc(method.number, result.data(), nullptr, count);
      object.CallAsFunc(method.number, nullptr, params.data(), count);
      object.CallAsFunc(method.number, nullptr, nullptr, 0);
    }
  }
}

}  // namespace
