#include "DoctorDevice.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "DeviceAccess.h"
#include "Holders.h"
#include "SerialPort.h"
#include "Texts.h"

namespace weigh {

namespace {

/// Beyond this a poll gets noticeably slower: a scale is asked a few times a second.
constexpr int kHarmlessLatency_ms = 4;

constexpr const char* kSpeeds = "600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200";

Finding notAmongDevices(const Advice& advice, const std::string& path, const devices::Roots& roots,
                        Diagnosis& diagnosis) {
  diagnosis.devices = devices::serialDevices(roots);
  return finding(advice, {path, serialDevicesText(roots)});
}

std::string lackText(devices::Lack lack, const std::string& group) {
  switch (lack) {
    case devices::Lack::Group: return fill(text::kLacksGroup, {group});
    case devices::Lack::NewLogin: return fill(text::kLacksNewLogin, {group});
    case devices::Lack::OwnBits: return say(text::kLacksOwnBits);
    case devices::Lack::Nothing:
    case devices::Lack::Rule: break;
  }
  return say(text::kLacksRule);
}

Finding lineFails(const std::string& path, int error) {
  return finding(advice::kLineFails, {path, std::strerror(error)});
}

Finding denied(const std::string& path) {
  const auto access = devices::accessOf(path);
  if (!access) return lineFails(path, EACCES);
  const devices::User user = devices::currentUser();
  const devices::Lack lack = access->lackOf(user);
  // Something else than the bits says no.
  if (lack == devices::Lack::Nothing) return lineFails(path, EPERM);
  return finding(advice::kDenied,
                 {path, user.name, access->owner, access->group, access->modeText(),
                  lackText(lack, access->group), access->remedy(lack, path, user)});
}

std::optional<Finding> holderTrouble(const std::string& path, const devices::Roots& roots) {
  std::string programs;
  for (const devices::Holder& holder : devices::holdersOf(path, roots).processes) {
    programs += (programs.empty() ? "" : ", ") +
                fill(text::kProcess, {holder.name, std::to_string(holder.pid)});
  }
  if (programs.empty()) return std::nullopt;
  return finding(advice::kHeld, {path, programs});
}

/// Opens the device and asks for its settings, without waiting for anything.
std::optional<Finding> openingTrouble(const std::string& path, const devices::Roots& roots,
                                      Diagnosis& diagnosis) {
  const int line = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (line < 0) {
    if (errno == EBUSY)
      return holderTrouble(path, roots).value_or(finding(advice::kHeldBySomebody, {path}));
    return errno == EACCES ? denied(path) : lineFails(path, errno);
  }
  termios settings = {};
  const int error = ::tcgetattr(line, &settings) == 0 ? 0 : errno;
  ::close(line);
  if (error == ENOTTY) return notAmongDevices(advice::kNotSerial, path, roots, diagnosis);
  if (error != 0) return lineFails(path, error);
  return std::nullopt;
}

/// Whether the line takes the speed, by the component's own port.
std::optional<Finding> speedTrouble(const Connection& connection) {
  COMPort line;
  try {
    line.Open(connection.device.c_str());
  } catch (const std::exception&) {
    return lineFails(connection.device, EIO);
  }
  try {
    line.setBitRate(connection.baud);
  } catch (const std::exception&) {
    return finding(advice::kSpeedRefused,
                   {connection.device, std::to_string(connection.baud), kSpeeds});
  }
  return std::nullopt;
}

}  // namespace

std::string serialDevicesText(const devices::Roots& roots) {
  std::string paths;
  for (const devices::SerialDevice& device : devices::serialDevices(roots))
    paths += (paths.empty() ? "" : ", ") + device.path.string();
  return paths.empty() ? say(text::kNone) : paths;
}

std::string adapterText(const devices::SerialDevice& device) {
  if (!device.adapter) return device.driver;
  const devices::UsbAdapter& adapter = *device.adapter;
  const std::string& maker = adapter.maker;
  const std::string name = maker + (maker.empty() || adapter.product.empty() ? "" : " ");
  const std::string full = name + adapter.product;
  return full.empty() ? adapter.id : full;
}

std::optional<Finding> deviceTrouble(const Connection& connection, const devices::Roots& roots,
                                     Diagnosis& diagnosis) {
  const std::string& path = connection.device;
  struct stat info = {};
  if (::stat(path.c_str(), &info) != 0) {
    if (errno == EACCES) return lineFails(path, errno);
    return notAmongDevices(advice::kNoDevice, path, roots, diagnosis);
  }
  if (!S_ISCHR(info.st_mode)) return notAmongDevices(advice::kNotSerial, path, roots, diagnosis);
  if (!devices::mayUse(path)) return denied(path);
  if (auto trouble = openingTrouble(path, roots, diagnosis)) return trouble;
  if (auto trouble = holderTrouble(path, roots)) return trouble;
  return speedTrouble(connection);
}

std::vector<Finding> deviceNotes(const std::filesystem::path& path, const devices::Roots& roots) {
  std::vector<Finding> notes;
  const auto device = devices::deviceAt(path, roots);
  if (!device) return notes;
  if (device->latency_ms.value_or(0) > kHarmlessLatency_ms) {
    notes.push_back(
        finding(advice::kUsbLatency, {adapterText(*device), std::to_string(*device->latency_ms),
                                      device->latencySetting.string()}));
  }
  const std::filesystem::path& stable =
      device->byAdapter.empty() ? device->bySocket : device->byAdapter;
  if (path == device->path && !stable.empty())
    notes.push_back(finding(advice::kNameMayChange, {path.string(), stable.string()}));
  return notes;
}

}  // namespace weigh
