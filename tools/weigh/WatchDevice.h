#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "SerialDevices.h"

namespace weigh {

/// Follows the USB adapter of a scale: unplugged and plugged in again, it may get another device
/// name than the one that the scale's settings have.
class WatchedDevice {
 public:
  explicit WatchedDevice(std::filesystem::path configured, devices::Roots roots = {});

  /// To be called after a failed poll. The adapter, if it is there under another name than the
  /// configured one; none while that leads to it, while it is away, and for what is no USB adapter.
  std::optional<devices::SerialDevice> elsewhere();
  /// To be called after a good poll: an adapter that came late is known from then on.
  void answered();

 private:
  void remember();

  std::filesystem::path configured_;
  devices::Roots roots_;
  std::optional<devices::SerialDevice> device_;
  /// What there was beside it.
  std::vector<devices::SerialDevice> others_;
};

}  // namespace weigh
