#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkHashMap.h"
#include "DataBuffer.h"
#include "ExtPtrArray.h"
#include "KestrumCritSec.h"
#include "XString.h"

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

class PtrArray : public testing::Test {
 protected:
  void fill(int n) {
    for (int i = 0; i < n; ++i) array.appendPtr(new Number(i, &deaths));
  }

  int deaths = 0;
  ExtPtrArray array;
};

TEST_F(PtrArray, AddsMovesAndTakesOut) {
  array.m_ownsObjects = true;
  fill(4);
  array.insertAt(1, new Number(10, &deaths));
  array.insertAt(99, new Number(11, &deaths));
  EXPECT_THAT(valuesOf(array), ElementsAre(0, 10, 1, 2, 3, 11));
  EXPECT_FALSE(array.insertAt(-1, nullptr));
  array.swap(0, 5);
  array.movePtr(1, 3);
  EXPECT_THAT(valuesOf(array), ElementsAre(11, 1, 2, 10, 3, 0));
  array.movePtr(4, 0);
  EXPECT_THAT(valuesOf(array), ElementsAre(3, 11, 1, 2, 10, 0));
  array.sortExtArray([](const KestrumObject* a, const KestrumObject* b) {
    return static_cast<const Number*>(a)->value < static_cast<const Number*>(b)->value;
  });
  EXPECT_THAT(valuesOf(array), ElementsAre(0, 1, 2, 3, 10, 11));

  const std::unique_ptr<KestrumObject> first(array.removeAt(0));
  const std::unique_ptr<KestrumObject> last(array.pop());
  EXPECT_EQ(static_cast<Number*>(last.get())->value, 11);
  EXPECT_EQ(array.removeAt(7), nullptr);
  EXPECT_EQ(array.elementAt(-1), nullptr);
  EXPECT_EQ(array.elementAt(4), nullptr);
  const std::unique_ptr<KestrumObject> replaced(array.elementAt(2));
  array.setAt(2, nullptr);
  EXPECT_THAT(valuesOf(array), ElementsAre(1, 2, -1, 10));
  array.trimNulls();
  const std::unique_ptr<KestrumObject> discarded(array.elementAt(0));
  array.discardFirstN(1);
  EXPECT_THAT(valuesOf(array), ElementsAre(2, 10));
  EXPECT_EQ(deaths, 0);
}

TEST_F(PtrArray, EmptyOnesAreHarmless) {
  EXPECT_EQ(array.lastElement(), nullptr);
  EXPECT_EQ(array.pop(), nullptr);
  EXPECT_FALSE(array.swap(0, 0));
  EXPECT_FALSE(array.movePtr(0, 0));
  array.trimNulls();
  array.discardFirstN(3);
  array.removeAll();
  array.removeAllObjects();
  array.sortExtArray([](const KestrumObject*, const KestrumObject*) { return false; });
  EXPECT_EQ(array.getSize(), 0);
}

TEST_F(PtrArray, DeletesOnlyWhatItOwns) {
  fill(3);
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
  fill(2);
  array.removeAllObjects();
  EXPECT_EQ(deaths, 5);
}

TEST_F(PtrArray, RefusesADeadObjectAndKeepsItsPlace) {
  alignas(Number) unsigned char memory[sizeof(Number)];
  auto* dead = new (memory) Number(1);
  dead->~Number();
  EXPECT_FALSE(array.appendPtr(dead));
  EXPECT_EQ(array.getSize(), 1);
  EXPECT_EQ(array.lastElement(), nullptr);
  EXPECT_FALSE(array.setAt(0, dead));
  KestrumObject::deleteObject(dead);  // leaves it alone
}

TEST_F(PtrArray, FindsOutWhatDiedMeanwhile) {
  alignas(Number) unsigned char memory[sizeof(Number)];
  Number first(0);
  auto* second = new (memory) Number(1);
  Number third(2);
  ExtPtrArray source;
  for (Number* number : {&first, second, &third}) source.appendPtr(number);
  second->~Number();
  EXPECT_EQ(source.elementAt(1), nullptr);
  // What comes before it goes over, the rest stays.
  EXPECT_FALSE(array.transferPtrs(source));
  EXPECT_THAT(valuesOf(array), ElementsAre(0));
  EXPECT_THAT(valuesOf(source), ElementsAre(-1, 2));
}

/// What `use` says of an object that has ended.
template <typename Object, typename Use>
bool afterItsEnd(Use use) {
  alignas(Object) unsigned char memory[sizeof(Object)];
  auto* object = new (memory) Object;
  object->~Object();
  return use(*object);
}

TEST(DeadObjects, TakeNothing) {
  EXPECT_FALSE(afterItsEnd<StringBuffer>([](auto& text) { return text.expectNumBytes(1); }));
  EXPECT_FALSE(afterItsEnd<DataBuffer>([](auto& bytes) {
    return bytes.append("x", 1) || bytes.appendChar('x') || bytes.appendCharN('x', 2);
  }));
  EXPECT_FALSE(afterItsEnd<XString>([](auto& text) {
    return text.isValidObject() || text.setFromUtf8("x") || text.appendUtf8("x") ||
           text.appendWideStr(L"x");
  }));
  EXPECT_TRUE(afterItsEnd<KestrumCritSec>([](auto& lock) {
    const CritSecExitor exitor(&lock);
    return true;
  }));
}

TEST(HashMap, HoldsOneValueForAKey) {
  int deaths = 0;
  {
    _ckHashMap map(1);
    const auto key = [](int i) { return StringBuffer(("host" + std::to_string(i)).c_str()); };
    for (int i = 0; i < 1000; ++i) map.hashInsert(key(i), std::make_unique<Number>(i, &deaths));
    map.hashInsert(key(7), std::make_unique<Number>(70, &deaths));
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(map.getSize(), 1000);
    EXPECT_EQ(static_cast<Number*>(map.hashLookup(key(7)))->value, 70);
    EXPECT_EQ(static_cast<Number*>(map.hashLookup(key(999)))->value, 999);
    EXPECT_EQ(map.hashLookup(key(1000)), nullptr);
    EXPECT_TRUE(map.hashDelete(key(7)));
    EXPECT_FALSE(map.hashDelete(key(7)));
    EXPECT_EQ(map.hashLookup(key(7)), nullptr);
    EXPECT_EQ(map.getSize(), 999);
  }
  EXPECT_EQ(deaths, 1001);
}

}  // namespace
