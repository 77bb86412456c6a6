// The component object's helpers that no export reaches.

#include <stdexcept>

#include <gtest/gtest.h>

#include "AddInNative.h"
#include "MemoryManager.h"
#include "PlatformObject.h"
#include "Variant.h"

namespace {

TEST(AddError, ReportsToThePlatform) {
  host::PlatformObject host;
  CAddInNative component;
  component.addError(1, L"source", L"description", 2);  // nobody to report to yet
  component.Init(&host);
  component.addError(0x12345, L"Весы", L"Нет ответа", -7);
  ASSERT_EQ(host.errors().size(), 1U);
  EXPECT_EQ(host.errors()[0].code, 0x2345);  // the low 16 bits
  EXPECT_EQ(host.errors()[0].source, "Весы");
  EXPECT_EQ(host.errors()[0].description, "Нет ответа");
  EXPECT_EQ(host.errors()[0].number, -7);
}

TEST(WstringToP, PutsATextIntoAVariant) {
  fixture::MemoryManager memory;
  CAddInNative component;
  component.setMemManager(&memory);
  fixture::ReturnValue value(memory);
  EXPECT_FALSE(component.wstring_to_p(nullptr, value.data()));
  EXPECT_TRUE(value.untouched());
  EXPECT_TRUE(component.wstring_to_p(L"", value.data()));
  EXPECT_EQ(value->vt, kVariantWideString);
  EXPECT_EQ(value->value.wide.wstrLen, 0U);
  EXPECT_EQ(memory.sizeOf(value->value.wide.pwstrVal), 2U);
  EXPECT_EQ(value->value.wide.pwstrVal[0], 0);
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
