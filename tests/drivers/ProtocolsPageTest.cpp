#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "FrameRows.h"
#include "Models.h"

// docs/protocols.md against the protocol sheets: what a sheet states is written out here, and must
// stand on the page. ORBELO_UPDATE_DOCS=1 writes it there.

namespace {

template <typename... Handler>
struct Overloaded : Handler... {
  using Handler::operator()...;
};
template <typename... Handler>
Overloaded(Handler...) -> Overloaded<Handler...>;

const std::string kNone = "–";

std::string code(Frame bytes) { return "`" + fixture::hex(bytes) + "`"; }

std::string anyOf(const Bytes& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes.view()) {
    text += (text.empty() ? "" : " or ") + code({&byte, 1});
  }
  return text;
}

std::string lineOf(const LineSettings& line) {
  return std::to_string(line.dataBits) + (line.parity == COMPort::Even ? "E" : "N") +
         (line.stopBits == COMPort::Two ? "2" : "1");
}

std::string requestOf(const Request& request) {
  if (request.first.empty()) return "none, listens";
  std::string text = code(request.first.view());
  if (request.frameHead > 0) text += " and " + std::to_string(request.frameHead) + " bytes";
  if (request.second.empty()) return text;
  return text + ", " + std::to_string(request.pause_ms) + " ms, " + code(request.second.view());
}

std::string readOf(const ReadStyle& style) {
  return std::visit(
      Overloaded{[](const StartByteRead& read) {
                   return "start " + anyOf(read.start) + ", " + std::to_string(read.length);
                 },
                 [](const HuntingRead& read) {
                   return "hunt " + anyOf(read.start) + ", " + std::to_string(read.length);
                 },
                 [](const LengthRead& read) {
                   return "length " + std::to_string(read.length) +
                          (read.excessBound > 0 ? ", asks on" : "");
                 },
                 [](const TerminatorRead& read) {
                   const bool sequence = read.match == TerminatorRead::End::Sequence;
                   return "to " + (sequence ? code(read.end.view()) : anyOf(read.end)) + ", " +
                          std::to_string(read.minLength) + " to " + std::to_string(read.capacity);
                 }},
      style);
}

/// What the frames of a model show that the sheet doesn't state.
struct Shown {
  std::set<long> stable;
  bool overload = false;
  bool alwaysAskedAgain = true;
};

Shown shownBy(int model) {
  Shown shown;
  for (const FrameRow& row : frameRowsOf(model)) {
    if (!row.says.good) continue;
    if (row.says.code == kSuccess) shown.stable.insert(row.says.stable);
    if (row.says.code == kOverload) shown.overload = true;
    if (row.says.next != Outcome::Next::AskAgain) shown.alwaysAskedAgain = false;
  }
  return shown;
}

std::string pollOf(const ProtocolSheet& sheet, const Shown& shown) {
  return std::to_string(sheet.attempts) + (sheet.oneBudgetForAll ? " in " : " × ") +
         std::to_string(sheet.budget_ms) + " ms" + (shown.alwaysAskedAgain ? ", all run" : "");
}

std::string tcpOf(const ReadStyle& style) {
  const auto* read = std::get_if<TerminatorRead>(&style);
  if (read == nullptr) return "yes";
  if (read->capacity == kMaxFrame) return "no";
  return "answers of " + std::to_string(read->capacity) + " bytes";
}

std::string commandOf(const std::optional<Command>& command) {
  if (!command) return kNone;
  std::string text = code(command->bytes.view());
  if (command->pause_ms > 0) text += ", " + std::to_string(command->pause_ms) + " ms";
  if (command->times > 1) text += ", " + std::to_string(command->times) + " times";
  if (command->afterwards != Command::Afterwards::Nothing) text += ", reply dropped";
  return text;
}

std::string priceOf(const ProtocolSheet& sheet) {
  if (sheet.price == nullptr) return kNone;
  const std::optional<Command> command = sheet.price(1250);
  return command ? commandOf(command) : "setup commands";
}

/// By their order in the enumerations.
std::string weightOf(WeightUnit unit) {
  return std::array{"kg", "g", "as shown"}.at(static_cast<std::size_t>(unit));
}

std::string moneyOf(MoneyUnit unit) {
  return std::array<std::string, 4>{kNone, "whole", "hundredths", "as counted"}.at(
      static_cast<std::size_t>(unit));
}

std::string entryOf(AtEntry atEntry) {
  return std::array{"all 0", "stable 0", "stable 1"}.at(static_cast<std::size_t>(atEntry));
}

std::string stableOf(const Shown& shown) {
  if (shown.stable.size() > 1) return "shown";
  return "always " + std::to_string(*shown.stable.begin());
}

std::string row(std::initializer_list<std::string> cells) {
  std::string text = "|";
  for (const std::string& cell : cells) text += " " + cell + " |";
  return text + "\n";
}

/// The page's text without the number before it.
std::string nameOf(const ScalesModel& model) {
  const std::string text = model.pageText;
  return text.substr(text.find_first_not_of(' ', text.find(':') + 1));
}

std::string exchangeTable() {
  std::string text = row({"Model", "Scale", "Line", "Request", "Read", "Attempts", "TCP"}) +
                     "|---|---|---|---|---|---|---|\n";
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr) continue;
    const ProtocolSheet& sheet = *model.sheet;
    text += row({std::to_string(model.number), nameOf(model), lineOf(sheet.line),
                 requestOf(sheet.request), readOf(sheet.read), pollOf(sheet, shownBy(model.number)),
                 tcpOf(sheet.read)});
  }
  return text;
}

std::string outputsTable() {
  std::string text = row({"Model", "Weight", "Price, cost", "Stable", "Overload", "Before", "Tare",
                          "Zero", "Price sent"}) +
                     "|---|---|---|---|---|---|---|---|---|\n";
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr) continue;
    const ProtocolSheet& sheet = *model.sheet;
    const Shown shown = shownBy(model.number);
    text += row({std::to_string(model.number), weightOf(sheet.weightUnit), moneyOf(sheet.moneyUnit),
                 stableOf(shown), shown.overload ? "yes" : kNone, entryOf(sheet.atEntry),
                 commandOf(sheet.tare), commandOf(sheet.zero), priceOf(sheet)});
  }
  return text;
}

std::string modelsWithoutDriver() {
  std::string text = row({"Model", "On the page"}) + "|---|---|\n";
  for (const ScalesModel& model : scalesModels()) {
    if (model.create == nullptr) text += row({std::to_string(model.number), nameOf(model)});
  }
  return text;
}

class ProtocolsPage : public testing::Test {
 protected:
  std::string page_ = read();

  static std::string read() {
    std::ifstream file(ORBELO_PROTOCOLS_PAGE);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// The part between the mark of that name and the next end.
  void holdPart(const std::string& name, const std::string& expected) {
    const std::string mark = "<!-- " + name + " -->\n";
    const std::size_t begin = page_.find(mark);
    ASSERT_NE(begin, std::string::npos) << mark << " is missing in " << ORBELO_PROTOCOLS_PAGE;
    const std::size_t from = begin + mark.size();
    const std::size_t to = page_.find("<!-- end -->", from);
    ASSERT_NE(to, std::string::npos) << "no end behind " << mark;
    if (std::getenv("ORBELO_UPDATE_DOCS") != nullptr) {
      std::ofstream(ORBELO_PROTOCOLS_PAGE) << page_.replace(from, to - from, expected);
      return;
    }
    EXPECT_EQ(page_.substr(from, to - from), expected)
        << "ORBELO_UPDATE_DOCS=1 writes the page anew";
  }
};

TEST_F(ProtocolsPage, SaysWhatTheSheetsSay) {
  holdPart("exchange", exchangeTable());
  holdPart("outputs", outputsTable());
  holdPart("without", modelsWithoutDriver());
}

TEST_F(ProtocolsPage, HasOdditiesOfEveryModel) {
  std::istringstream lines(page_.substr(page_.find("## Oddities")));
  std::vector<int> numbers;
  for (std::string line; std::getline(lines, line) && line != "## Models without a driver";) {
    if (line.rfind("| ", 0) == 0 && std::isdigit(line[2]) != 0) {
      numbers.push_back(std::stoi(line.substr(2)));
    }
  }
  std::vector<int> models;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) models.push_back(model.number);
  }
  EXPECT_EQ(numbers, models);
}

}  // namespace
