#include "WatchDevice.h"

#include <utility>

namespace weigh {

WatchedDevice::WatchedDevice(std::filesystem::path configured, devices::Roots roots)
    : configured_(std::move(configured)), roots_(std::move(roots)) {
  remember();
}

std::optional<devices::SerialDevice> WatchedDevice::elsewhere() {
  if (!device_) return std::nullopt;
  auto found = devices::findAgain(*device_, others_, roots_);
  if (!found) return std::nullopt;
  std::error_code error;
  if (std::filesystem::equivalent(configured_, found->path, error)) return std::nullopt;
  return found;
}

void WatchedDevice::answered() {
  if (!device_) remember();
}

void WatchedDevice::remember() {
  device_ = devices::deviceAt(configured_, roots_);
  others_ = devices::serialDevices(roots_);
}

}  // namespace weigh
