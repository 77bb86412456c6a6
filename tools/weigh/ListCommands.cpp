// Commands that need no scale: the models and the parameter page.

#include <iostream>
#include <memory>

#include "Commands.h"
#include "Models.h"
#include "Records.h"
#include "Session.h"
#include "Table.h"
#include "Texts.h"

namespace weigh {

namespace {

struct ListOptions {
  Format format = Format::Text;
  bool withDriver = false;
};

ExitCode listModels(const ListOptions& options) {
  Table table({say(text::kModelColumn), say(text::kDriverColumn), say(text::kUnitColumn),
               say(text::kNameColumn)});
  for (const ScalesModel& model : scalesModels()) {
    const bool driver = model.create != nullptr;
    if (options.withDriver && !driver) continue;
    const Units units = unitsOf(model.number);
    if (options.format == Format::Json) {
      const char* unit = driver ? unitName(units.weight) : nullptr;
      const char* money = driver ? unitName(units.money) : nullptr;
      writeRecord({{"model", model.number},
                   {"name", model.name},
                   {"driver", driver},
                   {"unit", unit == nullptr ? Json() : Json(unit)},
                   {"money_unit", money == nullptr ? Json() : Json(money)}});
      continue;
    }
    table.add({std::to_string(model.number), say(driver ? text::kYes : text::kNo),
               driver ? unitText(units.weight) : "", model.name});
  }
  if (options.format != Format::Json) std::cout << table.text();
  return kGood;
}

ExitCode printPage(const Program& program, const ListOptions& options) {
  Session session(program.component);
  const host::CallResult answer = session.component().call("GetParameters");
  const auto* page = std::get_if<std::string>(&answer.params.at(0));
  if (page == nullptr) throw Failure(kScaleFailed, fill(text::kCallRefused, {"GetParameters"}));
  if (options.format == Format::Json) {
    writeRecord({{"page", *page}});
  } else {
    std::cout << *page;
  }
  return kGood;
}

}  // namespace

void addModelsCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ListOptions>();
  CLI::App& command = addCommand(
      app, {.name = "models", .about = text::kModelsAbout, .example = "weigh models --driver"});
  addJsonFlag(command, options->format);
  command.add_flag("--driver", options->withDriver, say(text::kWithDriverFlag));
  command.callback(
      [&program, options] { program.action = [options] { return listModels(*options); }; });
}

void addPageCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ListOptions>();
  CLI::App& command = addCommand(
      app, {.name = "page", .about = text::kPageAbout, .example = "weigh page > page.xml"});
  addJsonFlag(command, options->format);
  command.callback([&program, options] {
    program.action = [&program, options] { return printPage(program, *options); };
  });
}

}  // namespace weigh
