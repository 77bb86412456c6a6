#include <iostream>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Library.h"
#include "SelfDescription.h"
#include "Session.h"
#include "Texts.h"

namespace {

using namespace weigh;

/// The language has to be known before the first help text is made.
void settleLanguage(int argc, char** argv) {
  static constexpr std::string_view kOption = "--lang";
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    Language language{};
    std::string_view name;
    if (argument == kOption && i + 1 < argc) name = argv[i + 1];
    if (argument.starts_with("--lang=")) name = argument.substr(kOption.size() + 1);
    if (languageByName(name, language)) useLanguage(language);
  }
}

void nameHelpParts(CLI::App& app) {
  const auto formatter = app.get_formatter();
  formatter->label("Usage", say(text::kUsage));
  formatter->label("OPTIONS", say(text::kOptionsWord));
  formatter->label("SUBCOMMAND", say(text::kSubcommand));
  formatter->label("SUBCOMMANDS", say(text::kSubcommand));
  formatter->label("Positionals", say(text::kPositionals));
  formatter->label("REQUIRED", say(text::kRequired));
  formatter->column_width(36);
}

void addCommands(CLI::App& app, Program& program) {
  for (const auto add :
       {addReadCommand, addWatchCommand, addTareCommand, addPriceCommand, addTestCommand,
        addModelsCommand, addPageCommand, addSettingsCommand, addFindCommand, addDoctorCommand,
        addReportCommand, addExplainCommand, addCallCommand}) {
    add(app, program);
  }
}

/// For the build, which makes manual pages and completion of it.
void addSelfDescription(CLI::App& app) {
  const auto print = [&app](const std::string& form) {
    std::cout << selfDescription(app, form);
    throw CLI::Success();
  };
  app.add_option_function<std::string>(kSelfDescriptionOption, print)
      ->check(CLI::IsMember({"man", "bash", "zsh"}))
      // A command need not follow.
      ->trigger_on_parse()
      ->group("");
}

/// What CLI11 found wrong, in the tool's words.
std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) return error.what();
  if (app.get_subcommands().empty()) {
    std::string names;
    for (const CLI::App* command : app.get_subcommands({})) {
      names += (names.empty() ? "" : ", ") + command->get_name();
    }
    return fill(text::kNoCommand, {names});
  }
  const bool extra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  return fill(extra ? text::kUnexpected : text::kMissing, {error.what()});
}

ExitCode complainOf(const host::LoadError& error) {
  using Reason = host::LoadError::Reason;
  const std::string path = error.path.string();
  switch (error.reason) {
    case Reason::Missing:
      complain(fill(text::kComponentMissing, {path}), say(text::kComponentMissingRemedy));
      break;
    case Reason::NotLoadable:
      complain(fill(text::kComponentBroken, {path, error.detail}),
               say(text::kComponentBrokenRemedy));
      break;
    case Reason::NoExport:
      complain(fill(text::kComponentForeign, {path, error.detail}),
               say(text::kComponentBrokenRemedy));
      break;
    case Reason::NoObject:
      complain(fill(text::kComponentRefuses, {path, error.detail}),
               say(text::kComponentBrokenRemedy));
      break;
  }
  return kWrongUsage;
}

ExitCode parseAndRun(int argc, char** argv) {
  CLI::App app(say(text::kAbout), "weigh");
  nameHelpParts(app);
  app.option_defaults()->group(say(text::kOptionsGroup));
  app.set_help_flag("-h,--help", say(text::kHelpFlag))->group(say(text::kOptionsGroup));
  app.footer(say(text::kExitCodes));
  app.require_subcommand(1);

  Program program{.component = host::Library::besideProgram(), .action = {}};
  std::string component;
  std::string language;
  app.add_option("--component", component, say(text::kComponentOption))->type_name("PATH");
  app.add_option("--lang", language, say(text::kLangOption))
      ->type_name("en|ru")
      ->check(CLI::IsMember({"en", "ru"}))
      // A wrapper may have said its own before.
      ->take_last();
  app.set_version_flag("--version", versionLine("weigh"), say(text::kVersionFlag));
  addCommands(app, program);
  addSelfDescription(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      return static_cast<ExitCode>(app.exit(error));
    }
    const auto chosen = app.get_subcommands();
    const std::string name = chosen.empty() ? "weigh" : "weigh " + chosen.front()->get_name();
    complain(usageMessage(app, error), fill(text::kSeeHelp, {name}));
    return kWrongUsage;
  }
  if (!component.empty()) program.component = component;
  return program.action();
}

}  // namespace

CLI::App& weigh::addCommand(CLI::App& app, const CommandHelp& help) {
  CLI::App* command = app.add_subcommand(help.name, say(help.about));
  command->group(say(text::kCommandsGroup));
  // Inherited from the program, but not with its heading.
  command->set_help_flag("-h,--help", say(text::kHelpFlag))->group(say(text::kOptionsGroup));
  command->fallthrough();
  const std::string example = fill(text::kExample, {help.example});
  command->footer(help.notes == nullptr ? example : say(*help.notes) + ("\n\n" + example));
  return *command;
}

int main(int argc, char** argv) {
  settleLanguage(argc, argv);
  try {
    return parseAndRun(argc, argv);
  } catch (const Failure& failure) {
    complain(failure.what(), failure.remedy);
    return failure.exitCode;
  } catch (const host::LoadError& error) {
    return complainOf(error);
  } catch (const std::exception& error) {
    complain(fill(text::kUnexpectedFailure, {error.what()}));
    return kScaleFailed;
  }
}
