// Calls as no careful host makes them: too few parameters, of the wrong kind, and null.

#include <gtest/gtest.h>

#include "ComponentFixture.h"

namespace {

using fixture::Component;
using fixture::kNothing;
using fixture::Value;

constexpr long kMethods = 16;
constexpr int kEmulator = 20;

/// Methods that want a text in their first parameter, and whether they look at the count for it.
struct TextMethod {
  const char16_t* name;
  bool looksAtCount;
};
constexpr TextMethod kTextMethods[] = {{u"SetParameter", true},     {u"Close", true},
                                       {u"Calibrate", true},        {u"GetWeight", true},
                                       {u"SetPrice", true},         {u"GetWeightPriceCost", true},
                                       {u"SetPathDllFolder", false}};

TEST(Calls, WithoutATextAreRefusedAndTouchNothing) {
  Component component;
  for (const TextMethod& method : kTextMethods) {
    const long number = component->FindMethod(fixture::units(method.name).data());
    for (const Value& first : {Value{kNothing}, Value{7}, Value{1.5}, Value{true}}) {
      const auto call =
          component.call(method.name, {first, u"cport", kNothing, kNothing, kNothing});
      EXPECT_FALSE(call->executed) << number;
      EXPECT_TRUE(call->result.untouched()) << number;
      EXPECT_TRUE(call->params.untouchedFrom(0)) << number;
    }
    fixture::ReturnValue result(component.memory);
    for (const long count : {0L, 1L, 5L, -1L}) {
      EXPECT_FALSE(component->CallAsFunc(number, result.data(), nullptr, count)) << number;
    }
    fixture::Arguments text(component.memory, {u"/no/such/folder"});
    for (const long count : {0L, -1L}) {
      EXPECT_EQ(component->CallAsFunc(number, result.data(), text.data(), count),
                !method.looksAtCount);
      EXPECT_EQ(result.untouched(), method.looksAtCount);
    }
    EXPECT_TRUE(text.untouchedFrom(0));
  }
}

TEST(Calls, WriteNothingPastTheirParameters) {
  Component component;
  component.set(u"model", kEmulator);
  const std::u16string id = component.open();
  for (long number = 0; number < kMethods; ++number) {
    for (long count = 0; count <= 7; ++count) {
      SCOPED_TRACE(testing::Message() << "method " << number << " with " << count);
      fixture::Arguments params(component.memory, {id, kNothing, kNothing, kNothing, kNothing,
                                                   kNothing, kNothing, kNothing});
      fixture::ReturnValue result(component.memory);
      component->CallAsFunc(number, result.data(), params.data(), count);
      EXPECT_TRUE(params.untouchedFrom(static_cast<std::size_t>(count)));
      EXPECT_TRUE(params.untouchedFrom(static_cast<std::size_t>(component->GetNParams(number))));
      // Without an array, or without a place for the result, a call does what it can.
      component->CallAsFunc(number, result.data(), nullptr, count);
      component->CallAsFunc(number, nullptr, params.data(), count);
      component->CallAsFunc(number, nullptr, nullptr, 0);
    }
  }
}

TEST(Calls, TakeNullTextsAsEmptyOnes) {
  for (const Value& null : {Value{fixture::NullText{}}, Value{fixture::NullNarrowText{}}}) {
    Component component;
    component.set(u"model", kEmulator);
    component.set(u"cport", u"port");
    component.open();
    EXPECT_TRUE(component.call(u"SetParameter", {null, 5})->returned(true));
    for (const char16_t* name : {u"coeff", u"cport", u"ehost"}) {
      EXPECT_TRUE(component.call(u"SetParameter", {name, null})->returned(true));
    }
    EXPECT_TRUE(component.call(u"GetWeight", {null, kNothing})->returned(false));
    EXPECT_EQ(component.lastError(), 8U);
    EXPECT_TRUE(component.call(u"Close", {null})->returned(true));
    component->SetLocale(nullptr);
    EXPECT_TRUE(component->RegisterExtensionAs(nullptr));
    // The file system's root is a folder.
    EXPECT_TRUE(component.call(u"SetPathDllFolder", {null})->returned(true));
  }
}

}  // namespace
