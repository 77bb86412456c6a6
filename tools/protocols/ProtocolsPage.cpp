// Writes what the protocol sheets state into the tables of docs/protocols.md:
//   protocols_page docs/protocols.md
// With --check it only says whether the page is as it would be written.

#include <array>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "Models.h"
#include "Text.h"

namespace {

const std::string kNone = "–";

std::string code(Frame bytes) { return "`" + hexText(bytes) + "`"; }

std::string anyOf(const ByteRow& bytes) {
  std::vector<std::string> codes;
  for (const std::uint8_t byte : bytes.view()) codes.push_back(code({&byte, 1}));
  return joined(codes, " or ");
}

std::string fixedOf(const FixedBytes& fixed) {
  std::vector<std::string> places;
  for (const FixedByte& byte : fixed.view())
    places.push_back(fmt::format("{}: {}", byte.at, anyOf(byte.oneOf)));
  return joined(places);
}

/// What a frame is held against, by places from 0; from the end if negative.
std::string checkOf(const ProtocolSheet& sheet) {
  std::vector<std::string> checks;
  if (!sheet.fixed.view().empty()) checks.push_back(fixedOf(sheet.fixed));
  if (!sheet.orFixed.view().empty()) checks.push_back("or " + fixedOf(sheet.orFixed));
  if (sheet.checksum.of != nullptr)
    checks.push_back(fmt::format("checksum at {}", sheet.checksum.at));
  return checks.empty() ? kNone : joined(checks, "; ");
}

std::string requestOf(const Request& request) {
  if (request == kNoRequest) return "none, listens";
  std::string text = code(request.first.view());
  if (request.frameHead > 0) text += fmt::format(" and {} bytes", request.frameHead);
  if (request.second.empty()) return text;
  return fmt::format("{}, {} ms, {}", text, request.pause_ms, code(request.second.view()));
}

std::string readOf(const ReadStyle& style) {
  if (const auto* read = std::get_if<StartByteRead>(&style)) {
    const bool hunts = read->wrongByte == StartByteRead::WrongByte::CostsOne_ms;
    return fmt::format("{} {}, {}", hunts ? "hunt" : "start", anyOf(read->start), read->length);
  }
  if (const auto* read = std::get_if<LengthRead>(&style))
    return fmt::format("length {}{}", read->length, read->asksOn ? ", asks on" : "");
  const auto& read = std::get<TerminatorRead>(style);
  const bool sequence = read.match == TerminatorRead::Match::Sequence;
  return fmt::format("to {}, {} to {}", sequence ? code(read.end.view()) : anyOf(read.end),
                     read.minLength, read.capacity);
}

std::string askingOf(const Asking& asking) {
  return fmt::format("{} {} {} ms{}", asking.attempts, asking.oneBudgetForAll ? "in" : "×",
                     asking.budget_ms, asking.allAttempts ? ", all run" : "");
}

std::string motionOf(const Motion& motion) {
  return std::array{"shown", "always 1", "always 0"}.at(static_cast<std::size_t>(motion.told));
}

std::string tcpOf(const ReadStyle& style) {
  const auto* read = std::get_if<TerminatorRead>(&style);
  if (read == nullptr) return "yes";
  if (read->capacity == kMaxFrame) return "no";
  return fmt::format("answers of {} bytes", read->capacity);
}

std::string commandOf(const std::optional<Command>& command) {
  if (!command) return kNone;
  std::string text = code(command->bytes.view());
  if (command->pause_ms > 0) text += fmt::format(", {} ms", command->pause_ms);
  if (command->times > 1) text += fmt::format(", {} times", command->times);
  if (command->afterwards != Command::Afterwards::Nothing) text += ", reply dropped";
  return text;
}

std::string priceOf(const ProtocolSheet& sheet) {
  if (!sheet.commands.setup.empty()) return "setup commands";
  return sheet.commands.price ? commandOf(sheet.commands.price->of(1250)) : kNone;
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

using Cells = std::vector<std::string>;

std::string row(const Cells& cells) { return fmt::format("| {} |\n", joined(cells, " | ")); }

/// Of the models that have cells.
std::string table(const Cells& heading, Cells (*cellsOf)(const ScalesModel&)) {
  std::string text = row(heading) + "|";
  for (std::size_t i = 0; i < heading.size(); ++i) text += "---|";
  text += "\n";
  for (const ScalesModel& model : scalesModels()) {
    if (const Cells cells = cellsOf(model); !cells.empty()) text += row(cells);
  }
  return text;
}

std::string exchangeTable() {
  return table(
      {"Model", "Scale", "Line", "Request", "Read", "Check", "Attempts", "Drain", "Stable", "TCP"},
      [](const ScalesModel& model) -> Cells {
        if (model.sheet == nullptr) return {};
        const ProtocolSheet& sheet = *model.sheet;
        return {std::to_string(model.number),
                model.name,
                sheet.line.text(),
                requestOf(sheet.request),
                readOf(sheet.read),
                checkOf(sheet),
                askingOf(sheet.asking),
                std::to_string(sheet.drainSize),
                motionOf(sheet.motion),
                tcpOf(sheet.read)};
      });
}

std::string outputsTable() {
  return table(
      {"Model", "Weight", "Price, cost", "Overload", "Before", "Tare", "Zero", "Price sent"},
      [](const ScalesModel& model) -> Cells {
        if (model.sheet == nullptr) return {};
        const ProtocolSheet& sheet = *model.sheet;
        return {std::to_string(model.number),   weightOf(sheet.weightUnit),
                moneyOf(sheet.moneyUnit),       showsOverload(sheet) ? "yes" : kNone,
                entryOf(sheet.atEntry),         commandOf(sheet.commands.tare),
                commandOf(sheet.commands.zero), priceOf(sheet)};
      });
}

std::string modelsWithoutDriver() {
  return table({"Model", "On the page"}, [](const ScalesModel& model) -> Cells {
    if (model.create != nullptr) return {};
    return {std::to_string(model.number), model.name};
  });
}

/// Puts a table between the mark of that name and the next end.
void put(std::string& page, const std::string& name, const std::string& table) {
  const std::string mark = "<!-- " + name + " -->\n";
  const std::size_t begin = page.find(mark);
  const std::size_t from = begin + mark.size();
  const std::size_t to = page.find("<!-- end -->", from);
  if (begin == std::string::npos || to == std::string::npos) {
    throw std::runtime_error("no part \"" + name + "\" in the page");
  }
  page.replace(from, to - from, table);
}

/// Every model with a protocol has its row of oddities, written by hand.
void holdOddities(const std::string& page) {
  const std::size_t oddities = page.find("## Oddities");
  for (const ScalesModel& model : scalesModels()) {
    const std::string head = "\n| " + std::to_string(model.number) + " | ";
    if (model.sheet != nullptr && page.find(head, oddities) == std::string::npos) {
      throw std::runtime_error("no oddities of model " + std::to_string(model.number));
    }
  }
}

std::string readFile(const char* file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int argc, char** argv) {
  const bool check = argc == 3 && argv[2] == std::string_view("--check");
  if (argc != 2 && !check) {
    std::cerr << "usage: protocols_page FILE [--check]\n";
    return 2;
  }
  try {
    const std::string before = readFile(argv[1]);
    std::string page = before;
    put(page, "exchange", exchangeTable());
    put(page, "outputs", outputsTable());
    put(page, "without", modelsWithoutDriver());
    holdOddities(page);
    if (page == before) return 0;
    if (check) throw std::runtime_error("the page isn't what the sheets say");
    std::ofstream(argv[1]) << page;
    return 0;
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << '\n';
    return 1;
  }
}
