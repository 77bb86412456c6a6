#include "LongWork.h"
#include "SettingsFile.h"
#include "Text.h"

namespace weigh {

namespace {

struct SettingsOptions {
  std::string folder;
  bool log = false;
  Format format = Format::Text;
};

Json recordOf(const NamedScale& scale, const Weighing& weighing) {
  const Connection& connection = scale.connection;
  Json record = {{"id", scale.id},
                 {"model", connection.model},
                 {"transport", connection.network ? "tcp" : "serial"},
                 {"port", connection.network ? connection.host : connection.device},
                 {"rate", connection.network ? connection.tcpPort : connection.baud}};
  addWeighing(record, weighing, unitsOf(connection.model));
  return record;
}

ExitCode readFolder(const Program& program, const SettingsOptions& options) {
  const std::vector<NamedScale> scales = scalesOf(options.folder);
  const std::filesystem::path folder = options.folder;
  const auto log = options.log ? std::make_unique<LoggingFolder>(folder) : nullptr;
  Session session(program.component);
  if (const ExitCode code = judge(session.useFolder(folder), {})) return code;

  // What is known before goes into columns; each scale's row then comes when it has answered.
  Table heads({say("ID"), say("MODEL"), say("LINE"), say("READING")});
  for (const NamedScale& scale : scales)
    heads.add({scale.id, std::to_string(scale.connection.model), scale.line(), "|"});
  std::vector<std::string> rows = wrapped(heads.text(), std::string::npos);
  if (options.format == Format::Text) print(rows.front() + "\n");

  RecordWriter writer(options.format);
  Complaints complaints;
  for (std::size_t i = 0; i < scales.size() && !Ending::asked(); ++i) {
    const NamedScale& scale = scales[i];
    const Weighing weighing = session.read(scale.id, true);
    if (!weighing.good() && Ending::asked()) break;
    std::string& row = rows[i + 1];
    row.pop_back();
    writer.write(
        recordOf(scale, weighing),
        fmt::format("{}{}   {}", row, weighingText(weighing, unitsOf(scale.connection.model)),
                    say("{0} ms", msText(weighing.poll))));
    if (!weighing.good()) complaints.add(scale, weighing.error);
  }
  const ExitCode code = complaints.conclude();
  return Ending::asked() ? kFailed : code;
}

}  // namespace

void addSettingsCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<SettingsOptions>();
  CLI::App& command = addCommand(
      app, "settings", say("Load a component folder and read every scale of its settings.xml"),
      "weigh settings /opt/orbelo --json");
  addText(command, "folder", options->folder, say("Component folder with settings.xml"))
      ->required()
      ->type_name("DIR");
  command.add_flag("--log", options->log, say("Write exchange logs into the folder"));
  addFormatFlags(command, options->format);
  setAction(command, program, options, readFolder);
}

}  // namespace weigh
