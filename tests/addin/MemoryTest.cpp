// The platform's memory: every text is one block of the right size, none is lost, and a manager
// that runs out of memory meets a component that goes on.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Component.h"
#include "MemoryManager.h"

namespace {

using host::Value;

class Memory : public testing::Test {
 protected:
  Memory() {
    component_.call("SetParameter", {"model", 20});
    object_.setMemManager(&memory_);
  }

  /// Holds a text against its block, and frees it as the platform does.
  void drop(const WCHAR_T* text) {
    const std::size_t units = text == nullptr ? 0 : std::basic_string<WCHAR_T>(text).size() + 1;
    EXPECT_EQ(memory_.sizeOf(text), units * sizeof(WCHAR_T));
    void* block = const_cast<WCHAR_T*>(text);
    memory_.FreeMemory(&block);
  }

  /// All methods.
  void callAll() {
    for (long number = 0; number < object_.GetNMethods(); ++number) {
      host::Variants params(std::vector<Value>(7), memory_);
      host::Variants result(std::vector<Value>(1), memory_);
      object_.CallAsFunc(number, result.data(), params.data(), params.count());
      for (long i = 0; i < params.count(); ++i) {
        const tVariant& variant = params.data()[i];
        if (variant.vt != kVariantWideString) continue;
        const auto& wide = variant.value.wide;
        EXPECT_EQ(memory_.sizeOf(wide.pwstrVal),
                  wide.pwstrVal == nullptr ? 0U : (wide.wstrLen + 1U) * 2U);
        EXPECT_TRUE(wide.pwstrVal != nullptr || wide.wstrLen == 0);
      }
    }
  }

  /// And every operation that hands a text to the platform.
  void everything() {
    WCHAR_T* name = nullptr;
    EXPECT_TRUE(object_.RegisterExtensionAs(&name));
    drop(name);
    drop(object_.GetPropName(0, 0));
    drop(object_.GetMethodName(3, 0));
    drop(object_.GetMethodName(3, 1));
    callAll();
    EXPECT_EQ(memory_.live(), 0U);
    EXPECT_EQ(memory_.foreignFrees(), 0U);
  }

  fixture::MemoryManager memory_;
  host::Component component_{ORBELO_COMPONENT};
  IComponentBase& object_ = component_.object();
};

TEST_F(Memory, MayFailAtAnyBlockAndIsAllGivenBack) {
  everything();
  const int allocations = memory_.allocations();
  ASSERT_GE(allocations, 12);
  for (int n = 0; n < allocations; ++n) {
    SCOPED_TRACE(n);
    memory_.failAt(n);
    everything();
  }
  memory_.failAlways();
  everything();
}

TEST_F(Memory, AFailedBlockIsAnEmptyText) {
  memory_.failAlways();
  host::Variants result(std::vector<Value>(1), memory_);
  EXPECT_TRUE(object_.CallAsFunc(0, result.data(), nullptr, 0));
  EXPECT_EQ(result.data()->vt, kVariantWideString);
  EXPECT_EQ(result.data()->value.wide.pwstrVal, nullptr);
  EXPECT_EQ(result.data()->value.wide.wstrLen, 0U);
  EXPECT_EQ(object_.GetMethodName(0, 0), nullptr);
  EXPECT_EQ(object_.GetPropName(0, 0), nullptr);
}

TEST_F(Memory, IsMissedByNoMethodWithoutAManager) {
  object_.setMemManager(nullptr);
  callAll();
  EXPECT_EQ(object_.GetMethodName(0, 0), nullptr);
  EXPECT_EQ(object_.GetPropName(0, 0), nullptr);
  WCHAR_T* name = nullptr;
  EXPECT_FALSE(object_.RegisterExtensionAs(&name));
}

}  // namespace
