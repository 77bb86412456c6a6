#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <string>
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

/// Reads an exchange log record by record. Takes any text: what stands before the first record and
/// what is no record is stepped over, and line ends may have lost their CR.
class LogReader {
 public:
  /// The stream outlives the reader.
  explicit LogReader(std::istream& log);

  /// None at the end of the log.
  std::optional<Record> next();
  /// Lines of headers whose record lacked bytes so far, as the last one of a file that was cut.
  const std::vector<std::size_t>& damaged() const { return damaged_; }
  std::uintmax_t bytesRead() const { return bytesRead_; }

 private:
  bool nextLine();

  std::istream& log_;
  std::string line_;
  /// False behind the last line.
  bool hasLine_ = true;
  std::size_t number_ = 0;
  std::uintmax_t bytesRead_ = 0;
  std::vector<std::size_t> damaged_;
};

/// All records of a log.
std::vector<Record> readLog(std::istream& log);

/// One turn of an exchange as the scale saw it: what came, and what it sent then.
struct Turn {
  /// Empty at most in the only turn of a scale that transmits by itself.
  Bytes request;
  /// In the pieces in which the host took it.
  std::vector<Bytes> answer;
};

/// The scale's part of a log. Writes that nothing was answered to are one request with the next.
std::vector<Turn> turnsOf(std::span<const Record> log);

}  // namespace exchange
