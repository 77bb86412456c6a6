// The component object's helpers that no export reaches.

#include <stdexcept>

#include <gtest/gtest.h>

#include "AddInNative.h"
#include "HostObject.h"
#include "MemoryManager.h"
#include "Variant.h"

namespace {

TEST(AddError, ReportsToThePlatform) {
  fixture::HostObject host;
  CAddInNative component;
  component.addError(1, L"source", L"description", 2);  // nobody to report to yet
  component.Init(&host);
  component.addError(0x12345, L"Весы", L"Нет ответа", -7);
  ASSERT_EQ(host.errors().size(), 1U);
  EXPECT_EQ(host.errors()[0].code, 0x2345);  // the low 16 bits
  EXPECT_EQ(host.errors()[0].source, u"Весы");
  EXPECT_EQ(host.errors()[0].description, u"Нет ответа");
  EXPECT_EQ(host.errors()[0].scode, -7);
}

TEST(WstringToP, PutsATextIntoAVariant) {
  fixture::MemoryManager memory;
  CAddInNative component;
  component.setMemManager(&memory);
  {
    fixture::ReturnValue value(memory);
    EXPECT_FALSE(component.wstring_to_p(nullptr, value.data()));
    EXPECT_TRUE(value.untouched());
    EXPECT_TRUE(component.wstring_to_p(L"", value.data()));
    EXPECT_EQ(value->vt, kVariantWideString);
    EXPECT_EQ(value->value.wide.wstrLen, 0U);
    EXPECT_EQ(memory.sizeOf(value->value.wide.pwstrVal), 2U);
    EXPECT_EQ(value->value.wide.pwstrVal[0], 0);
  }
  fixture::ReturnValue value(memory);
  EXPECT_TRUE(component.wstring_to_p(L"Вес", value.data()));
  EXPECT_EQ(value->value.wide.wstrLen, 3U);
  EXPECT_EQ(memory.sizeOf(value->value.wide.pwstrVal), 8U);
  EXPECT_EQ(fixture::utf16(value->value.wide.pwstrVal), u"Вес");
}

TEST(GetStrFromParam, TakesBothKindsOfTextAndNoOther) {
  fixture::MemoryManager memory;
  CAddInNative component;
  using fixture::Value;
  struct Row {
    Value value;
    bool taken;
    const char* text;
  };
  for (const Row& row :
       {Row{std::u16string(u"Вес"), true, "Вес"}, Row{std::string("abc"), true, "abc"},
        Row{fixture::NullText{}, true, ""}, Row{fixture::NullNarrowText{}, true, ""},
        Row{true, false, ""}, Row{7, false, ""}, Row{1.5, false, ""},
        Row{fixture::kNothing, false, ""}}) {
    fixture::Arguments arguments(memory, {row.value});
    CkString text;
    text.setString("before");
    EXPECT_EQ(component.GetStrFromParam(arguments.data(), text), row.taken);
    EXPECT_STREQ(text.getUtf8(), row.text);
  }
}

/// A platform whose memory manager throws.
class ThrowingManager final : public IMemoryManager {
 public:
  bool AllocMemory(void**, unsigned long) override { throw std::runtime_error("no memory"); }
  void FreeMemory(void**) override {}
};

TEST(Boundary, NothingIsThrownAndNothingLeftHalfDone) {
  ThrowingManager throwing;
  fixture::MemoryManager memory;
  CAddInNative component;
  component.setMemManager(&throwing);
  EXPECT_EQ(component.GetMethodName(0, 0), nullptr);
  EXPECT_EQ(component.GetPropName(0, 0), nullptr);
  WCHAR_T* name = nullptr;
  EXPECT_TRUE(component.RegisterExtensionAs(&name));
  EXPECT_EQ(name, nullptr);
  fixture::ReturnValue result(memory);
  EXPECT_FALSE(component.CallAsFunc(0, result.data(), nullptr, 0));
  EXPECT_TRUE(result.untouched());
  fixture::Arguments params(memory, {fixture::kNothing});
  EXPECT_FALSE(component.CallAsFunc(2, result.data(), params.data(), params.count()));
  EXPECT_TRUE(result.untouched());
  EXPECT_TRUE(params.untouchedFrom(0));
}

}  // namespace
