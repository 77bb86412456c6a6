#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "DeviceAccess.h"
#include "Doctor.h"
#include "Holders.h"
#include "SerialPort.h"
#include "Text.h"

namespace weigh {

namespace {

/// Beyond this a poll gets noticeably slower: a scale is asked a few times a second.
constexpr int kHarmlessLatency_ms = 4;

constexpr const char* kSpeeds = "600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200";

/// `code` is "no-device" or "not-serial": either way there are others to name.
Finding noLine(const std::string& code, const std::string& path, const devices::Roots& roots,
               Diagnosis& diagnosis) {
  diagnosis.devices = devices::serialDevices(roots);
  const std::string there = serialDevicesText(roots);
  if (code == "not-serial")
    return {code, say("{0} is no serial line.", path),
            say("Name one of the serial devices of this machine: {1}.", path, there)};
  return {code, say("There is no device {0}.", path),
          say("Plug in the adapter, or name one of the serial devices of this machine: {1}.", path,
              there)};
}

std::string lackText(devices::Lack lack, const std::string& group) {
  switch (lack) {
    case devices::Lack::Group:
      return say("the user isn't in group {0} (log in anew afterwards)", group);
    case devices::Lack::NewLogin:
      return say("the user is in group {0}, but this session is older: log in anew", group);
    case devices::Lack::OwnBits: return say("the owner's own rights are missing");
    case devices::Lack::Nothing:
    case devices::Lack::Rule: break;
  }
  return say("no group of users may use it");
}

Finding denied(const std::string& path) {
  const auto access = devices::accessOf(path);
  if (!access) return lineFails(path, std::strerror(EACCES));
  const devices::User user = devices::currentUser();
  const devices::Lack lack = access->lackOf(user);
  // Something else than the bits says no.
  if (lack == devices::Lack::Nothing) return lineFails(path, std::strerror(EPERM));
  return {
      .code = "no-permission",
      .cause = say("User {1} may not read and write {0}: owner {2}, group {3}, rights {4}; {5}.",
                   path, user.name, access->owner, access->group, access->modeText(),
                   lackText(lack, access->group)),
      // TRANSLATORS: a command to copy
      .remedy = say("Run: {0}", access->remedy(lack, path, user))};
}

std::optional<Finding> holderTrouble(const std::string& path, const devices::Roots& roots) {
  std::vector<std::string> programs;
  for (const devices::Holder& holder : devices::holdersOf(path, roots).processes)
    programs.push_back(say("{0} (process {1})", holder.name, holder.pid));
  if (programs.empty()) return std::nullopt;
  return Finding{
      .code = "held",
      .cause = say("{0} is in use by {1}.", path, joined(programs)),
      .remedy =
          say("End that program or give it another line: a line serves one program at a time.")};
}

/// Opens the device and asks for its settings, without waiting for anything.
std::optional<Finding> openingTrouble(const std::string& path, const devices::Roots& roots,
                                      Diagnosis& diagnosis) {
  const int line = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (line < 0) {
    if (errno == EBUSY)
      return holderTrouble(path, roots)
          .value_or(Finding{
              .code = "held",
              .cause = say("Another program, which this user can't see, has {0} for itself alone.",
                           path),
              .remedy = say("Run the same as root to see its name: `sudo weigh doctor ...`.")});
    return errno == EACCES ? denied(path) : lineFails(path, std::strerror(errno));
  }
  termios settings = {};
  const int error = ::tcgetattr(line, &settings) == 0 ? 0 : errno;
  ::close(line);
  if (error == ENOTTY) return noLine("not-serial", path, roots, diagnosis);
  if (error != 0) return lineFails(path, std::strerror(error));
  return std::nullopt;
}

/// Whether the line takes the speed, by the component's own port.
std::optional<Finding> speedTrouble(const Connection& connection) {
  COMPort line;
  try {
    line.Open(connection.device.c_str());
  } catch (const std::exception&) {
    return lineFails(connection.device, std::strerror(EIO));
  }
  try {
    line.setBitRate(connection.baud);
  } catch (const std::exception&) {
    return Finding{
        .code = "speed-refused",
        .cause = say("{0} does not take {1} baud.", connection.device, connection.baud),
        .remedy = say("Set one of these speeds, the same in the scale's menu: {0}.", kSpeeds)};
  }
  return std::nullopt;
}

}  // namespace

std::string serialDevicesText(const devices::Roots& roots) {
  std::vector<std::string> paths;
  for (const devices::SerialDevice& device : devices::serialDevices(roots))
    paths.push_back(device.path.string());
  return paths.empty() ? sayIn("devices", "none") : joined(paths);
}

std::string adapterText(const devices::SerialDevice& device) {
  if (!device.adapter) return device.driver;
  const devices::UsbAdapter& adapter = *device.adapter;
  const std::string& maker = adapter.maker;
  const std::string name = maker + (maker.empty() || adapter.product.empty() ? "" : " ");
  const std::string full = name + adapter.product;
  return full.empty() ? adapter.id : full;
}

Finding lineFails(const std::string& path, const std::string& why) {
  return {.code = "line-fails",
          .cause = say("{0} can't be used: {1}.", path, why),
          .remedy = say("Unplug the adapter and plug it in again; `sudo dmesg | tail` tells what "
                        "the kernel thinks of it.")};
}

std::optional<Finding> deviceTrouble(const Connection& connection, const devices::Roots& roots,
                                     Diagnosis& diagnosis) {
  const std::string& path = connection.device;
  struct stat info = {};
  if (::stat(path.c_str(), &info) != 0) {
    if (errno == EACCES) return lineFails(path, std::strerror(errno));
    return noLine("no-device", path, roots, diagnosis);
  }
  if (!S_ISCHR(info.st_mode)) return noLine("not-serial", path, roots, diagnosis);
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
    const std::string setting = device->latencySetting.string();
    notes.push_back(
        {.code = "usb-latency",
         .cause = say("The adapter {0} holds bytes back for up to {1} ms (latency timer {2}).",
                      adapterText(*device), *device->latency_ms, setting),
         .remedy = say("Run: {0}", "echo 1 | sudo tee " + shellWord(setting))});
  }
  const std::filesystem::path& stable =
      device->byAdapter.empty() ? device->bySocket : device->byAdapter;
  if (path == device->path && !stable.empty())
    notes.push_back({.code = "name-may-change",
                     .cause = say("{0} may be another device after a restart or after replugging.",
                                  path.string()),
                     .remedy = say("Give the port as {0}", shellWord(stable.string()))});
  return notes;
}

}  // namespace weigh
