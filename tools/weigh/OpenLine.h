#pragma once

#include <chrono>

#include "ComLanPort.h"
#include "Options.h"
#include "ProtocolSheet.h"
#include "Recognise.h"

namespace weigh {

/// Speed and framing of a serial line; no speed on a network.
struct LineSetting {
  int bitsPerSecond = 0;
  Framing framing;

  /// "9600 8N1"; empty on a network.
  std::string text() const;
};

/// The line to a scale that isn't known yet: the driver's port, with speed and framing to choose.
class OpenLine {
 public:
  /// Opens it. Throws Failure. Whoever asks the program to end, ends all waiting.
  explicit OpenLine(const Connection& connection);

  /// Sets a serial line and drops what has come; false if the line can't be set so. Nothing to set
  /// on a network.
  bool set(int bitsPerSecond, const Framing& settings);
  /// Sends a weight request as the first attempt of a poll does.
  void ask(const Request& request);
  /// Waits up to `first` for a byte, and then until nothing more comes or `longest` has passed.
  recognise::Bytes hear(std::chrono::milliseconds first, std::chrono::milliseconds longest);
  /// All that comes in this time.
  recognise::Bytes listen(std::chrono::milliseconds time);
  /// False once the adapter is gone or the host has hung up.
  bool isUp();

 private:
  void send(std::span<const std::uint8_t> bytes);

  const Connection& connection_;
  COrbComLanPort port_;
};

}  // namespace weigh
