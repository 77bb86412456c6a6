// The platform calls by slot, not by name: every operation of the component is called here
// through its place in the table of virtual operations, without a look at our headers' order.
// In turn the component must call the platform's objects by the right slots.

#include <array>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "Library.h"
#include "Utf16.h"

namespace {

/// A base of the component at `offset` bytes, and its table.
class RawBase {
 public:
  RawBase(void* object, std::size_t offset) : base_(static_cast<char*>(object) + offset) {}

  template <typename Result, typename... Args>
  Result call(std::size_t slot, Args... args) const {
    void* const* table = nullptr;
    std::memcpy(&table, base_, sizeof table);
    return reinterpret_cast<Result (*)(void*, Args...)>(table[slot])(base_, args...);
  }

 private:
  void* base_;
};

constexpr std::size_t kDeletingDestructor = 1;

/// Platform objects made of a bare table.
struct RawObject {
  void* const* table;
};

int allocated = 0;

void neverCalled() { std::abort(); }

bool allocate(void*, void** memory, unsigned long bytes) {
  ++allocated;
  *memory = std::malloc(bytes);
  return true;
}

TEST(Slots, AreWhereThePlatformCallsThem) {
  const host::Library library(ORBELO_COMPONENT);
  IComponentBase* typed = nullptr;
  const long address = library.getClassObject(nullptr, &typed);
  void* object = nullptr;
  std::memcpy(&object, &address, sizeof object);
  ASSERT_EQ(object, static_cast<void*>(typed));

  const std::array<void*, 4> managerTable = {
      reinterpret_cast<void*>(&neverCalled), reinterpret_cast<void*>(&neverCalled),
      reinterpret_cast<void*>(&allocate), reinterpret_cast<void*>(&neverCalled)};
  RawObject manager = {managerTable.data()};
  int host = 0;

  const RawBase init(object, 0);
  EXPECT_TRUE((init.call<bool, void*>(2, &host)));
  EXPECT_FALSE((init.call<bool, void*>(2, nullptr)));
  EXPECT_FALSE((init.call<bool, void*>(3, nullptr)));
  EXPECT_TRUE((init.call<bool, void*>(3, &manager)));
  EXPECT_EQ(init.call<long>(4), 2002);
  init.call<void>(5);

  const RawBase language(object, 8);
  WCHAR_T* registered = nullptr;
  EXPECT_TRUE((language.call<bool, WCHAR_T**>(2, &registered)));
  EXPECT_EQ(host::toUtf8(registered), "OrbeloScalesDriver");
  std::free(registered);
  EXPECT_EQ(language.call<long>(3), 1);
  EXPECT_EQ((language.call<long, const WCHAR_T*>(4, host::toUtf16("x").c_str())), -1);
  auto* property = language.call<WCHAR_T*, long, long>(5, 0, 0);
  EXPECT_EQ(host::toUtf8(property), "");
  std::free(property);
  tVariant value = {};
  EXPECT_TRUE((language.call<bool, long, tVariant*>(6, 0, &value)));
  EXPECT_EQ(value.vt, 11);
  EXPECT_TRUE((language.call<bool, long, tVariant*>(7, 0, &value)));
  EXPECT_TRUE((language.call<bool, long>(8, 0)));
  EXPECT_FALSE((language.call<bool, long>(9, 0)));
  EXPECT_EQ(language.call<long>(10), 16);
  EXPECT_EQ((language.call<long, const WCHAR_T*>(11, host::toUtf16("Подключить").c_str())), 5);
  auto* method = language.call<WCHAR_T*, long, long>(12, 11, 1);
  EXPECT_EQ(host::toUtf8(method), "ПолучитьВес");
  std::free(method);
  EXPECT_EQ((language.call<long, long>(13, 13)), 5);
  EXPECT_FALSE((language.call<bool, long, long, tVariant*>(14, 0, 0, &value)));
  EXPECT_EQ(value.vt, 0);
  EXPECT_TRUE((language.call<bool, long>(15, 15)));
  EXPECT_FALSE((language.call<bool, long, tVariant*, long>(16, 0, nullptr, 0)));
  tVariant result = {};
  EXPECT_TRUE((language.call<bool, long, tVariant*, tVariant*, long>(17, 0, &result, nullptr, 0)));
  EXPECT_EQ(host::toUtf8(result.value.wide.pwstrVal), "4.3.25 (05.03.2020)");
  std::free(result.value.wide.pwstrVal);
  EXPECT_EQ(allocated, 4);

  RawBase(object, 16).call<void, const WCHAR_T*>(2, host::toUtf16("ru_RU").c_str());

  // The destructor of each base ends the whole object.
  init.call<void>(kDeletingDestructor);
  for (const std::size_t offset : {8U, 16U}) {
    IComponentBase* another = nullptr;
    ASSERT_NE(library.getClassObject(nullptr, &another), 0);
    RawBase(another, offset).call<void>(kDeletingDestructor);
  }
}

}  // namespace
