#pragma once

#include <termios.h>

#include <memory>
#include <string>
#include <thread>

#include "Descriptor.h"
#include "HexBytes.h"
#include "TempFolder.h"
#include "Wire.h"

namespace fixture {

/// A serial line made of a pseudo-terminal: the driver opens `path()`, the test plays the scale on
/// the other end. The path is a link of the test's own, since the numbers of pseudo-terminals are
/// reused at once. The driver's end is also held open here, so that bytes and settings survive
/// the driver's closing. It starts raw, without echo.
class PtyLine {
 public:
  PtyLine();
  ~PtyLine();
  PtyLine(const PtyLine&) = delete;
  PtyLine& operator=(const PtyLine&) = delete;

  /// What the driver opens. Stays the same when the line is unplugged and plugged in again.
  const std::string& path() const { return link_; }

  /// Runs a script on the scale's end, until it returns or the line goes.
  void play(Script script);

  /// Without a script: sends to the driver and returns when the bytes are there to be read, and
  /// waits for what the driver sent. `receive` gives fewer bytes when two seconds have passed.
  void send(std::span<const std::uint8_t> data);
  Bytes receive(std::size_t count);

  /// The line's settings, seen from a descriptor of its own.
  termios settings() const;
  void apply(const termios& settings);

  /// The adapter is pulled out: the line hangs up and its path is gone.
  void unplug();
  /// And put in again: a new line under the same path.
  void plugIn();

 private:
  void stop();

  TempFolder folder_;
  std::string link_;
  Descriptor scaleEnd_;
  Descriptor driverEnd_;
  std::unique_ptr<StopSignal> stop_;
  std::thread player_;
};

}  // namespace fixture
