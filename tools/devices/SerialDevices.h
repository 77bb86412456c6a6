#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Roots.h"

namespace devices {

/// The adapter that a serial device hangs on, if that is a USB adapter.
struct UsbAdapter {
  /// Vendor and product in hexadecimal, as lsusb shows them: "0403:6001".
  std::string id;
  /// What the adapter says of itself; each may be empty.
  std::string maker;
  std::string product;
  std::string serialNumber;
  /// Which of the adapter's own ports it is; empty or "00" and "0" for the only one.
  std::string port;
  /// Where it is plugged in, by the kernel's naming of the way there: "1-1.2".
  std::string socket;
};

/// A serial device with hardware behind it.
struct SerialDevice {
  /// The name by order of arrival: /dev/ttyUSB0. Another one after the next start or replugging.
  std::filesystem::path path;
  /// A name that stays with the adapter wherever it is plugged in, below /dev/serial/by-id; empty
  /// where the system gives none.
  std::filesystem::path byAdapter;
  /// A name that stays with the socket whatever is plugged in, below /dev/serial/by-path; empty
  /// where the system gives none.
  std::filesystem::path bySocket;
  std::optional<UsbAdapter> adapter;
  /// The kernel's driver: "ftdi_sio"; may be empty.
  std::string driver;
  /// How long the adapter gathers bytes before it hands on less than a full packet, milliseconds;
  /// none for devices that don't have this setting.
  std::optional<int> latency_ms;
  /// The file that the latency is set in; empty without one.
  std::filesystem::path latencySetting;
};

/// All serial devices, by ascending name. A port number without hardware is none.
std::vector<SerialDevice> serialDevices(const Roots& roots = {});

/// The device that a path leads to, through whatever links; none for a path that leads nowhere or
/// to something else, such as a pseudo-terminal.
std::optional<SerialDevice> deviceAt(const std::filesystem::path& path, const Roots& roots = {});

/// The same adapter after it was away, whatever its name is now. By its serial number; one without,
/// or with a number that several have, by its socket, or if it is the only one of its kind that
/// isn't among `others`. None while it is away, and for a device that is no USB adapter.
/// `others` are the devices that were there along with it; it may be among them itself.
std::optional<SerialDevice> findAgain(const SerialDevice& before,
                                      const std::vector<SerialDevice>& others = {},
                                      const Roots& roots = {});

}  // namespace devices
