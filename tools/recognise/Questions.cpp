#include "Questions.h"

#include <algorithm>
#include <array>

namespace recognise {

namespace {

Bytes bytesOf(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

bool isLine(const Bytes& bytes) { return bytes.back() == '\r' || bytes.back() == '\n'; }

/// Prices that protocols without one have taken for commands.
constexpr std::array<long, 3> kSettings = {1, 2, 12345};

std::vector<Bytes> settingsOf(const ProtocolSheet& sheet) {
  std::vector<Bytes> commands;
  for (const long number : kSettings) {
    if (const auto command = sheet.commands.price(number))
      commands.push_back(bytesOf(command->bytes.view()));
  }
  return commands;
}

/// What the command of every price begins with, and its length; empty where prices stand for
/// settings.
struct PriceHead {
  Bytes bytes;
  std::size_t commandSize = 0;
};
PriceHead priceHeadOf(const ProtocolSheet& sheet) {
  // Two prices that differ in every digit.
  const auto low = sheet.commands.price(12345);
  const auto high = sheet.commands.price(98760);
  if (!low || !high) return {};
  const auto a = low->bytes.view();
  const auto differ = std::ranges::mismatch(a, high->bytes.view());
  return {{a.begin(), differ.in1}, a.size()};
}

void addPriceCommands(const ProtocolSheet& sheet, std::vector<Bytes>& commands) {
  if (sheet.commands.price == nullptr) return;
  for (Bytes& setting : settingsOf(sheet)) commands.push_back(std::move(setting));
  const PriceHead head = priceHeadOf(sheet);
  if (!head.bytes.empty()) commands.push_back(head.bytes);
}

std::vector<Bytes> gatherCommands() {
  std::vector<Bytes> commands;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr) continue;
    const ProtocolSheet& sheet = *model.sheet;
    if (sheet.commands.tare) commands.push_back(bytesOf(sheet.commands.tare->bytes.view()));
    if (sheet.commands.zero) commands.push_back(bytesOf(sheet.commands.zero->bytes.view()));
    addPriceCommands(sheet, commands);
  }
  return commands;
}

std::vector<Question> distinctQuestions(std::span<const ScalesModel* const> models) {
  std::vector<Question> questions;
  for (const ScalesModel* model : models) {
    if (model->sheet == nullptr || transmitsByItself(*model->sheet)) continue;
    const ProtocolSheet& sheet = *model->sheet;
    const auto known = std::ranges::find_if(questions, [&](const Question& question) {
      return *question.request == sheet.request && question.line == sheet.line;
    });
    if (known == questions.end()) {
      questions.push_back({&sheet.request, sheet.line, sheet.asking.budget_ms, {model}});
    } else {
      known->budget_ms = std::max(known->budget_ms, sheet.asking.budget_ms);
      known->models.push_back(model);
    }
  }
  return questions;
}

/// The request of any model that may stand between the two, whoever of them is meant.
Question between(const Question& before, const Question& next) {
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr || transmitsByItself(*model.sheet)) continue;
    Question candidate{&model.sheet->request, before.line, model.sheet->asking.budget_ms, {}};
    if (!makesCommand(before.bytes(), candidate.bytes()) &&
        !makesCommand(candidate.bytes(), next.bytes())) {
      return candidate;
    }
  }
  // Then the one behind isn't asked: better a scale that isn't found than one that is tared.
  return before;
}

}  // namespace

const std::vector<Bytes>& allCommands() {
  static const std::vector<Bytes> commands = gatherCommands();
  return commands;
}

bool isPriceCommand(const ProtocolSheet& sheet, Frame written) {
  if (sheet.commands.price == nullptr) return false;
  const auto same = [&](const Bytes& setting) { return std::ranges::equal(setting, written); };
  if (std::ranges::any_of(settingsOf(sheet), same)) return true;
  const PriceHead head = priceHeadOf(sheet);
  return !head.bytes.empty() && written.size() == head.commandSize &&
         std::ranges::equal(head.bytes, written.first(head.bytes.size()));
}

bool makesCommand(const Bytes& before, const Bytes& next) {
  Bytes both = before;
  both.insert(both.end(), next.begin(), next.end());
  return std::ranges::any_of(allCommands(), [&](const Bytes& command) {
    const auto begin = static_cast<std::ptrdiff_t>(before.size());
    for (auto at = both.begin();; ++at) {
      at = std::search(at, both.end(), command.begin(), command.end());
      if (at == both.end()) return false;
      const std::ptrdiff_t offset = at - both.begin();
      const bool ends = offset + static_cast<std::ptrdiff_t>(command.size()) > begin;
      if (ends && (offset <= begin || !isLine(command))) return true;
    }
  });
}

std::vector<Question> questionsFor(std::span<const ScalesModel* const> models) {
  std::vector<Question> asked = distinctQuestions(models);
  std::stable_partition(asked.begin(), asked.end(),
                        [](const Question& question) { return isLine(question.bytes()); });
  if (asked.empty()) return {};
  if (isLine(asked.front().bytes())) asked.insert(asked.begin(), asked.front());

  std::vector<Question> ordered;
  const auto add = [&](const Question& question) {
    if (!ordered.empty() && makesCommand(ordered.back().bytes(), question.bytes())) {
      ordered.push_back(between(ordered.back(), question));
      if (makesCommand(ordered.back().bytes(), question.bytes())) return;
    }
    ordered.push_back(question);
  };
  std::ranges::for_each(asked, add);
  // Behind the last one comes the first again, at the next speed.
  if (makesCommand(ordered.back().bytes(), ordered.front().bytes())) {
    ordered.push_back(between(ordered.back(), ordered.front()));
  }
  return ordered;
}

}  // namespace recognise
