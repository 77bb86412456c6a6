// The exports and everything of the component object but its methods' work.

#include <limits>

#include <gtest/gtest.h>

#include "Component.h"

namespace {

using host::toUtf16;
using host::toUtf8;
using host::Value;

/// What a variant holds that nobody has written to.
constexpr host::OtherValue kUntouched{0x7777};

TEST(Exports, MakeAndEndObjects) {
  const host::Library library(ORBELO_COMPONENT);
  EXPECT_EQ(toUtf8(library.getClassNames()), "CAddInNative");
  EXPECT_EQ(library.getClassNames(), library.getClassNames());
  for (const int capabilities : {-1, 0, 1, 99}) {
    EXPECT_EQ(library.setPlatformCapabilities(static_cast<AppCapabilities>(capabilities)), 1);
  }
  IComponentBase* object = nullptr;
  const long number = library.getClassObject(toUtf16("AnyName").c_str(), &object);
  EXPECT_EQ(number, reinterpret_cast<long>(object));
  IComponentBase* const first = object;
  EXPECT_EQ(library.getClassObject(toUtf16("CAddInNative").c_str(), &object), 0);
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

class ComponentObject : public testing::Test {
 protected:
  host::Component component_{ORBELO_COMPONENT};
  IComponentBase& object_ = component_.object();
  host::Variants value_{std::vector<Value>{kUntouched}, component_.memory()};
};

TEST_F(ComponentObject, HasOneEmptyProperty) {
  EXPECT_EQ(object_.GetNProps(), 1);
  EXPECT_EQ(object_.FindProp(toUtf16("").c_str()), 0);
  EXPECT_EQ(object_.FindProp(nullptr), 0);
  EXPECT_EQ(object_.FindProp(toUtf16("weight").c_str()), -1);
  for (const long alias : {0L, 1L, 2L, 3L, -1L}) {
    const WCHAR_T* name = object_.GetPropName(0, alias);
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(*name, 0);
  }
  for (const long outside : {-1L, 1L, std::numeric_limits<long>::min()}) {
    EXPECT_EQ(object_.GetPropName(outside, 0), nullptr);
    EXPECT_FALSE(object_.GetPropVal(outside, value_.data()));
    EXPECT_FALSE(object_.SetPropVal(outside, value_.data()));
    EXPECT_FALSE(object_.IsPropReadable(outside));
    EXPECT_FALSE(object_.IsPropWritable(outside));
    EXPECT_EQ(value_.values().front(), Value(kUntouched));
  }
  EXPECT_TRUE(object_.IsPropReadable(0));
  EXPECT_FALSE(object_.IsPropWritable(0));
  EXPECT_FALSE(object_.SetPropVal(0, value_.data()));  // no flag in it yet
  EXPECT_TRUE(object_.GetPropVal(0, value_.data()));
  EXPECT_EQ(value_.values().front(), Value(false));
  EXPECT_TRUE(object_.SetPropVal(0, value_.data()));
  EXPECT_FALSE(object_.SetPropVal(0, nullptr));
}

TEST_F(ComponentObject, KnowsSixteenMethodsByBothNames) {
  const struct {
    const char* name;
    const char* russianName;
    long parameters;
  } rows[] = {
      {"GetVersion", "ПолучитьНомерВерсии", 0},
      {"GetDescription", "ПолучитьОписание", 7},
      {"GetLastError", "ПолучитьОшибку", 1},
      {"GetParameters", "ПолучитьПараметры", 1},
      {"SetParameter", "УстановитьПараметр", 2},
      {"Open", "Подключить", 1},
      {"Close", "Отключить", 1},
      {"DeviceTest", "ТестУстройства", 2},
      {"GetAdditionalActions", "ПолучитьДополнительныеДействия", 1},
      {"DoAdditionalAction", "ВыполнитьДополнительноеДействие", 1},
      {"Calibrate", "УстановитьВесТары", 2},
      {"GetWeight", "ПолучитьВес", 2},
      {"SetPrice", "УстановитьЦену", 2},
      {"GetWeightPriceCost", "ПолучитьВесЦенуСтоимость", 5},
      {"GetInterfaceRevision", "ПолучитьРевизиюИнтерфейса", 0},
      {"SetPathDllFolder", "УказатьПутьКПапкеКомпоненты", 1},
  };
  const std::vector<host::Method> methods = component_.methods();
  ASSERT_EQ(methods.size(), std::size(rows));
  for (const host::Method& method : methods) {
    const auto& row = rows[method.number];
    EXPECT_EQ(method.name, row.name);
    EXPECT_EQ(method.russianName, row.russianName);
    EXPECT_EQ(method.parameters, row.parameters);
    EXPECT_TRUE(method.returnsValue);
    EXPECT_EQ(object_.FindMethod(toUtf16(row.name).c_str()), method.number);
    EXPECT_EQ(object_.FindMethod(toUtf16(row.russianName).c_str()), method.number);
    EXPECT_EQ(object_.GetMethodName(method.number, 2), nullptr);
    EXPECT_EQ(object_.GetMethodName(method.number, -1), nullptr);
    EXPECT_FALSE(object_.CallAsProc(method.number, nullptr, 0));
  }
  for (const char* unknown :
       {"open", "OPEN", "Open ", " Open", "", "Ope", "подключить", "ГетВес"}) {
    EXPECT_EQ(object_.FindMethod(toUtf16(unknown).c_str()), -1);
  }
  EXPECT_EQ(object_.FindMethod(nullptr), -1);
  EXPECT_EQ(object_.FindMethod(std::basic_string<WCHAR_T>(65536, 0x041E).c_str()), -1);
}

TEST_F(ComponentObject, RefusesWhatIsOutsideItsTable) {
  for (const long outside :
       {-1L, 16L, 1L << 31, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    EXPECT_EQ(object_.GetMethodName(outside, 0), nullptr);
    EXPECT_EQ(object_.GetNParams(outside), 0);
    EXPECT_FALSE(object_.HasRetVal(outside));
    EXPECT_FALSE(object_.CallAsProc(outside, nullptr, 0));
    host::Variants result(std::vector<Value>{kUntouched}, component_.memory());
    host::Variants params(std::vector<Value>{kUntouched}, component_.memory());
    EXPECT_FALSE(object_.CallAsFunc(outside, result.data(), params.data(), 1));
    EXPECT_EQ(result.values().front(), Value(kUntouched));
    EXPECT_EQ(params.values().front(), Value(kUntouched));
    EXPECT_FALSE(object_.GetParamDefValue(outside, 0, nullptr));
    EXPECT_FALSE(object_.GetParamDefValue(outside, 0, result.data()));
    EXPECT_EQ(result.values().front(), Value());
  }
}

}  // namespace
