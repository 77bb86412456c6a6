#include "ExchangeLog.h"

#include <algorithm>
#include <array>

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
