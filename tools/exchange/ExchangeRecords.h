#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace exchange {

using Bytes = std::vector<std::uint8_t>;

/// One record of an exchange log.
struct Record {
  enum class Kind { System, Outgoing, Incoming };

  Kind kind = Kind::System;
  /// As a person writes it, "2026-11-23 01:02:03": the log has years since 1900 and months from 0.
  std::string time;
  /// "COMPORT: /dev/ttyUSB0;9600\None\8\1, ..." or "ETHERNET: host:port"; empty for a port that
  /// was never set.
  std::string connection;
  /// What was transferred, or the text of an event.
  Bytes bytes;
  /// Line of its header in the file, from 1.
  std::size_t line = 0;

  std::string text() const { return {bytes.begin(), bytes.end()}; }
};

struct Log {
  std::vector<Record> records;
  /// Lines of headers whose record lacks bytes, as the last one of a file that was cut.
  std::vector<std::size_t> damaged;
};

/// Takes any text: what stands before the first record and what is no record is stepped over, and
/// line ends may have lost their CR.
Log readLog(std::string_view text);

/// One turn of an exchange as the scale saw it: what came, and what it sent then.
struct Turn {
  /// Empty at most in the only turn of a scale that transmits by itself.
  Bytes request;
  /// In the pieces in which the host took it.
  std::vector<Bytes> answer;
};

/// The scale's part of a log. Writes that nothing was answered to are one request with the next.
std::vector<Turn> turnsOf(const Log& log);

}  // namespace exchange
