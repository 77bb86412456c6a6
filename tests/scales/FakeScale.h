#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ScalesObject.h"

namespace fixture {

/// What all fakes of a test share.
struct FakeWorld {
  double weight = 2.5;
  double price = 10.0;
  double cost = 25.0;
  long stable = 1;
  int code = 0;
  int openCode = 0;
  std::vector<std::string> notes;
  int alive = 0;
};

/// A driver that gives what the test sets and notes what it is told.
class FakeScale final : public IScalesObject {
 public:
  static inline FakeWorld world;

  FakeScale() { ++world.alive; }
  ~FakeScale() override { --world.alive; }

  int SetPathToDll(CkString& path) override {
    note(std::string("folder ") + path.getUtf8());
    return IScalesObject::SetPathToDll(path);
  }
  int SetScalesName(const char* name) override {
    note(std::string("id ") + (name == nullptr ? "none" : name));
    return IScalesObject::SetScalesName(name);
  }
  int SetCoeff(double value) override {
    note("coeff " + std::to_string(value));
    return IScalesObject::SetCoeff(value);
  }
  int SetLeaveConn(int leave) override {
    note("leave " + std::to_string(leave));
    return IScalesObject::SetLeaveConn(leave);
  }
  int SetComPort(const char* name, int rate, IAddInDefBase* base) override {
    note(std::string("serial ") + name + " " + std::to_string(rate));
    return IScalesObject::SetComPort(name, rate, base);
  }
  int SetLanPort(const char* host, int tcp, IAddInDefBase* base) override {
    note(std::string("network ") + host + " " + std::to_string(tcp));
    return IScalesObject::SetLanPort(host, tcp, base);
  }
  int OpenComPort() override { return world.openCode; }
  int CloseComPort() override {
    note("close");
    return 0;
  }
  int getScalesInfo(double* weight, double* price, double* cost, long* stable) override {
    *weight = world.weight;
    *price = world.price;
    *cost = world.cost;
    *stable = world.stable;
    return world.code;
  }
  int pressT(double tare) override {
    note("tare " + std::to_string(tare));
    return world.code;
  }
  int pressNull() override { return 5; }
  int setPrice(long price) override {
    note("price " + std::to_string(price));
    return world.code;
  }

 private:
  static void note(std::string text) { world.notes.push_back(std::move(text)); }
};

/// Model 1 is the fake, no other number has a driver.
inline std::unique_ptr<IScalesObject> makeFake(int model) {
  if (model != 1) return nullptr;
  return std::make_unique<FakeScale>();
}

}  // namespace fixture
