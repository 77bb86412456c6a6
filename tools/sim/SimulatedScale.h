#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "ScaleLine.h"
#include "SimulationLoop.h"

namespace sim {

enum class Transport { Pty, Tcp };

/// A scale of its own on a thread of its own, for tests. It is at its line when the constructor
/// returns and gone when the destructor does; all operations may be called from any thread.
///
///     sim::SimulatedScale scale(13, sim::Transport::Pty);
///     scale.setWeight(1.25);
///     driver.SetComPort(scale.devicePath().c_str(), 9600, nullptr);
///     ... compare with scale.expectedReading()
class SimulatedScale {
 public:
  /// The model's usual state unless another is given. Throws std::invalid_argument for a model
  /// without simulator and std::system_error where no line is to be had.
  SimulatedScale(int model, Transport transport, Faults faults = {});
  SimulatedScale(int model, Transport transport, const ScaleState& state, Faults faults = {});
  ~SimulatedScale();
  SimulatedScale(const SimulatedScale&) = delete;
  SimulatedScale& operator=(const SimulatedScale&) = delete;

  const ScaleModel& model() const { return model_; }
  /// A path of this scale alone, in a temporary directory; empty over TCP. It stays the same when
  /// the line vanishes and comes back.
  const std::string& devicePath() const { return devicePath_; }
  /// The port on 127.0.0.1; 0 on a pseudo-terminal. It stays the same too.
  int port() const { return port_; }

  void setWeight(double kilograms) {
    change([=](ScaleState& state) { state.weight = kilograms; });
  }
  /// Changes several things at once: `change([](ScaleState& s) { s.stable = false; ... })`.
  void change(const std::function<void(ScaleState&)>& change) {
    loop_.call([&] { change(line_->scale().state()); });
  }
  ScaleState state() {
    return loop_.call([&] { return line_->scale().state(); });
  }
  void setFaults(Faults faults) {
    loop_.call([&] { line_->setFaults(faults); });
  }
  /// From now on only a host with this speed understands the scale, and is understood. On a
  /// pseudo-terminal only.
  void setSpeed(int bitsPerSecond) {
    loop_.call([&] { pty_->setLineEnd({bitsPerSecond, model_.line}); });
  }

  /// Makes the line vanish at once, as when the cable is pulled, and come back.
  void goAway() {
    loop_.call([&] { line_->goAway(); });
  }
  void comeBack() {
    loop_.call([&] { line_->comeBack(); });
  }

  /// How many commands of a kind have come.
  int count(Action action) {
    return loop_.call([&] { return line_->scale().count(action); });
  }
  /// Waits until `wanted` of them have come; false if they don't within `limit`.
  bool waitForCount(Action action, int wanted,
                    std::chrono::milliseconds limit = std::chrono::seconds{5});
  /// All bytes that have come, and all that went out to a host.
  Bytes received() {
    return loop_.call([&] { return received_; });
  }
  Bytes sent() {
    return loop_.call([&] { return sent_; });
  }

  /// The frame of the present state, and what the component must read from it.
  Bytes frame() {
    return loop_.call([&] { return line_->scale().frame(); });
  }
  Reading expectedReading() {
    return loop_.call([&] { return line_->scale().expectedReading(); });
  }

 private:
  const ScaleModel& model_;
  std::string devicePath_;
  int port_ = 0;
  SimulationLoop loop_;
  ScaleLine* line_ = nullptr;
  PtyEndpoint* pty_ = nullptr;
  Bytes received_;
  Bytes sent_;
  std::thread thread_;
};

}  // namespace sim
