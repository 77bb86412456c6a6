#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <span>
#include <string_view>

/// What a record of the exchange log tells of.
enum class LogRecord : std::uint8_t { System = 0, Outgoing = 1, Incoming = 2 };

/// Writes one record: the header with its kind, time, size and connection line, then the bytes
/// 20 a line. The time's fields go out as `struct tm` has them (years since 1900, months from 0),
/// and the milliseconds are always 0: that is the format of these files.
void writeLogRecord(std::FILE* file, LogRecord kind, const std::tm& time,
                    std::string_view connection, std::span<const std::uint8_t> data);

/// The exchange log of one port, a text file that is only added to: off until it has a name in
/// whose folder the marker lies. The file opens at the first record. No trouble of the log reaches
/// the caller. The owner locks.
class ExchangeLog {
 public:
  /// Closes the file. A `name` that isn't null makes the next one "<folder>log_scales_<name>.log"
  /// (cut at 299 bytes), and switches the log on or off as the marker "<folder>log.txt" exists.
  /// Both texts are used as bytes; a null `folder` is the current one.
  void setName(const char* folder, const char* name);
  void enable(bool on) { isOn_ = on; }
  bool isOn() const { return isOn_; }
  /// Adds one record, with the local time, if the log is on. A file that can't be opened switches
  /// the log off.
  void record(LogRecord kind, std::string_view connection, std::span<const std::uint8_t> data);

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool isOn_ = false;
  std::array<char, 300> fileName_ = {};
  std::unique_ptr<std::FILE, CloseFile> file_;
};
