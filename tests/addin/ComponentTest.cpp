// The exports and everything of the component object but its methods' work.

#include <limits>

#include <gtest/gtest.h>

#include "ComponentFixture.h"

namespace {

using fixture::Component;
using fixture::units;
using fixture::utf16;

/// A text that the component gave, freed as the platform does it.
std::u16string taken(Component& component, const WCHAR_T* text) {
  std::u16string result = utf16(text);
  EXPECT_EQ(component.memory.sizeOf(text), text == nullptr ? 0 : (result.size() + 1) * 2);
  auto* block = const_cast<void*>(static_cast<const void*>(text));
  component.memory.FreeMemory(&block);
  return text == nullptr ? u"(null)" : result;
}

TEST(Exports, MakeAndEndObjects) {
  const host::Library library(fixture::builtComponent());
  EXPECT_EQ(utf16(library.getClassNames()), u"CAddInNative");
  EXPECT_EQ(library.getClassNames(), library.getClassNames());
  for (const int capabilities : {-1, 0, 1, 99}) {
    EXPECT_EQ(library.setPlatformCapabilities(static_cast<AppCapabilities>(capabilities)),
              kCapabilities1);
  }
  IComponentBase* object = nullptr;
  const long number = library.getClassObject(units(u"AnyName").data(), &object);
  EXPECT_EQ(number, reinterpret_cast<long>(object));
  IComponentBase* const first = object;
  EXPECT_EQ(library.getClassObject(units(u"CAddInNative").data(), &object), 0);
  EXPECT_EQ(object, first);
  IComponentBase* second = nullptr;
  EXPECT_NE(library.getClassObject(nullptr, &second), 0);
  EXPECT_NE(second, first);
  EXPECT_EQ(library.destroyObject(&object), 0);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(library.destroyObject(&object), -1);
  EXPECT_EQ(library.destroyObject(&second), 0);
  EXPECT_EQ(library.getClassObject(nullptr, nullptr), 0);
  EXPECT_EQ(library.destroyObject(nullptr), -1);
}

TEST(Component, HasOneEmptyProperty) {
  Component component;
  EXPECT_EQ(component->GetNProps(), 1);
  EXPECT_EQ(component->FindProp(units(u"").data()), 0);
  EXPECT_EQ(component->FindProp(nullptr), 0);
  EXPECT_EQ(component->FindProp(units(u"weight").data()), -1);
  for (const long alias : {0L, 1L, 2L, 3L, -1L}) {
    EXPECT_EQ(taken(component, component->GetPropName(0, alias)), u"");
  }
  fixture::ReturnValue value(component.memory);
  for (const long outside : {-1L, 1L, std::numeric_limits<long>::min()}) {
    EXPECT_EQ(component->GetPropName(outside, 0), nullptr);
    EXPECT_FALSE(component->GetPropVal(outside, value.data()));
    EXPECT_FALSE(component->SetPropVal(outside, value.data()));
    EXPECT_FALSE(component->IsPropReadable(outside));
    EXPECT_FALSE(component->IsPropWritable(outside));
    EXPECT_TRUE(value.untouched());
  }
  EXPECT_TRUE(component->IsPropReadable(0));
  EXPECT_FALSE(component->IsPropWritable(0));
  EXPECT_FALSE(component->SetPropVal(0, value.data()));  // no flag in it yet
  EXPECT_TRUE(component->GetPropVal(0, value.data()));
  EXPECT_EQ(value->vt, kVariantBool);
  EXPECT_FALSE(value->value.bVal);
  EXPECT_TRUE(component->SetPropVal(0, value.data()));
  EXPECT_FALSE(component->SetPropVal(0, nullptr));
}

TEST(Component, KnowsSixteenMethodsByBothNames) {
  struct Row {
    const char16_t* name;
    const char16_t* nameRu;
    long parameters;
  };
  constexpr Row kRows[] = {
      {u"GetVersion", u"ПолучитьНомерВерсии", 0},
      {u"GetDescription", u"ПолучитьОписание", 7},
      {u"GetLastError", u"ПолучитьОшибку", 1},
      {u"GetParameters", u"ПолучитьПараметры", 1},
      {u"SetParameter", u"УстановитьПараметр", 2},
      {u"Open", u"Подключить", 1},
      {u"Close", u"Отключить", 1},
      {u"DeviceTest", u"ТестУстройства", 2},
      {u"GetAdditionalActions", u"ПолучитьДополнительныеДействия", 1},
      {u"DoAdditionalAction", u"ВыполнитьДополнительноеДействие", 1},
      {u"Calibrate", u"УстановитьВесТары", 2},
      {u"GetWeight", u"ПолучитьВес", 2},
      {u"SetPrice", u"УстановитьЦену", 2},
      {u"GetWeightPriceCost", u"ПолучитьВесЦенуСтоимость", 5},
      {u"GetInterfaceRevision", u"ПолучитьРевизиюИнтерфейса", 0},
      {u"SetPathDllFolder", u"УказатьПутьКПапкеКомпоненты", 1},
  };
  Component component;
  EXPECT_EQ(component->GetNMethods(), 16);
  long number = 0;
  for (const Row& row : kRows) {
    EXPECT_EQ(component->FindMethod(units(row.name).data()), number);
    EXPECT_EQ(component->FindMethod(units(row.nameRu).data()), number);
    EXPECT_EQ(taken(component, component->GetMethodName(number, 0)), row.name);
    EXPECT_EQ(taken(component, component->GetMethodName(number, 1)), row.nameRu);
    EXPECT_EQ(component->GetMethodName(number, 2), nullptr);
    EXPECT_EQ(component->GetMethodName(number, -1), nullptr);
    EXPECT_EQ(component->GetNParams(number), row.parameters);
    EXPECT_TRUE(component->HasRetVal(number));
    EXPECT_FALSE(component->CallAsProc(number, nullptr, 0));
    ++number;
  }
  EXPECT_EQ(number, 16);
  for (const char16_t* unknown :
       {u"open", u"OPEN", u"Open ", u" Open", u"", u"Ope", u"подключить", u"ГетВес"}) {
    EXPECT_EQ(component->FindMethod(units(unknown).data()), -1);
  }
  EXPECT_EQ(component->FindMethod(nullptr), -1);
  EXPECT_EQ(component->FindMethod(units(std::u16string(65536, u'О')).data()), -1);
}

TEST(Component, RefusesWhatIsOutsideItsTable) {
  Component component;
  for (const long outside :
       {-1L, 16L, 1L << 31, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    EXPECT_EQ(component->GetMethodName(outside, 0), nullptr);
    EXPECT_EQ(component->GetNParams(outside), 0);
    EXPECT_FALSE(component->HasRetVal(outside));
    EXPECT_FALSE(component->CallAsProc(outside, nullptr, 0));
    fixture::ReturnValue result(component.memory);
    fixture::Arguments params(component.memory, {fixture::kNothing});
    EXPECT_FALSE(component->CallAsFunc(outside, result.data(), params.data(), 1));
    EXPECT_TRUE(result.untouched());
    EXPECT_TRUE(params.untouchedFrom(0));
    EXPECT_FALSE(component->GetParamDefValue(outside, 0, nullptr));
    EXPECT_FALSE(component->GetParamDefValue(outside, 0, result.data()));
    EXPECT_EQ(result->vt, kVariantEmpty);
  }
}

TEST(Component, KeepsNothingInCommonWithAnother) {
  Component first;
  Component second;
  first.set(u"model", 20);
  second.set(u"model", 5);
  const std::u16string id = first.open();
  EXPECT_NE(second.open(), id);
  EXPECT_EQ(first.lastError(), 0U);
  EXPECT_EQ(second.lastError(), 5U);
  EXPECT_TRUE(second.call(u"GetWeight", {id, fixture::kNothing})->returned(false));
  EXPECT_EQ(second.lastError(), 8U);
  {
    Component third;
    third.set(u"model", 20);
    third.open();
  }
  first.call(u"GetWeight", {id, fixture::kNothing});
  EXPECT_NE(first.lastError(), 8U);
}

}  // namespace
