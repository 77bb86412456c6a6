// weigh models and weigh page: they need no scale.

#include "ModelNotes.h"
#include "Models.h"
#include "Records.h"
#include "Text.h"

namespace weigh {

namespace {

struct ListOptions {
  Format format = Format::Text;
  bool withDriver = false;
  /// None for the list.
  int about = -1;
};

ExitCode listModels(const Program& /*program*/, const ListOptions& options) {
  const auto& [format, withDriver, about] = options;
  if (about >= 0) {
    print(notes::pageOf(*findScalesModel(about), 1));
    return kGood;
  }
  Table table({say("MODEL"), say("DRIVER"), say("WEIGHT IN"), say("NAME")});
  for (const ScalesModel& model : scalesModels()) {
    const bool driver = model.create != nullptr;
    if (withDriver && !driver) continue;
    const Units units = unitsOf(model.number);
    if (format == Format::Json) {
      writeRecord({{"model", model.number},
                   {"name", model.name},
                   {"driver", driver},
                   {"unit", orNull(driver ? unitName(units.weight) : "")},
                   {"money_unit", orNull(driver ? unitName(units.money) : "")}});
    }
    // TRANSLATORS: whether a model has a driver
    table.add({std::to_string(model.number), driver ? say("yes") : sayIn("driver", "no"),
               driver ? unitText(units.weight) : "", model.name});
  }
  if (format != Format::Json) print(table.text());
  return kGood;
}

ExitCode printPage(const Program& program, Format format) {
  Session session(program.component);
  const host::CallResult answer = session.component().call("GetParameters");
  const auto* page = std::get_if<std::string>(&answer.params.at(0));
  if (page == nullptr)
    throw Failure(kFailed, say("the component refused the call of {0}", "GetParameters"));
  if (format == Format::Json) {
    writeRecord({{"page", *page}});
  } else {
    printRaw(*page);
  }
  return kGood;
}

}  // namespace

void addModelsCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ListOptions>();
  CLI::App& command = addCommand(app, "models", say("List the models, and which have a driver"),
                                 "weigh models --driver");
  addJsonFlag(command, options->format);
  command.add_flag("--driver", options->withDriver, say("Only models that have a driver"));
  addNumber(command, "--about", options->about, 0, static_cast<int>(scalesModels().size()) - 1,
            say("What is known of a model's scale, and what to set on it"));
  setAction(command, program, options, listModels);
}

void addPageCommand(CLI::App& app, Program& program) {
  const auto format = std::make_shared<Format>(Format::Text);
  CLI::App& command =
      addCommand(app, "page", say("Print the parameter page that the platform gets, as XML"),
                 "weigh page > page.xml");
  addJsonFlag(command, *format);
  setAction(command, program, format, printPage);
}

}  // namespace weigh
