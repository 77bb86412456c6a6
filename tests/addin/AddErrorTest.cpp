// The component object's helpers that no export reaches.

#include <pthread.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AddInNative.h"
#include "Component.h"
#include "MemoryManager.h"
#include "MemoryWatch.h"
#include "PlatformObject.h"
#include "RunningShort.h"

extern "C" long GetClassObject(const WCHAR_T* name, IComponentBase** object);
extern "C" long DestroyObject(IComponentBase** object);

namespace {

using Values = std::vector<host::Value>;

/// What a variant holds that nobody has written to.
const Values kUntouched = {host::OtherValue{0x7777}};

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
  host::Variants value(kUntouched, memory);
  EXPECT_FALSE(component.wstring_to_p(nullptr, value.data()));
  EXPECT_EQ(value.values(), kUntouched);
  EXPECT_TRUE(component.wstring_to_p(L"", value.data()));
  EXPECT_EQ(value.values().front(), host::Value(""));
  EXPECT_EQ(memory.sizeOf(value.data()->value.wide.pwstrVal), 2U);
  EXPECT_EQ(value.data()->value.wide.pwstrVal[0], 0);
}

/// Memory of a platform that does something else when it is asked for some.
class OddManager final : public IMemoryManager {
 public:
  explicit OddManager(std::function<void()> act) : act_(std::move(act)) {}
  bool AllocMemory(void**, unsigned long) override {
    act_();
    return false;
  }
  void FreeMemory(void**) override {}

 private:
  std::function<void()> act_;
};

TEST(Boundary, NothingIsThrownAndNothingLeftHalfDone) {
  OddManager throwing([] { throw std::runtime_error("no memory"); });
  fixture::MemoryManager memory;
  CAddInNative component;
  component.setMemManager(&throwing);
  EXPECT_EQ(component.GetMethodName(0, 0), nullptr);
  EXPECT_EQ(component.GetPropName(0, 0), nullptr);
  WCHAR_T* name = nullptr;
  EXPECT_TRUE(component.RegisterExtensionAs(&name));
  EXPECT_EQ(name, nullptr);
  host::Variants result(kUntouched, memory);
  EXPECT_FALSE(component.CallAsFunc(0, result.data(), nullptr, 0));
  EXPECT_EQ(result.values(), kUntouched);
  host::Variants params(kUntouched, memory);
  EXPECT_FALSE(component.CallAsFunc(2, result.data(), params.data(), params.count()));
  EXPECT_EQ(result.values(), kUntouched);
  EXPECT_EQ(params.values(), kUntouched);
}

/// The thread ends as a cancelled one does, by a call before which the address sanitizer takes its
/// marks off the stack.
TEST(Boundary, LetsTheEndOfAThreadThrough) {
  OddManager manager([] { ::pthread_exit(PTHREAD_CANCELED); });
  CAddInNative component;
  component.setMemManager(&manager);
  bool isBack = false;
  std::thread([&] {
    tVariant result = {};
    component.CallAsFunc(0, &result, nullptr, 0);
    isBack = true;
  }).join();
  EXPECT_FALSE(isBack);
}

/// Memory of the platform that isn't short when the component's is.
class PlentifulManager final : public IMemoryManager {
 public:
  explicit PlentifulManager(fixture::MemoryManager& memory) : memory_(memory) {}
  bool AllocMemory(void** memory, unsigned long bytes) override {
    const int left = std::exchange(fixture::memoryWatch().left, -1);
    const bool given = memory_.AllocMemory(memory, bytes);
    fixture::memoryWatch().left = left;
    return given;
  }
  void FreeMemory(void** memory) override { memory_.FreeMemory(memory); }

 private:
  fixture::MemoryManager& memory_;
};

TEST(Boundary, RefusesWhatMemoryIsTooShortFor) {
  fixture::MemoryManager memory;
  PlentifulManager plentiful(memory);
  const std::string longText(200, 'x');
  const host::Value none;
  const std::vector<Values> calls = {{},
                                     Values(7),
                                     {none},
                                     {none},
                                     {"cport", longText},
                                     {none},
                                     {longText},
                                     {none, none},
                                     {},
                                     {},
                                     {longText, none},
                                     {longText, none},
                                     {longText, 5},
                                     {longText, none, none, none, none},
                                     {},
                                     {longText}};
  constexpr std::size_t kAlwaysRefused = 14;
  for (std::size_t method = 0; method < calls.size(); ++method) {
    int refused = 0;
    bool hit = true;
    for (int blocks = 0; hit && blocks < 1000; ++blocks) {
      CAddInNative component;
      component.setMemManager(&plentiful);
      host::Variants params(calls[method], memory);
      host::Variants result(kUntouched, memory);
      bool executed = false;
      {
        const fixture::MemoryShortage shortage(blocks);
        executed = component.CallAsFunc(static_cast<long>(method), result.data(), params.data(),
                                        params.count());
        hit = shortage.isHit();
      }
      EXPECT_TRUE(executed || method == kAlwaysRefused || result.values() == kUntouched)
          << method << " " << blocks;
      refused += executed || method == kAlwaysRefused ? 0 : 1;
    }
    constexpr std::size_t kFirstWithText = 2;
    EXPECT_EQ(refused > 0, method >= kFirstWithText && !calls[method].empty()) << method;
  }
}

/// An object whose parts can't all be made is none.
TEST(Boundary, MakesAWholeObjectOrNone) {
  fixture::withMoreAndMoreMemory([](int blocks) {
    IComponentBase* object = nullptr;
    const fixture::MemoryShortage shortage(blocks);
    const long number = GetClassObject(nullptr, &object);
    EXPECT_EQ(number, reinterpret_cast<long>(object));
    EXPECT_EQ(object == nullptr, shortage.isHit()) << blocks;
    DestroyObject(&object);
  });
}

}  // namespace
