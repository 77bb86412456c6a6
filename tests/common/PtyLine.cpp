#include "PtyLine.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace fixture {

namespace {

constexpr int kTimeout_ms = 2000;

/// The scale's end of a pseudo-terminal.
class PtyWire final : public Wire {
 public:
  PtyWire(Descriptor& end, const StopSignal& stop) : Wire(end.get(), stop), end_(end) {}
  void hangUp() override {
    end();
    end_.reset();
  }

 private:
  Descriptor& end_;
};

}  // namespace

PtyLine::PtyLine() : link_(folder_.file("line")) { plugIn(); }

PtyLine::~PtyLine() { stop(); }

void PtyLine::plugIn() {
  unplug();
  scaleEnd_ = Descriptor::checked(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt");
  if (::grantpt(scaleEnd_.get()) != 0 || ::unlockpt(scaleEnd_.get()) != 0) throwErrno("unlockpt");
  std::array<char, 128> name = {};
  if (::ptsname_r(scaleEnd_.get(), name.data(), name.size()) != 0) throwErrno("ptsname_r");
  driverEnd_ = Descriptor::checked(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC), "open");
  termios raw = settings();
  ::cfmakeraw(&raw);
  apply(raw);
  if (::symlink(name.data(), link_.c_str()) != 0) throwErrno("symlink");
}

void PtyLine::unplug() {
  stop();
  ::unlink(link_.c_str());
  driverEnd_.reset();
  scaleEnd_.reset();
}

void PtyLine::stop() {
  if (!player_.joinable()) return;
  stop_->raise();
  player_.join();
}

void PtyLine::play(Script script) {
  stop();
  stop_ = std::make_unique<StopSignal>();
  player_ = std::thread([this, script = std::move(script)] {
    PtyWire wire(scaleEnd_, *stop_);
    script(wire);
  });
}

void PtyLine::send(std::span<const std::uint8_t> data) {
  const StopSignal never;
  PtyWire(scaleEnd_, never).send(data);
  // The kernel hands bytes over on a thread of its own; a driver that reads at once must see them.
  pollfd arrived = {driverEnd_.get(), POLLIN, 0};
  ::poll(&arrived, 1, kTimeout_ms);
}

Bytes PtyLine::receive(std::size_t count) {
  Bytes result;
  std::array<std::uint8_t, 1024> chunk = {};
  while (result.size() < count) {
    pollfd waiting = {scaleEnd_.get(), POLLIN, 0};
    if (::poll(&waiting, 1, kTimeout_ms) <= 0) break;
    const ssize_t got = ::read(scaleEnd_.get(), chunk.data(), chunk.size());
    if (got <= 0) break;
    result.insert(result.end(), chunk.begin(), chunk.begin() + got);
  }
  return result;
}

termios PtyLine::settings() const {
  termios result = {};
  if (::tcgetattr(driverEnd_.get(), &result) != 0) throwErrno("tcgetattr");
  return result;
}

void PtyLine::apply(const termios& settings) {
  if (::tcsetattr(driverEnd_.get(), TCSANOW, &settings) != 0) throwErrno("tcsetattr");
}

}  // namespace fixture
