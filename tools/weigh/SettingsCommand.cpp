#include <iostream>
#include <map>
#include <memory>
#include <vector>

#include "Commands.h"
#include "Records.h"
#include "Report.h"
#include "Session.h"
#include "SettingsFile.h"
#include "Table.h"
#include "Texts.h"

namespace weigh {

namespace {

struct SettingsOptions {
  std::string folder;
  bool log = false;
  Format format = Format::Text;
};

std::vector<std::string> tableRow(const SettingsEntry& entry, const Reading& reading) {
  const Units units = unitsOf(entry.model);
  const bool good = reading.good();
  return {entry.id(),
          std::to_string(entry.model),
          lineOf(entry),
          good ? weightText(reading.weight, units) : "",
          good ? moneyText(reading.details->price, units) : "",
          good ? moneyText(reading.details->cost, units) : "",
          good ? stateText(reading) : "",
          fill(text::kMs, {milliseconds(reading.poll)}),
          good ? "" : std::to_string(reading.error.code) + " " + reading.error.text};
}

Json jsonRecord(const SettingsEntry& entry, const Reading& reading) {
  Json record = {{"id", entry.id()},
                 {"model", entry.model},
                 {"transport", entry.isSerial() ? "serial" : "tcp"},
                 {"port", entry.port()},
                 {"rate", entry.rate()}};
  addReading(record, reading, unitsOf(entry.model));
  return record;
}

std::string csvRow(const SettingsEntry& entry, const Reading& reading) {
  const char* transport = entry.isSerial() ? "serial" : "tcp";
  return entry.id() + ',' + std::to_string(entry.model) + ',' + transport + ',' +
         csvText(entry.port()) + ',' + std::to_string(entry.rate()) + ',' +
         readingCsv(reading, unitsOf(entry.model));
}

/// Errors of a kind are told once, with the scales that have them.
void complainOf(const std::map<std::uint32_t, std::vector<const SettingsEntry*>>& failed,
                const std::map<std::uint32_t, std::string>& texts) {
  for (const auto& [code, entries] : failed) {
    std::string ids;
    for (const SettingsEntry* entry : entries) ids += (ids.empty() ? "" : ", ") + entry->id();
    complain(fill(text::kOfScales, {errorText({code, texts.at(code)}), ids}),
             remedyFor(code, connectionOf(*entries.front())));
  }
}

ExitCode readFolder(const Program& program, const SettingsOptions& options) {
  const std::filesystem::path folder = options.folder;
  const auto entries = readSettings(folder);
  const auto log = options.log ? std::make_unique<ExchangeLog>(folder) : nullptr;
  Session session(program.component);
  if (const ExitCode code = judge(session.useFolder(folder), {})) return code;

  Table table({say(text::kIdColumn), say(text::kModelColumn), say(text::kLineColumn),
               say(text::kWeightColumn), say(text::kPriceColumn), say(text::kCostColumn),
               say(text::kStateColumn), say(text::kPollColumn), say(text::kErrorColumn)});
  std::map<std::uint32_t, std::vector<const SettingsEntry*>> failed;
  std::map<std::uint32_t, std::string> texts;
  if (options.format == Format::Csv)
    std::cout << "id,model,transport,port,rate," << readingCsvHead(true) << '\n';
  for (const SettingsEntry& entry : entries) {
    const Reading reading = session.read(entry.id(), true);
    if (!reading.good()) {
      failed[reading.error.code].push_back(&entry);
      texts[reading.error.code] = reading.error.text;
    }
    switch (options.format) {
      case Format::Text: table.add(tableRow(entry, reading)); break;
      case Format::Json: writeRecord(jsonRecord(entry, reading)); break;
      case Format::Csv: std::cout << csvRow(entry, reading) << std::endl; break;
    }
  }
  if (options.format == Format::Text) std::cout << table.text() << std::flush;
  complainOf(failed, texts);
  return failed.empty() ? kGood : kScaleFailed;
}

}  // namespace

void addSettingsCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<SettingsOptions>();
  CLI::App& command = addCommand(app, {.name = "settings",
                                       .about = text::kSettingsAbout,
                                       .example = "weigh settings /opt/orbelo --json"});
  command.add_option("folder", options->folder, say(text::kFolderArgument))
      ->required()
      ->type_name("DIR");
  command.add_flag("--log", options->log, say(text::kSettingsLogFlag));
  addFormatFlags(command, options->format);
  command.callback([&program, options] {
    program.action = [&program, options] { return readFolder(program, *options); };
  });
}

}  // namespace weigh
