// Short memory: an operation of the registry is done whole, or the scales and parameters are as
// they were and the last error says so.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "MemoryWatch.h"
#include "ScalesWrapper.h"
#include "TempFolder.h"

namespace {

/// A scale that needs no memory but its own.
class SilentScale final : public IScalesObject {
 public:
  int OpenComPort() override { return 0; }
  int getScalesInfo(double*, double*, double*, long*) override { return 0; }
  int pressT(double) override { return 0; }
  int pressNull() override { return 0; }
  int setPrice(long) override { return 0; }
  const char* id() const { return scalesName.data(); }
};

std::unique_ptr<IScalesObject> makeSilent(int) { return std::make_unique<SilentScale>(); }

const std::string kLong(200, 'x');

class Shortage : public testing::Test {
 protected:
  /// Does `operation` on a registry with the scale "7" on "port", with memory for 0, 1, 2 ...
  /// blocks until it needs no more, and with memory for all but one; says how often it was refused
  /// when memory ran out for good. It gives whether it was done.
  int refusals(const std::function<bool(CScalesWrapper&)>& operation,
               const std::function<void(CScalesWrapper&, bool done)>& check) {
    refusals(operation, check, true);
    return refusals(operation, check, false);
  }
  int refusals(const std::function<bool(CScalesWrapper&)>& operation,
               const std::function<void(CScalesWrapper&, bool done)>& check, bool isPassing) {
    constexpr int kMostBlocks = 20000;
    for (int blocks = 0; blocks < kMostBlocks; ++blocks) {
      CScalesWrapper scales(makeSilent);
      scales.AddScalesObject("port", 9600, 1, 0, "7", 0, 1.0);
      scales.Set_param_mp_coeff(CkString("3"));
      bool hit = false;
      bool done = false;
      {
        const fixture::MemoryShortage shortage(blocks, isPassing);
        done = operation(scales);
        hit = shortage.isHit();
      }
      SCOPED_TRACE(testing::Message() << blocks << (isPassing ? " and then all" : ""));
      if (!done) {
        EXPECT_EQ(scales.GetLastError(), 1099);
        EXPECT_TRUE(knows(scales, "7") && knows(scales, "port"));
      }
      check(scales, done);
      if (done && !hit) return blocks;
      if (HasFailure()) break;
    }
    ADD_FAILURE() << "no end";
    return 0;
  }

  static bool knows(CScalesWrapper& scales, std::string_view id) {
    return scales.GetScalesObject(std::string(id).c_str()) != nullptr;
  }
  static double coefficientOfNext(CScalesWrapper& scales) {
    CkString id;
    scales.CreateScalesObject(id);
    return scales.GetScalesObject(id.getAnsi())->GetCoeff();
  }
};

TEST_F(Shortage, AScaleIsReplacedWholeOrNotAtAll) {
  EXPECT_GT(
      refusals([](auto& s) { return s.AddScalesObject(kLong.c_str(), 1, 1, 0, "7", 0, 1) == 0; },
               [](auto& s, bool done) {
                 EXPECT_EQ(knows(s, kLong), done);
                 EXPECT_EQ(knows(s, "port"), !done);
               }),
      1);
}

TEST_F(Shortage, AnIdIsHandedOutOnlyWithItsScale) {
  CkString id;
  EXPECT_GT(
      refusals([&](auto& s) { return s.CreateScalesObject(id) == 0 && id.getNumChars() != 0; },
               [&](auto& s, bool done) {
                 EXPECT_TRUE(knows(s, "7"));
                 EXPECT_EQ(knows(s, id.getAnsi()), done);
               }),
      1);
}

TEST_F(Shortage, AParameterIsTakenWholeOrNotAtAll) {
  EXPECT_GE(
      refusals([](auto& s) { return s.Set_param_mp_coeff(CkString("0,000000000000000005")) == 0; },
               [](auto& s, bool done) { EXPECT_EQ(coefficientOfNext(s), done ? 5e-18 : 3.0); }),
      1);
  EXPECT_GT(refusals([](auto& s) { return s.Set_param_mp_cport(CkString(kLong.c_str())) == 0; },
                     [](auto& s, bool done) {
                       coefficientOfNext(s);
                       EXPECT_EQ(knows(s, kLong), done);
                     }),
            1);
}

TEST_F(Shortage, AFolderBringsAllItsScalesOrNone) {
  const fixture::TempFolder folder;
  folder.write("settings.xml",
               R"(<S><SCALES1 fNum="1" fType="1" fIsComPort="1" fComPortName=")" + kLong +
                   R"(" fCoeff="12.5"/><SCALES2 fNum="2" fType="1" fHost="host"/></S>)");
  CkString path(folder.path().c_str(), true);
  EXPECT_GT(refusals([&](auto& s) { return s.SetPathDllFolder(path) == 0; },
                     [](auto& s, bool done) {
                       for (const std::string& id : {std::string("1"), kLong, std::string("host")})
                         EXPECT_EQ(knows(s, id), done) << id;
                       EXPECT_TRUE(!done || s.GetScalesObject("1")->GetCoeff() == 12.5);
                     }),
            10);
}

TEST_F(Shortage, TheTextOfAnErrorIsWholeOrNone) {
  EXPECT_GE(refusals(
                [](auto& s) {
                  s.setPrice("nobody", 1);
                  const wchar_t* const text = s.GetLastTextError();
                  const bool done = text != nullptr;
                  if (!done) return s.refuse() == 0;
                  return std::wstring_view(text) == L"Ошибка_8: DeviceID не найден.";
                },
                [](auto&, bool) {}),
            1);
}

/// Names that lie in a scale which goes by them.
TEST_F(Shortage, NamesMayBeThoseOfAScaleThatGoes) {
  CScalesWrapper scales(makeSilent);
  const auto idOf = [&](const char* id) {
    return static_cast<SilentScale*>(scales.GetScalesObject(id))->id();
  };
  scales.AddScalesObject("port", 1, 1, 0, "7", 0, 1.0);
  scales.AddScalesObject("7", 1, 1, 0, "8", 0, 1.0);
  EXPECT_EQ(scales.AddScalesObject(idOf("7"), 1, 1, 0, idOf("7"), 0, 1.0), 0);
  EXPECT_FALSE(knows(scales, "8"));
  EXPECT_TRUE(knows(scales, "7"));
  EXPECT_EQ(scales.CloseComPort(idOf("7")), 0);
  EXPECT_FALSE(knows(scales, "7"));
}

}  // namespace
