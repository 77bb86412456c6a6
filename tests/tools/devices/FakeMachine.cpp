#include "FakeMachine.h"

#include <fstream>

namespace fixture {

namespace fs = std::filesystem;

namespace {

void write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text << '\n';
}

void link(const fs::path& from, const fs::path& to) {
  fs::create_directories(from.parent_path());
  fs::create_directories(to);
  fs::create_directory_symlink(to, from);
}

std::string adapterName(const FakeMachine::Adapter& adapter) {
  std::string name = "usb-" + adapter.maker + '_' + adapter.name;
  if (!adapter.serialNumber.empty()) name += '_' + adapter.serialNumber;
  for (char& c : name) {
    if (c == ' ') c = '_';
  }
  return name + "-if00-port0";
}

}  // namespace

FakeMachine::FakeMachine()
    : roots_{.dev = folder_.file("dev"), .sys = folder_.file("sys"), .proc = "/proc"} {
  fs::create_directories(roots_.dev);
  fs::create_directories(roots_.sys / "class" / "tty");
}

void FakeMachine::addTerminal(const fs::path& device, const std::string& name,
                              const fs::path& line) {
  const fs::path terminal = device / "tty" / name;
  fs::create_directories(terminal);
  fs::create_directory_symlink(device, terminal / "device");
  link(roots_.sys / "class" / "tty" / name, terminal);
  if (line.empty()) {
    write(roots_.dev / name, "");
  } else {
    fs::create_symlink(line, roots_.dev / name);
  }
}

void FakeMachine::plugIn(const std::string& name, const std::string& socket, const Adapter& adapter,
                         const fs::path& line) {
  const fs::path usb = roots_.sys / "devices" / "usb1" / socket;
  write(usb / "idVendor", adapter.vendor);
  write(usb / "idProduct", adapter.product);
  write(usb / "manufacturer", adapter.maker);
  write(usb / "product", adapter.name);
  if (!adapter.serialNumber.empty()) write(usb / "serial", adapter.serialNumber);
  const fs::path interface = usb / (socket + ":1.0");
  write(interface / "bInterfaceNumber", "00");
  const fs::path port = interface / name;
  write(port / "port_number", "0");
  const fs::path bus = roots_.sys / "bus" / "usb-serial";
  link(port / "driver", bus / "drivers" / adapter.driver);
  link(port / "subsystem", bus);
  if (!adapter.latency.empty()) write(port / "latency_timer", adapter.latency);
  link(bus / "devices" / name, port);
  addTerminal(port, name, line);

  const fs::path names = roots_.dev / "serial";
  fs::create_directories(names / "by-id");
  fs::create_directories(names / "by-path");
  fs::remove(names / "by-id" / adapterName(adapter));
  fs::create_symlink("../../" + name, names / "by-id" / adapterName(adapter));
  fs::create_symlink("../../" + name, names / "by-path" / ("usb-0:" + socket + ":1.0-port0"));
}

void FakeMachine::unplug(const std::string& name, const std::string& socket) {
  fs::remove(roots_.dev / name);
  fs::remove(roots_.sys / "class" / "tty" / name);
  fs::remove(roots_.sys / "bus" / "usb-serial" / "devices" / name);
  fs::remove_all(roots_.sys / "devices" / "usb1" / socket);
  fs::remove(roots_.dev / "serial" / "by-path" / ("usb-0:" + socket + ":1.0-port0"));
}

void FakeMachine::addBoardPort(const std::string& name, int chip) {
  // Between the chip and its terminal stands a device whose driver is the same for all chips.
  const fs::path hardware = roots_.sys / "devices" / "pnp0" / name;
  link(hardware / "driver", roots_.sys / "bus" / "pnp" / "drivers" / "serial");
  link(hardware / "subsystem", roots_.sys / "bus" / "pnp");
  const fs::path port = hardware / "port0";
  link(port / "driver", roots_.sys / "bus" / "serial-base" / "drivers" / "port");
  link(port / "subsystem", roots_.sys / "bus" / "serial-base");
  addTerminal(port, name, {});
  write(port / "tty" / name / "type", std::to_string(chip));
}

}  // namespace fixture
