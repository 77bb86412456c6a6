#include "ExchangeRecords.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <optional>

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

class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  std::optional<std::string_view> next() {
    if (rest_.empty()) return std::nullopt;
    ++number_;
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }
  std::size_t number() const { return number_; }

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
};

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
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
  int size = 0;
  constexpr int kFields = 8;
  if (std::sscanf(rest.c_str(), " %5d-%3d-%3d %3d:%3d:%3d.%3d ---- Bytes:%9d", &year, &month, &day,
                  &hour, &minute, &second, &millisecond, &size) != kFields ||
      size < 0) {
    return std::nullopt;
  }
  constexpr int kFirstYear = 1900;
  std::array<char, 80> time = {};
  std::snprintf(time.data(), time.size(), "%04d-%02d-%02d %02d:%02d:%02d", year + kFirstYear,
                month + 1, day, hour, minute, second);
  header.record.time = time.data();
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

Log readLog(std::string_view text) {
  Log log;
  Lines lines(text);
  for (auto line = lines.next(); line;) {
    auto header = headerIn(*line);
    if (!header) {
      line = lines.next();
      continue;
    }
    Record& record = header->record;
    record.line = lines.number();
    if (const auto connection = lines.next()) record.connection = *connection;
    lines.next();  // the numbers of the columns
    lines.next();
    for (line = lines.next(); line && record.bytes.size() < header->size; line = lines.next()) {
      if (!addDumpLine(*line, header->size, record.bytes)) break;
    }
    if (record.bytes.size() < header->size) log.damaged.push_back(record.line);
    if (!record.bytes.empty()) log.records.push_back(std::move(record));
  }
  return log;
}

std::vector<Turn> turnsOf(const Log& log) {
  bool asks = false;
  for (const Record& record : log.records) asks = asks || record.kind == Record::Kind::Outgoing;

  std::vector<Turn> turns;
  for (const Record& record : log.records) {
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
