#include <fmt/ranges.h>

#include "Messages.h"
#include "ModelNotes.h"
#include "Models.h"

namespace notes {

namespace {

std::string certaintyText(Certainty certainty) {
  switch (certainty) {
    case Certainty::OwnManual: return say("the manual of this very series");
    case Certainty::SistersManual: return say("the manual of a sister");
    case Certainty::Inferred: break;
  }
  return say("only the frame fits; nothing proves that it is this scale");
}

std::string unitText(const ProtocolSheet& sheet) {
  switch (sheet.weightUnit) {
    case WeightUnit::Kilogram:
      return say(
          "The number of the display, in kilograms if that is what it shows: coefficient 1.");
    case WeightUnit::Gram: return say("Grams: coefficient 0.001 for kilograms.");
    case WeightUnit::AsShown: break;
  }
  return say(
      "The digits of the display without their point: find the coefficient by a known weight.");
}

/// What an answer of this protocol says nothing of, or nothing that the driver looks at.
std::string untoldText(const ProtocolSheet& sheet) {
  std::vector<std::string> untold;
  if (sheet.motion.told != Motion::Told::ByFrame) untold.push_back(say("whether the weight moves"));
  if (!showsOverload(sheet)) untold.push_back(say("an overload"));
  untold.push_back(say("the unit"));
  return fmt::format("{}", fmt::join(untold, ", "));
}

std::string lineText(const ModelNotes& notes) {
  std::string text = notes.line;
  if (!notes.bauds.empty()) {
    if (!text.empty()) text += ", ";
    const auto list = [](std::span<const int> bauds) {
      return fmt::to_string(fmt::join(bauds, ", "));
    };
    const std::span bauds = notes.bauds;
    if (!notes.deliveredFirst) {
      text += say("one of {0} baud", list(bauds));
    } else {
      text += say("{0} baud", bauds.front());
      if (bauds.size() > 1) text += say(" (also {0})", list(bauds.subspan(1)));
    }
  }
  return text.empty() ? say("not known; try 9600, 4800 and 2400 baud") : text;
}

/// "- Cable: ..."
void addRow(std::string& page, const std::string& name, const std::string& text) {
  page += fmt::format("- **{}**: {}\n", name, text);
}

}  // namespace

std::string pageOf(const ScalesModel& model, int headingLevel) {
  std::string page = fmt::format(
      "{} {}\n\n", std::string(static_cast<std::size_t>(headingLevel), '#'), model.pageText());
  if (model.sheet == nullptr)
    return page + say("This model needs no scale, or has no driver.") + "\n";
  const ProtocolSheet& sheet = *model.sheet;
  const std::optional<ModelNotes> notes = notesOf(model.number);
  addRow(page, say("The driver's line"), sheet.line.text());
  addRow(page, say("As delivered"),
         notes ? lineText(*notes)
               : say("no paper of this scale was found; `weigh find` tries the speeds"));
  if (notes) addRow(page, say("Cable"), notes->cable.empty() ? say("no paper says") : notes->cable);
  addRow(page, say("Weight"),
         unitText(sheet) + (notes && !notes->unit.empty() ? " " + notes->unit : ""));
  addRow(page, say("Not told by this protocol"), untoldText(sheet));
  if (!notes) return page;
  addRow(page, say("Known from"),
         fmt::format("{} ({})", notes->paper, certaintyText(notes->certainty)));
  page += "\n" + say("On the scale:") + "\n\n";
  if (notes->settings.empty()) {
    page += say("No paper says what to set.") + "\n";
  } else {
    for (std::size_t i = 0; i < notes->settings.size(); ++i) {
      page += fmt::format("{}. {}\n", i + 1, notes->settings[i]);
    }
  }
  if (!notes->wrong.empty()) {
    page += "\n" + say("When something is wrong:") + "\n\n";
    for (const WrongSetting& wrong : notes->wrong) {
      page += fmt::format("- {} {} *{}*\n", wrong.sign, wrong.cause, wrong.wayOut);
    }
  }
  return page;
}

}  // namespace notes
