#pragma once

#include <chrono>

#include "ComLanPort.h"
#include "Interrupt.h"
#include "Options.h"
#include "ProtocolSheet.h"
#include "Recognise.h"

namespace weigh {

/// The line to a scale that isn't known yet: the driver's port, with speed and framing to choose.
class FindLine {
 public:
  /// Opens it. Throws Failure. `interrupt` ends all waiting.
  FindLine(const Connection& connection, const Interrupt& interrupt);

  /// Sets a serial line and drops what has come; false if the line can't be set so. Nothing to set
  /// on a network.
  bool set(int bitsPerSecond, const Framing& settings);
  void say(std::span<const std::uint8_t> bytes);
  /// Sends a weight request as the first attempt of a poll does.
  void ask(const Request& request);
  /// Waits up to `first` for a byte, and then until nothing more comes or `longest` has passed.
  recognise::Bytes hear(std::chrono::milliseconds first, std::chrono::milliseconds longest);
  /// All that comes in this time.
  recognise::Bytes listen(std::chrono::milliseconds time);
  /// False once the adapter is gone or the host has hung up.
  bool isUp();

 private:
  const Connection& connection_;
  const Interrupt& interrupt_;
  COrbComLanPort port_;
};

}  // namespace weigh
