#include "ExchangeLog.h"

#include <algorithm>
#include <array>
#include <string>

#include "BoundedCopy.h"

namespace {

constexpr std::size_t kBytesPerLine = 20;
/// The column before which a line of the dump has its bar.
constexpr std::size_t kBarColumn = 10;

constexpr std::array<const char*, 3> kLabels = {"SYS      ", "OUT >>>>>", "IN <<<<<<"};

constexpr const char* kHeader =
    "\r\n____________________________________________________________________\r\n"
    "%s  %d-%02d-%02d %02d:%02d:%02d.%03d ---- Bytes:%5d -----\r\n"
    "%.*s\r\n"
    "  N     1  2  3  4  5  6  7  8  9 10   11 12 13 14 15 16 17 18 19 20\r\n\r\n";

/// Lowest byte that the text column shows as itself.
constexpr std::uint8_t kFirstPrintable = 32;

void writeDumpLine(std::FILE* file, std::size_t position, std::span<const std::uint8_t> bytes) {
  std::fprintf(file, "%05zu:", position);
  for (std::size_t column = 0; column < kBytesPerLine; ++column) {
    if (column == kBarColumn) std::fputs(" |", file);
    if (column < bytes.size()) {
      std::fprintf(file, " %02X", static_cast<unsigned>(bytes[column]));
    } else {
      std::fputs("   ", file);
    }
  }
  std::fputs("    ", file);
  for (std::size_t column = 0; column < kBytesPerLine; ++column) {
    if (column >= bytes.size()) {
      std::fputc(' ', file);
    } else {
      std::fputc(bytes[column] >= kFirstPrintable ? bytes[column] : '.', file);
    }
  }
  std::fputs("\r\n", file);
}

bool exists(const char* path) {
  std::FILE* file = std::fopen(path, "re");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

}  // namespace

void writeLogRecord(std::FILE* file, LogRecord kind, const std::tm& time,
                    std::string_view connection, std::span<const std::uint8_t> data) {
  std::fprintf(file, kHeader, kLabels[static_cast<std::size_t>(kind)], time.tm_year, time.tm_mon,
               time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec, 0,
               static_cast<int>(data.size()), static_cast<int>(connection.size()),
               connection.data());
  for (std::size_t at = 0; at < data.size(); at += kBytesPerLine) {
    writeDumpLine(file, at + 1, data.subspan(at, std::min(kBytesPerLine, data.size() - at)));
  }
  std::fflush(file);
}

void ExchangeLog::setName(const char* folder, const char* name) {
  file_.reset();
  if (name == nullptr) return;
  const std::string prefix = folder == nullptr ? "" : folder;
  copyBounded(fileName_, (prefix + "log_scales_" + name + ".log").c_str());
  isOn_ = exists((prefix + "log.txt").c_str());
}

void ExchangeLog::record(LogRecord kind, std::string_view connection,
                         std::span<const std::uint8_t> data) {
  if (!isOn_) return;
  // A program that the host starts shall not hold the file.
  if (!file_) file_.reset(std::fopen(fileName_.data(), "a+te"));
  if (!file_) {
    isOn_ = false;
    return;
  }
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  // localtime_r() alone stays in the zone of its first call, whatever the host changes.
  ::tzset();
  ::localtime_r(&now, &local);
  writeLogRecord(file_.get(), kind, local, connection, data);
}
