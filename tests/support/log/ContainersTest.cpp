#include <pthread.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Cancellation.h"
#include "CkHashMap.h"
#include "ExtPtrArray.h"
#include "StringBuffer.h"

namespace {

using testing::ElementsAre;

struct Number : NonRefCountedObj {
  explicit Number(int n, int* deaths = nullptr) : value(n), deathCount(deaths) {}
  ~Number() override {
    if (deathCount != nullptr) ++*deathCount;
  }
  int value;
  int* deathCount;
};

std::vector<int> valuesOf(const ExtPtrArray& array) {
  std::vector<int> values;
  for (int i = 0; i < array.getSize(); ++i) {
    const auto* number = static_cast<const Number*>(array.elementAt(i));
    values.push_back(number == nullptr ? -1 : number->value);
  }
  return values;
}

TEST(PtrArray, RefusesPlacesOutside) {
  Number number(0);
  ExtPtrArray array;
  EXPECT_EQ(array.pop(), nullptr);
  ASSERT_TRUE(array.appendPtr(&number));
  EXPECT_FALSE(array.insertAt(-1, nullptr) || array.swap(0, 1) || array.movePtr(1, 0));
  for (const int i : {-1, 1}) EXPECT_EQ(array.elementAt(i), array.removeAt(i));
  EXPECT_EQ(array.removeAt(0), &number);
}

TEST(PtrArray, DeletesOnlyWhatItOwns) {
  int deaths = 0;
  ExtPtrArray array;
  for (int i = 0; i < 3; ++i) array.appendPtr(new Number(i, &deaths));
  {
    ExtPtrArray forgetful;
    forgetful.m_keepObjects = true;
    forgetful.appendPtr(array.elementAt(0));
    forgetful.removeAllObjects();
  }
  EXPECT_EQ(deaths, 0);
  {
    ExtPtrArray owner;
    owner.m_ownsObjects = true;
    ASSERT_TRUE(owner.transferPtrs(array));
    EXPECT_EQ(array.getSize(), 0);
    EXPECT_EQ(owner.getSize(), 3);
  }
  EXPECT_EQ(deaths, 3);
}

TEST(PtrArray, FindsOutWhatIsDead) {
  alignas(Number) unsigned char memory[sizeof(Number)];
  Number first(0);
  auto* second = new (memory) Number(1);
  Number third(2);
  ExtPtrArray source;
  for (Number* number : {&first, second, &third}) source.appendPtr(number);
  second->~Number();
  EXPECT_EQ(source.elementAt(1), nullptr);
  // What comes before it goes over, the rest stays.
  ExtPtrArray array;
  EXPECT_FALSE(array.transferPtrs(source));
  EXPECT_THAT(valuesOf(array), ElementsAre(0));
  EXPECT_THAT(valuesOf(source), ElementsAre(-1, 2));
  // One that is refused keeps its place.
  EXPECT_FALSE(array.appendPtr(second));
  EXPECT_FALSE(array.setAt(0, second));
  EXPECT_THAT(valuesOf(array), ElementsAre(0, -1));
  KestrumObject::deleteObject(second);  // leaves it alone
}

TEST(HashMap, HoldsOneValueForAKey) {
  int deaths = 0;
  {
    _ckHashMap map(1);
    const auto key = [](int i) { return StringBuffer(("host" + std::to_string(i)).c_str()); };
    for (int i = 0; i < 1000; ++i) map.hashInsert(key(i), std::make_unique<Number>(i, &deaths));
    EXPECT_TRUE(map.hashInsert(key(7), std::make_unique<Number>(70, &deaths)));
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(map.getSize(), 1000);
    EXPECT_EQ(static_cast<Number*>(map.hashLookup(key(7)))->value, 70);
    EXPECT_EQ(static_cast<Number*>(map.hashLookup(key(999)))->value, 999);
    EXPECT_TRUE(map.hashDelete(key(7)));
    EXPECT_FALSE(map.hashDelete(key(7)));
    EXPECT_EQ(map.hashLookup(key(7)), nullptr);
    EXPECT_EQ(map.getSize(), 999);
  }
  EXPECT_EQ(deaths, 1001);
}

// A host may cancel the thread that waits for a scale.
TEST(Cancellation, EndsTheThreadAndNothingElse) {
  EXPECT_EQ(unlessThrown([] { return 1; }, [] { return 2; }), 1);
  EXPECT_EQ(unlessThrown([]() -> int { throw std::runtime_error("x"); }, [] { return 2; }), 2);

  bool isBack = false;
  std::thread thread([&] {
    unlessThrown([] { return ::pause(); }, [] { return 0; });
    isBack = true;
  });
  ::pthread_cancel(thread.native_handle());
  thread.join();
  EXPECT_FALSE(isBack);
}

}  // namespace
