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

namespace {

template <typename... Handler>
struct Overloaded : Handler... {
  using Handler::operator()...;
};
template <typename... Handler>
Overloaded(Handler...) -> Overloaded<Handler...>;

const std::string kNone = "–";

std::string code(Frame bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += text.empty() ? "`" : " ";
    text += {kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
  }
  return text + "`";
}

std::string anyOf(const ByteRow& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes.view()) {
    text += (text.empty() ? "" : " or ") + code({&byte, 1});
  }
  return text;
}

std::string fixedOf(const FixedBytes& fixed) {
  std::string text;
  for (const FixedByte& byte : fixed.view()) {
    text += (text.empty() ? "" : ", ") + std::to_string(byte.at) + ": " + anyOf(byte.oneOf);
  }
  return text;
}

/// What a frame is held against, by places from 0; from the end if negative.
std::string checkOf(const ProtocolSheet& sheet) {
  std::string text = fixedOf(sheet.fixed);
  if (!sheet.orFixed.view().empty()) text += "; or " + fixedOf(sheet.orFixed);
  if (sheet.checksum.of != nullptr) {
    text += (text.empty() ? "" : "; ") + ("checksum at " + std::to_string(sheet.checksum.at));
  }
  return text.empty() ? kNone : text;
}

std::string requestOf(const Request& request) {
  if (request == kNoRequest) return "none, listens";
  std::string text = code(request.first.view());
  if (request.frameHead > 0) text += " and " + std::to_string(request.frameHead) + " bytes";
  if (request.second.empty()) return text;
  return text + ", " + std::to_string(request.pause_ms) + " ms, " + code(request.second.view());
}

std::string readOf(const ReadStyle& style) {
  return std::visit(
      Overloaded{[](const StartByteRead& read) {
                   const bool hunts = read.wrongByte == StartByteRead::WrongByte::CostsOne_ms;
                   return (hunts ? "hunt " : "start ") + anyOf(read.start) + ", " +
                          std::to_string(read.length);
                 },
                 [](const LengthRead& read) {
                   return "length " + std::to_string(read.length) +
                          (read.asksOn ? ", asks on" : "");
                 },
                 [](const TerminatorRead& read) {
                   const bool sequence = read.match == TerminatorRead::Match::Sequence;
                   return "to " + (sequence ? code(read.end.view()) : anyOf(read.end)) + ", " +
                          std::to_string(read.minLength) + " to " + std::to_string(read.capacity);
                 }},
      style);
}

std::string askingOf(const Asking& asking) {
  return std::to_string(asking.attempts) + (asking.oneBudgetForAll ? " in " : " × ") +
         std::to_string(asking.budget_ms) + " ms" + (asking.allAttempts ? ", all run" : "");
}

std::string motionOf(const Motion& motion) {
  return std::array{"shown", "always 1", "always 0"}.at(static_cast<std::size_t>(motion.told));
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

std::string row(std::initializer_list<std::string> cells) {
  std::string text = "|";
  for (const std::string& cell : cells) text += " " + cell + " |";
  return text + "\n";
}

template <typename Cells>
std::string table(std::initializer_list<std::string> heading, Cells cells) {
  std::string text = row(heading) + "|";
  for (std::size_t i = 0; i < heading.size(); ++i) text += "---|";
  text += "\n";
  for (const ScalesModel& model : scalesModels()) text += cells(model);
  return text;
}

std::string exchangeTable() {
  return table(
      {"Model", "Scale", "Line", "Request", "Read", "Check", "Attempts", "Drain", "Stable", "TCP"},
      [](const ScalesModel& model) -> std::string {
        if (model.sheet == nullptr) return {};
        const ProtocolSheet& sheet = *model.sheet;
        return row({std::to_string(model.number), model.name, sheet.line.text(),
                    requestOf(sheet.request), readOf(sheet.read), checkOf(sheet),
                    askingOf(sheet.asking), std::to_string(sheet.drainSize), motionOf(sheet.motion),
                    tcpOf(sheet.read)});
      });
}

std::string outputsTable() {
  return table(
      {"Model", "Weight", "Price, cost", "Overload", "Before", "Tare", "Zero", "Price sent"},
      [](const ScalesModel& model) -> std::string {
        if (model.sheet == nullptr) return {};
        const ProtocolSheet& sheet = *model.sheet;
        return row({std::to_string(model.number), weightOf(sheet.weightUnit),
                    moneyOf(sheet.moneyUnit), showsOverload(sheet) ? "yes" : kNone,
                    entryOf(sheet.atEntry), commandOf(sheet.commands.tare),
                    commandOf(sheet.commands.zero), priceOf(sheet)});
      });
}

std::string modelsWithoutDriver() {
  return table({"Model", "On the page"}, [](const ScalesModel& model) -> std::string {
    return model.create == nullptr ? row({std::to_string(model.number), model.name}) : "";
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
