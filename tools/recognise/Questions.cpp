#include "Questions.h"

#include <algorithm>

namespace recognise {

namespace {

bool isLine(const Bytes& bytes) { return bytes.back() == '\r' || bytes.back() == '\n'; }

/// Everything that makes a scale of any model do something else than say its weight, as far as it
/// is fixed: of a command with a price in it the head.
std::vector<Bytes> allCommands() {
  std::vector<Bytes> all;
  const auto add = [&](const Command& command) {
    const Frame bytes = command.bytes.view();
    all.emplace_back(bytes.begin(), bytes.end());
  };
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr) continue;
    const Commands& commands = model.sheet->commands;
    if (commands.tare) add(*commands.tare);
    if (commands.zero) add(*commands.zero);
    // Whatever the price is.
    if (commands.price) add(commands.price->head);
    for (const SetupCommand& setup : commands.setup) add(setup.command);
  }
  return all;
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

bool makesCommand(const Bytes& before, const Bytes& next) {
  static const std::vector<Bytes> kCommands = allCommands();
  Bytes both = before;
  both.insert(both.end(), next.begin(), next.end());
  return std::ranges::any_of(kCommands, [&](const Bytes& command) {
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
