// What each of the sixteen methods takes, gives and refuses.

#include <pugixml.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ComponentFixture.h"
#include "DataFile.h"
#include "PtyLine.h"
#include "TempFolder.h"

namespace {

using fixture::Component;
using fixture::kNothing;
using fixture::Value;

constexpr int kEmulator = 20;
constexpr int kWithoutDriver = 5;

bool isUint32(const tVariant& value, std::uint32_t number) {
  return value.vt == kVariantUint32 && value.value.ulVal == number;
}

std::wstring wide(const std::u16string& text) { return {text.begin(), text.end()}; }

class Methods : public testing::Test {
 protected:
  std::u16string openEmulator() {
    component_.set(u"model", kEmulator);
    return component_.open();
  }
  std::u16string errorText() {
    std::u16string text;
    component_.lastError(&text);
    return text;
  }

  Component component_;
};

TEST_F(Methods, TellWhatTheDriverIs) {
  const auto version = component_.call(u"GetVersion");
  EXPECT_TRUE(version->executed);
  EXPECT_EQ(version->result->vt, kVariantWideString);
  EXPECT_EQ(fixture::utf16(version->result->value.wide.pwstrVal), u"4.3.25 (05.03.2020)");
  EXPECT_EQ(version->result->value.wide.wstrLen, 19U);

  const auto description = component_.call(u"ПолучитьОписание", std::vector<Value>(7, kNothing));
  EXPECT_TRUE(description->returned(true));
  const fixture::Arguments& out = description->params;
  EXPECT_EQ(out.text(0), u"OrbeloScalesDriver");
  EXPECT_EQ(out.text(1), u"Драйвер электронных весов для простого взвешивания (NativeAPI).");
  EXPECT_EQ(out.text(2), u"ЭлектронныеВесы");
  EXPECT_TRUE(isUint32(out.at(3), 2002));
  EXPECT_EQ(out.at(4).vt, kVariantBool);
  EXPECT_FALSE(out.at(4).value.bVal);
  EXPECT_EQ(out.at(5).vt, kVariantBool);
  EXPECT_TRUE(out.at(5).value.bVal);
  EXPECT_EQ(out.text(6), u"");
  for (const std::size_t i : {0U, 1U, 2U, 6U}) {
    EXPECT_EQ(out.at(i).vt, kVariantWideString);
    EXPECT_EQ(out.at(i).value.wide.wstrLen, out.text(i).size());
  }
  EXPECT_TRUE(out.untouchedFrom(7));
}

TEST_F(Methods, ParametersAreThePageOfSettings) {
  const auto call = component_.call(u"GetParameters", {kNothing});
  EXPECT_TRUE(call->returned(true));
  std::wstring page = pugi::as_wide(fixture::dataFile("parameters.xml"));
  for (std::size_t at = 0; (at = page.find(L'\n', at)) != page.npos; at += 2)
    page.insert(at, 1, L'\r');
  EXPECT_EQ(wide(call->params.text(0)), page);
  EXPECT_EQ(call->params.at(0).value.wide.wstrLen, page.size());
}

TEST_F(Methods, RevisionIsRefusedWithItsValueSet) {
  const auto call = component_.call(u"GetInterfaceRevision");
  EXPECT_FALSE(call->executed);
  EXPECT_TRUE(isUint32(*call->result.data(), 2002));
}

TEST_F(Methods, LastErrorGivesCodeAndText) {
  auto call = component_.call(u"GetLastError", {kNothing});
  EXPECT_TRUE(call->executed);
  EXPECT_TRUE(isUint32(*call->result.data(), 1099));
  EXPECT_EQ(call->params.text(0), u"UnknownError");
  component_.call(u"Close", {u"nobody"});
  call = component_.call(u"GetLastError", {kNothing});
  EXPECT_TRUE(isUint32(*call->result.data(), 0));
  EXPECT_EQ(call->params.text(0), u"OK");
}

TEST_F(Methods, ActionsDoNothingAndSucceed) {
  for (const char16_t* name : {u"GetAdditionalActions", u"DoAdditionalAction"}) {
    const auto call = component_.call(name, {u"action"});
    EXPECT_TRUE(call->returned(true));
    EXPECT_TRUE(call->params.untouchedFrom(0));
  }
  EXPECT_EQ(component_.lastError(), 1099U);
}

TEST_F(Methods, OpenGivesAnIdWhateverHappened) {
  const std::u16string id = openEmulator();
  EXPECT_EQ(component_.lastError(), 0U);
  EXPECT_EQ(id.size(), 20U);
  EXPECT_EQ(id.find_first_not_of(u"0123456789ABCDEFabcdef"), std::u16string::npos);
  for (const int model : {5, 6, 15, 22, 32, 42, 45, 46, -1}) {
    component_.set(u"model", model);
    const auto call = component_.call(u"Open", {kNothing});
    EXPECT_TRUE(call->returned(true));
    EXPECT_EQ(call->params.text(0).size(), 20U);
    EXPECT_EQ(component_.lastError(), 5U);
    EXPECT_TRUE(component_.call(u"GetWeight", {call->params.text(0), kNothing})->returned(false));
    EXPECT_EQ(component_.lastError(), 8U);
  }
  component_.set(u"model", 13);
  component_.set(u"cport", u"/no/such/device");
  EXPECT_TRUE(component_.call(u"Open", {kNothing})->returned(true));
  EXPECT_EQ(component_.lastError(), 1U);
}

TEST_F(Methods, WeightIsWrittenWhateverTheResult) {
  const auto unknown = component_.call(u"GetWeight", {u"nobody", kNothing});
  EXPECT_TRUE(unknown->returned(false));
  EXPECT_EQ(unknown->params.at(1).vt, kVariantDouble);
  EXPECT_EQ(unknown->params.at(1).value.dblVal, 0.0);
  EXPECT_TRUE(unknown->params.untouchedFrom(2));
  EXPECT_EQ(errorText(), u"Ошибка_8: DeviceID не найден.");

  const std::u16string id = openEmulator();
  int good = 0;
  for (int i = 0; i < 100; ++i) {
    const auto call = component_.call(u"ПолучитьВес", {id, kNothing});
    ASSERT_TRUE(call->executed);
    const unsigned code = component_.lastError();
    EXPECT_TRUE(call->returned(code == 0));
    EXPECT_THAT(code, testing::AnyOf(0U, 3U));
    EXPECT_GT(call->params.at(1).value.dblVal, 0.07);
    good += code == 0 ? 1 : 0;
  }
  EXPECT_GT(good, 50);
}

TEST_F(Methods, WeightPriceCostFillsFour) {
  const auto unknown = component_.call(u"GetWeightPriceCost", {u"nobody", 1, 2, 3, 4});
  EXPECT_TRUE(unknown->returned(false));
  for (const std::size_t i : {1U, 2U, 3U}) {
    EXPECT_EQ(unknown->params.at(i).vt, kVariantDouble);
    EXPECT_EQ(unknown->params.at(i).value.dblVal, 0.0);
  }
  EXPECT_EQ(unknown->params.at(4).vt, kVariantInt32);
  EXPECT_EQ(unknown->params.at(4).value.lVal, 0);

  component_.set(u"coeff", u"0,5");
  const std::u16string id = openEmulator();
  EXPECT_TRUE(component_.call(u"SetPrice", {id, 1250})->returned(true));
  for (int i = 0; i < 20; ++i) {
    const auto call =
        component_.call(u"GetWeightPriceCost", {id, kNothing, kNothing, kNothing, kNothing});
    ASSERT_TRUE(call->executed);
    const double weight = call->params.at(1).value.dblVal;
    EXPECT_EQ(call->params.at(2).value.dblVal, 12.5);
    // The cost is that of the weight before its correction.
    EXPECT_NEAR(call->params.at(3).value.dblVal, 12.5 * weight * 2, 0.011);
    EXPECT_THAT(call->params.at(4).value.lVal, testing::AnyOf(0, 1));
    EXPECT_TRUE(call->params.untouchedFrom(5));
  }
}

TEST_F(Methods, SetPriceTakesTheBitsOfANumber) {
  const std::u16string id = openEmulator();
  // Widened without sign, -1 is no negative price for the registry.
  EXPECT_TRUE(component_.call(u"SetPrice", {id, -1})->returned(true));
  EXPECT_EQ(component_.lastError(), 0U);
  EXPECT_TRUE(component_.call(u"SetPrice", {u"nobody", 1})->returned(false));
  EXPECT_EQ(component_.lastError(), 8U);
}

TEST_F(Methods, DeviceTestTellsItsResultAsAText) {
  component_.set(u"model", kEmulator);
  for (int i = 0; i < 3; ++i) {
    const auto call = component_.call(u"DeviceTest", {kNothing, kNothing});
    EXPECT_TRUE(call->returned(true));
    EXPECT_EQ(component_.lastError(), 0U);
    EXPECT_TRUE(call->params.untouchedFrom(1));
    // A weight below ten is padded to six places.
    EXPECT_THAT(pugi::as_utf8(wide(call->params.text(0))),
                testing::MatchesRegex("Вес: ( [0-9]|[0-9]{2,3})\\.[0-9]{3}; "
                                      "|Ошибка_3: Нет ответа от весов\\."));
  }
}

TEST_F(Methods, DeviceTestTellsWhatFailed) {
  const auto testText = [&] {
    const auto call = component_.call(u"ТестУстройства", {kNothing, kNothing});
    EXPECT_TRUE(call->returned(true));
    EXPECT_EQ(component_.lastError(), 0U);
    return call->params.text(0);
  };
  component_.set(u"model", kWithoutDriver);
  EXPECT_EQ(testText(), u"Ошибка_8: DeviceID не найден.");
  component_.set(u"model", 13);
  component_.set(u"cport", u"/no/such/device");
  EXPECT_EQ(testText(),
            u"Ошибка_1: Не возможно установить соединение. Убедитесь в правильности имени СОМ "
            u"порта, возможно, он занят другим приложением.");
  fixture::PtyLine line;
  line.play(fixture::silent());
  component_.set(u"cport", line.path());
  component_.set(u"cbaudrate", 9600);
  EXPECT_EQ(testText(), u"Ошибка_3: Нет ответа от весов.");
  // No place is left for the scale of the test.
  component_.set(u"model", kEmulator);
  for (int i = 0; i < 100; ++i) component_.open();
  EXPECT_EQ(testText(), u"Ошибка_8: DeviceID не найден.");
}

TEST_F(Methods, SetParameterTakesWhatItKnowsAndPassesTheRestOver) {
  for (const Value& value : {Value{7}, Value{1.5}, Value{true}, Value{u"text"}, Value{kNothing}}) {
    for (const char16_t* name :
         {u"model", u"conntype", u"conleave", u"cbaudrate", u"eport", u"nonsense", u"", u"MODEL"}) {
      const auto call = component_.call(u"SetParameter", {name, value});
      EXPECT_TRUE(call->returned(true));
      EXPECT_TRUE(call->params.untouchedFrom(0));
    }
    const bool isText = std::holds_alternative<std::u16string>(value);
    for (const char16_t* name : {u"coeff", u"cport", u"ehost"}) {
      const auto call = component_.call(u"SetParameter", {name, value});
      EXPECT_EQ(call->executed, isText);
      if (!isText) {
        EXPECT_TRUE(call->result.untouched());
      }
    }
  }
  EXPECT_EQ(component_.lastError(), 1099U);
  // A name may come as a narrow text, too.
  EXPECT_TRUE(component_.call(u"SetParameter", {std::string("model"), kEmulator})->returned(true));
  component_.open();
  EXPECT_EQ(component_.lastError(), 0U);
}

TEST_F(Methods, FolderBringsTheScalesOfItsFile) {
  fixture::TempFolder folder;
  folder.makeFolder("Весы");
  folder.write("Весы/settings.xml",
               "<Root><SCALES3 fNum=\"7\" fType=\"20\" fIsComPort=\"1\" fCoeff=\"1.000\"/></Root>");
  const std::u16string opened = openEmulator();
  const std::u16string path(folder.path().begin(), folder.path().end());
  EXPECT_TRUE(component_.call(u"SetPathDllFolder", {path + u"Весы"})->returned(true));
  EXPECT_EQ(component_.lastError(), 0U);
  component_.call(u"GetWeight", {u"7", kNothing});
  EXPECT_NE(component_.lastError(), 8U);
  component_.call(u"GetWeight", {opened, kNothing});
  EXPECT_EQ(component_.lastError(), 8U);

  EXPECT_TRUE(component_.call(u"SetPathDllFolder", {u"/etc/passwd"})->returned(false));
  std::u16string text;
  EXPECT_EQ(component_.lastError(&text), 130U);
  EXPECT_EQ(text, u"Ошибка_130: Путь к папке компоненты указан НЕправильный: '/etc/passwd/'");
  component_.call(u"GetWeight", {u"7", kNothing});
  EXPECT_NE(component_.lastError(), 8U);
}

TEST_F(Methods, IdsMayHoldCyrillicLetters) {
  // A scale answers to its port's name; ids travel as windows-1251.
  component_.set(u"cport", u"Весы №1");
  openEmulator();
  for (const Value& id : {Value{u"Весы №1"}, Value{std::string("\xC2\xE5\xF1\xFB \xB9"
                                                               "1")}}) {
    EXPECT_TRUE(component_.call(u"Calibrate", {id, kNothing})->returned(true));
  }
  EXPECT_TRUE(component_.call(u"Calibrate", {u"Весы №2", kNothing})->returned(false));
  EXPECT_TRUE(component_.call(u"Close", {u"Весы №1"})->returned(true));
  EXPECT_TRUE(component_.call(u"Calibrate", {u"Весы №1", kNothing})->returned(false));
}

}  // namespace
