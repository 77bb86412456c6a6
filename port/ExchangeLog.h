#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <span>
#include <string_view>

/// What a record of the exchange log tells of.
enum class LogRecord : std::uint8_t { System = 0, Outgoing = 1, Incoming = 2 };

/// Writes one record: the header with its kind, time, size and connection line, then the bytes
/// 20 a line. The time's fields go out as `struct tm` has them (years since 1900, months from 0),
/// and the milliseconds are always 0: that is the format of these files.
void writeLogRecord(std::FILE* file, LogRecord kind, const std::tm& time,
                    std::string_view connection, std::span<const std::uint8_t> data);
