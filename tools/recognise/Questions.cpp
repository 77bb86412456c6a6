#include "Questions.h"

#include <algorithm>

namespace recognise {

namespace {

Bytes bytesOf(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

bool isLine(const Bytes& bytes) { return bytes.back() == '\r' || bytes.back() == '\n'; }

bool sameLine(const LineSettings& a, const LineSettings& b) {
  return a.parity == b.parity && a.dataBits == b.dataBits && a.stopBits == b.stopBits;
}

bool sameRequest(const Request& a, const Request& b) {
  return std::ranges::equal(a.first.view(), b.first.view()) &&
         std::ranges::equal(a.second.view(), b.second.view()) && a.frameHead == b.frameHead;
}

/// Adds the commands that prices make: the texts that single prices stand for, and the head of
/// those that carry digits.
void addPriceCommands(std::optional<::Command> (*price)(long), std::vector<Bytes>& commands) {
  // Prices that differ in every digit, and those that a protocol has taken for commands.
  for (const long number : {1L, 2L, 12345L}) {
    if (const auto command = price(number)) commands.push_back(bytesOf(command->bytes.view()));
  }
  const auto low = price(12345);
  const auto high = price(98760);
  if (!low || !high) return;
  const auto a = low->bytes.view();
  const auto b = high->bytes.view();
  const auto differ = std::ranges::mismatch(a, b);
  commands.emplace_back(a.begin(), differ.in1);
}

std::vector<Bytes> gatherCommands() {
  std::vector<Bytes> commands;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr) continue;
    const ProtocolSheet& sheet = *model.sheet;
    if (sheet.tare) commands.push_back(bytesOf(sheet.tare->bytes.view()));
    if (sheet.zero) commands.push_back(bytesOf(sheet.zero->bytes.view()));
    if (sheet.price != nullptr) addPriceCommands(sheet.price, commands);
  }
  return commands;
}

std::vector<Question> distinctQuestions(std::span<const ScalesModel* const> models) {
  std::vector<Question> questions;
  for (const ScalesModel* model : models) {
    if (model->sheet == nullptr || model->sheet->request.first.empty()) continue;
    const ProtocolSheet& sheet = *model->sheet;
    const auto known = std::ranges::find_if(questions, [&](const Question& question) {
      return sameRequest(*question.request, sheet.request) && sameLine(question.line, sheet.line);
    });
    if (known == questions.end()) {
      questions.push_back({&sheet.request, sheet.line, sheet.budget_ms, {model}});
    } else {
      known->budget_ms = std::max(known->budget_ms, sheet.budget_ms);
      known->models.push_back(model);
    }
  }
  return questions;
}

/// The request of any model that may stand between the two, whoever of them is meant.
Question between(const Question& before, const Question& next) {
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr || model.sheet->request.first.empty()) continue;
    const Question candidate{&model.sheet->request, before.line, model.sheet->budget_ms, {}};
    if (!makesCommand(before.bytes(), candidate.bytes()) &&
        !makesCommand(candidate.bytes(), next.bytes())) {
      return candidate;
    }
  }
  // Then the one behind isn't asked: better a scale that isn't found than one that is tared.
  return before;
}

}  // namespace

Bytes Question::bytes() const {
  Bytes bytes = bytesOf(request->first.view());
  bytes.insert(bytes.end(), request->frameHead, 0);
  bytes.insert(bytes.end(), request->second.view().begin(), request->second.view().end());
  return bytes;
}

const std::vector<Bytes>& allCommands() {
  static const std::vector<Bytes> commands = gatherCommands();
  return commands;
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
  std::ranges::stable_partition(asked,
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
