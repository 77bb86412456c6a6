#include "SerialDevices.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <tuple>

namespace devices {

namespace fs = std::filesystem;

namespace {

/// The first line of an attribute, without blanks at its end; empty for none.
std::string attribute(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  line.erase(line.find_last_not_of(" \t\r\n") + 1);
  return line;
}

std::optional<int> numberIn(const fs::path& file) {
  const std::string text = attribute(file);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || text.empty() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool isThere(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

fs::path resolved(const fs::path& path) {
  std::error_code error;
  return fs::canonical(path, error);
}

/// The nearest folder from `start` upwards to the root of all that has an entry of that name;
/// empty for none.
fs::path ancestorWith(const char* entry, fs::path start, const fs::path& root) {
  for (; start != root && start.has_relative_path(); start = start.parent_path()) {
    if (isThere(start / entry)) return start;
  }
  return {};
}

/// The driver that knows the hardware. Between it and the terminal newer kernels have a device of
/// their own, whose driver is the same for all.
std::string driverOf(fs::path device, const fs::path& root) {
  while (!(device = ancestorWith("driver", device, root)).empty()) {
    if (resolved(device / "subsystem").filename() != "serial-base")
      return resolved(device / "driver").filename();
    device = device.parent_path();
  }
  return {};
}

std::optional<UsbAdapter> adapterOf(const fs::path& device, const fs::path& root) {
  const fs::path adapter = ancestorWith("idVendor", device, root);
  if (adapter.empty()) return std::nullopt;
  const fs::path interface = ancestorWith("bInterfaceNumber", device, root);
  return UsbAdapter{
      .id = attribute(adapter / "idVendor") + ':' + attribute(adapter / "idProduct"),
      .maker = attribute(adapter / "manufacturer"),
      .product = attribute(adapter / "product"),
      .serialNumber = attribute(adapter / "serial"),
      .port = attribute(interface / "bInterfaceNumber") +
              attribute(ancestorWith("port_number", device, interface) / "port_number"),
      .socket = adapter.filename()};
}

/// Whether both paths lead to one file. The library's own comparison takes no devices.
bool isSame(const fs::path& left, const fs::path& right) {
  const fs::path target = resolved(left);
  return !target.empty() && target == resolved(right);
}

/// The link in `folder` that leads to a device; empty for none.
fs::path linkTo(const fs::path& device, const fs::path& folder) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (isSame(entry.path(), device)) return entry.path();
  }
  return {};
}

/// Whether the kernel keeps only a number here, for hardware that may once be told of.
bool withoutHardware(const fs::path& tty) {
  static constexpr const char* kUnknownChip = "0";
  return !isThere(tty / "device" / "driver") || attribute(tty / "type") == kUnknownChip;
}

SerialDevice describe(const fs::path& tty, const Roots& roots) {
  const fs::path device = resolved(tty / "device");
  const fs::path root = resolved(roots.sys);
  SerialDevice result{.path = roots.dev / tty.filename(),
                      .byAdapter = {},
                      .bySocket = {},
                      .adapter = adapterOf(device, root),
                      .driver = driverOf(device, root),
                      .latency_ms = {},
                      .latencySetting = {}};
  result.byAdapter = linkTo(result.path, roots.dev / "serial" / "by-id");
  result.bySocket = linkTo(result.path, roots.dev / "serial" / "by-path");
  const fs::path latency =
      roots.sys / "bus" / "usb-serial" / "devices" / tty.filename() / "latency_timer";
  if ((result.latency_ms = numberIn(latency))) result.latencySetting = latency;
  return result;
}

/// Names with numbers in their order: ttyUSB2 stands before ttyUSB10.
bool before(const SerialDevice& left, const SerialDevice& right) {
  const auto key = [](const SerialDevice& device) {
    const std::string name = device.path.filename();
    const std::size_t digits = name.find_last_not_of("0123456789") + 1;
    return std::tuple(name.substr(0, digits), name.size(), name);
  };
  return key(left) < key(right);
}

}  // namespace

std::vector<SerialDevice> serialDevices(const Roots& roots) {
  std::vector<SerialDevice> devices;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(roots.sys / "class" / "tty", error)) {
    if (!withoutHardware(entry.path())) devices.push_back(describe(entry.path(), roots));
  }
  std::sort(devices.begin(), devices.end(), before);
  return devices;
}

std::optional<SerialDevice> deviceAt(const fs::path& path, const Roots& roots) {
  for (const SerialDevice& device : serialDevices(roots)) {
    if (isSame(path, device.path)) return device;
  }
  return std::nullopt;
}

std::optional<SerialDevice> findAgain(const SerialDevice& before,
                                      const std::vector<SerialDevice>& others, const Roots& roots) {
  if (!before.adapter) return std::nullopt;
  const UsbAdapter& wanted = *before.adapter;
  const auto isIn = [](const UsbAdapter& adapter) {
    return [&adapter](const SerialDevice& device) {
      return device.adapter && device.adapter->socket == adapter.socket &&
             device.adapter->port == adapter.port;
    };
  };
  // The kernel's own facts and not the stable names: those are made a moment after the device,
  // and cheap adapters of one kind share them.
  std::vector<SerialDevice> kin = serialDevices(roots);
  std::erase_if(kin, [&](const SerialDevice& device) {
    return !device.adapter || device.adapter->id != wanted.id ||
           device.adapter->port != wanted.port ||
           device.adapter->serialNumber != wanted.serialNumber || !isThere(device.path);
  });
  const auto inSocket = std::find_if(kin.begin(), kin.end(), isIn(wanted));
  if (inSocket != kin.end()) return *inSocket;
  std::erase_if(kin, [&](const SerialDevice& device) {
    return std::any_of(others.begin(), others.end(), isIn(*device.adapter));
  });
  return kin.size() == 1 ? std::optional(kin.front()) : std::nullopt;
}

}  // namespace devices
