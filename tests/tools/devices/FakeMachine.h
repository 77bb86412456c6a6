#pragma once

#include <filesystem>
#include <string>

#include "Roots.h"
#include "TempFolder.h"

namespace fixture {

/// The device files and kernel facts of a machine in a folder, laid out as the kernel does it:
/// links into one tree of devices.
class FakeMachine {
 public:
  struct Adapter {
    std::string vendor = "0403";
    std::string product = "6001";
    std::string maker = "FTDI";
    std::string name = "FT232R USB UART";
    std::string serialNumber = {};
    std::string driver = "ftdi_sio";
    /// Empty for a driver without that setting.
    std::string latency = "16";
  };

  FakeMachine();

  const devices::Roots& roots() const { return roots_; }

  /// Plugs an adapter into a socket ("1-1.2"), as device `name` ("ttyUSB0"). Where `line` is
  /// given, the device leads there; it is an empty file otherwise.
  void plugIn(const std::string& name, const std::string& socket, const Adapter& adapter,
              const std::filesystem::path& line = {});
  void unplug(const std::string& name, const std::string& socket);
  /// A port of the main board; chip 0 for one that isn't there.
  void addBoardPort(const std::string& name, int chip);

  std::string device(const std::string& name) const { return (roots_.dev / name).string(); }

 private:
  void addTerminal(const std::filesystem::path& device, const std::string& name,
                   const std::filesystem::path& line);

  TempFolder folder_;
  devices::Roots roots_;
};

}  // namespace fixture
