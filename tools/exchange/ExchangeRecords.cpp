#include "ExchangeRecords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <limits>

namespace exchange {

namespace {

constexpr std::size_t kBytesPerLine = 20;
/// Columns of a dump line: "00001:" and " XX" a byte, with a bar before the eleventh.
constexpr std::size_t kPositionSize = 6;
constexpr std::size_t kByteSize = 3;
constexpr std::size_t kBarColumn = 10;
constexpr std::size_t kBarSize = 2;

struct Label {
  std::string_view text;
  Record::Kind kind;
};
constexpr std::array<Label, 3> kLabels = {{{"SYS      ", Record::Kind::System},
                                           {"OUT >>>>>", Record::Kind::Outgoing},
                                           {"IN <<<<<<", Record::Kind::Incoming}}};

/// A header line with its record's size; none if the line is no header.
struct Header {
  Record record;
  std::size_t size;
};
std::optional<Header> headerIn(std::string_view line) {
  Header header{};
  const Label* label = nullptr;
  for (const Label& known : kLabels) {
    if (line.starts_with(known.text)) label = &known;
  }
  if (label == nullptr) return std::nullopt;
  header.record.kind = label->kind;
  // With widths that no number can be too large for.
  const std::string rest(line.substr(label->text.size()));
  struct tm time = {};
  int millisecond = 0;
  int size = 0;
  constexpr int kFields = 8;
  if (std::sscanf(rest.c_str(), " %5d-%3d-%3d %3d:%3d:%3d.%3d ---- Bytes:%9d", &time.tm_year,
                  &time.tm_mon, &time.tm_mday, &time.tm_hour, &time.tm_min, &time.tm_sec,
                  &millisecond, &size) != kFields ||
      size < 0) {
    return std::nullopt;
  }
  constexpr int kFirstYear = 1900;
  std::array<char, 80> text = {};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d",
                time.tm_year + kFirstYear, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                time.tm_sec);
  header.record.time = text.data();
  header.size = static_cast<std::size_t>(size);
  return header;
}

/// Adds the bytes of a dump line, up to `size` in all; false if the line is none.
bool addDumpLine(std::string_view line, std::size_t size, Bytes& bytes) {
  if (line.size() < kPositionSize || line[kPositionSize - 1] != ':') return false;
  for (std::size_t column = 0; column < kBytesPerLine && bytes.size() < size; ++column) {
    const std::size_t bar = column >= kBarColumn ? kBarSize : 0;
    const std::size_t at = kPositionSize + bar + column * kByteSize + 1;
    if (at + 2 > line.size()) return false;
    unsigned value = 0;
    const char* begin = line.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + 2, value, 16);
    if (error != std::errc() || end != begin + 2) return false;
    bytes.push_back(static_cast<std::uint8_t>(value));
  }
  return true;
}

}  // namespace

LogReader::LogReader(std::istream& log) : log_(log) { nextLine(); }

bool LogReader::nextLine() {
  // No line of a log is as long; of a file that is none, the rest of a longer one is dropped.
  constexpr std::size_t kLongest = 4096;
  line_.resize(kLongest);
  log_.getline(line_.data(), static_cast<std::streamsize>(kLongest));
  const auto read = static_cast<std::size_t>(log_.gcount());
  bytesRead_ += read;
  hasLine_ = read > 0;
  // What was read counts the line's end, which isn't kept.
  line_.resize(log_.eof() || log_.fail() ? read : read - 1);
  if (log_.fail() && read > 0) {
    log_.clear();
    log_.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    bytesRead_ += static_cast<std::uintmax_t>(log_.gcount());
  }
  if (line_.ends_with('\r')) line_.pop_back();
  ++number_;
  return hasLine_;
}

std::optional<Record> LogReader::next() {
  while (hasLine_) {
    auto header = headerIn(line_);
    if (!header) {
      nextLine();
      continue;
    }
    Record& record = header->record;
    record.line = number_;
    if (nextLine()) record.connection = line_;
    nextLine();  // the numbers of the columns,
    nextLine();  // and an empty line
    while (nextLine() && record.bytes.size() < header->size) {
      if (!addDumpLine(line_, header->size, record.bytes)) break;
    }
    if (record.bytes.size() < header->size) damaged_.push_back(record.line);
    if (!record.bytes.empty()) return std::move(header->record);
  }
  return std::nullopt;
}

std::vector<Record> readLog(std::istream& log) {
  std::vector<Record> records;
  LogReader reader(log);
  while (auto record = reader.next()) records.push_back(*std::move(record));
  return records;
}

std::vector<Turn> turnsOf(std::span<const Record> log) {
  const bool asks = std::ranges::find(log, Record::Kind::Outgoing, &Record::kind) != log.end();
  std::vector<Turn> turns;
  for (const Record& record : log) {
    if (record.kind == Record::Kind::Outgoing) {
      if (turns.empty() || !turns.back().answer.empty()) turns.emplace_back();
      Bytes& request = turns.back().request;
      request.insert(request.end(), record.bytes.begin(), record.bytes.end());
    } else if (record.kind == Record::Kind::Incoming) {
      // What came before the first request was thrown away.
      if (turns.empty() && asks) continue;
      if (turns.empty()) turns.emplace_back();
      turns.back().answer.push_back(record.bytes);
    }
  }
  return turns;
}

}  // namespace exchange
