// weigh: reads scales through the component, loaded and called as the platform does it.

#include "Library.h"
#include "LongWork.h"
#include "Options.h"
#include "Session.h"

namespace {

using namespace weigh;

ExitCode parseAndRun(int argc, char** argv) {
  CLI::App app(say("reads scales through the OrbeloScales component, loaded and called as the "
                   "platform does it"),
               "weigh");
  addCommonOptions(app);
  app.footer(
      say("Exit codes: 0 good; 1 the scale, the component or the machine reports an error; 2 "
          "wrong usage, or something that is needed isn't there.\n"
          "`weigh COMMAND --help` tells more about a command.\n\n"
          "Example: weigh read --model 13 --port /dev/ttyUSB0 --baud 9600"));
  app.require_subcommand(1);
  Program program{.component = host::Library::besideProgram(), .action = {}};
  std::string component;
  addText(app, "--component", component,
          say("The component's library (default: the one beside weigh)"))
      ->type_name("PATH");
  for (const auto add :
       {addReadCommand, addWatchCommand, addTareCommand, addPriceCommand, addTestCommand,
        addModelsCommand, addPageCommand, addSettingsCommand, addFindCommand, addDoctorCommand,
        addReportCommand, addExplainCommand, addCallCommand}) {
    add(app, program);
  }
  if (const auto done = parse(app, argc, argv)) return *done;
  if (!component.empty()) program.component = component;
  const Ending ending;
  const ExitCode code = program.action();
  return LoggingFolder::isWhole() || code != kGood ? code : kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  return runProgram("weigh", argc, argv, [&] { return parseAndRun(argc, argv); });
}
