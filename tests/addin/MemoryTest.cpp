// The platform's memory: every text is one block of the right size, none is lost, and a manager
// that runs out of memory meets a component that goes on.

#include <vector>

#include <gtest/gtest.h>

#include "ComponentFixture.h"

namespace {

using fixture::Component;
using fixture::kNothing;
using fixture::Value;

/// Every operation that hands a text to the platform, and all methods.
void everything(Component& component) {
  const auto drop = [&](const WCHAR_T* text) {
    auto* block = const_cast<void*>(static_cast<const void*>(text));
    component.memory.FreeMemory(&block);
  };
  WCHAR_T* name = nullptr;
  EXPECT_TRUE(component->RegisterExtensionAs(&name));
  drop(name);
  drop(component->GetPropName(0, 0));
  drop(component->GetMethodName(3, 0));
  drop(component->GetMethodName(3, 1));
  component.call(u"SetParameter", {u"model", 20});
  for (long number = 0; number < component->GetNMethods(); ++number) {
    fixture::Arguments params(component.memory, std::vector<Value>(7, kNothing));
    fixture::ReturnValue result(component.memory);
    component->CallAsFunc(number, result.data(), params.data(), params.count());
    for (std::size_t i = 0; i < 7; ++i) {
      const tVariant& variant = params.at(i);
      if (variant.vt != kVariantWideString) continue;
      const auto& wide = variant.value.wide;
      EXPECT_EQ(component.memory.sizeOf(wide.pwstrVal),
                wide.pwstrVal == nullptr ? 0U : (wide.wstrLen + 1U) * 2U);
      EXPECT_TRUE(wide.pwstrVal != nullptr || wide.wstrLen == 0);
    }
  }
}

TEST(Memory, IsAllGivenBack) {
  Component component;
  for (int i = 0; i < 3; ++i) everything(component);
  EXPECT_GT(component.memory.allocations(), 30);
  EXPECT_EQ(component.memory.live(), 0U);
  EXPECT_EQ(component.memory.foreignFrees(), 0U);
}

TEST(Memory, MayFailAtAnyBlock) {
  Component component;
  int allocations = component.memory.allocations();
  everything(component);
  allocations = component.memory.allocations() - allocations;
  ASSERT_GE(allocations, 12);
  for (int n = 0; n < allocations; ++n) {
    component.memory.failAt(n);
    everything(component);
    EXPECT_EQ(component.memory.live(), 0U) << n;
  }
  component.memory.failAlways();
  everything(component);
  component.memory.recover();
  EXPECT_EQ(component.memory.live(), 0U);
  EXPECT_EQ(component.memory.foreignFrees(), 0U);
}

TEST(Memory, AFailedBlockIsAnEmptyText) {
  Component component;
  component.memory.failAlways();
  const auto version = component.call(u"GetVersion");
  EXPECT_TRUE(version->executed);
  EXPECT_EQ(version->result->vt, kVariantWideString);
  EXPECT_EQ(version->result->value.wide.pwstrVal, nullptr);
  EXPECT_EQ(version->result->value.wide.wstrLen, 0U);
  EXPECT_EQ(component->GetMethodName(0, 0), nullptr);
  EXPECT_EQ(component->GetPropName(0, 0), nullptr);
}

TEST(Memory, IsMissedByNoMethodWithoutAManager) {
  Component component;
  component->setMemManager(nullptr);
  for (long number = 0; number < component->GetNMethods(); ++number) {
    fixture::Arguments params(component.memory, std::vector<Value>(7, kNothing));
    fixture::ReturnValue result(component.memory);
    component->CallAsFunc(number, result.data(), params.data(), params.count());
  }
  EXPECT_EQ(component->GetMethodName(0, 0), nullptr);
  EXPECT_EQ(component->GetPropName(0, 0), nullptr);
  WCHAR_T* name = nullptr;
  EXPECT_FALSE(component->RegisterExtensionAs(&name));
}

}  // namespace
