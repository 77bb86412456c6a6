#include <iostream>
#include <memory>

#include "Commands.h"
#include "Doctor.h"
#include "DoctorDevice.h"
#include "Models.h"
#include "Records.h"
#include "SettingsFile.h"
#include "Table.h"
#include "Texts.h"
#include "Units.h"

namespace weigh {

namespace {

struct DoctorOptions {
  Connection connection;
  std::string folder;
  Format format = Format::Text;
};

/// One scale to look at.
struct Patient {
  /// Its number in the settings file; empty for the scale of the options.
  std::string id;
  Connection connection;

  std::string line() const {
    return connection.network ? connection.host + ':' + std::to_string(connection.tcpPort)
                              : connection.device + ' ' + std::to_string(connection.baud);
  }
};

std::vector<Patient> patientsOf(const DoctorOptions& options) {
  if (options.folder.empty()) return {{.id = {}, .connection = options.connection}};
  std::vector<Patient> patients;
  for (const SettingsEntry& entry : readSettings(options.folder))
    patients.push_back({.id = entry.id, .connection = entry.connection()});
  return patients;
}

Json jsonOf(const Finding& finding) {
  return {{"code", finding.code}, {"cause", finding.cause}, {"remedy", finding.remedy}};
}

Json jsonOf(const devices::SerialDevice& device) {
  return {{"device", device.path.string()},
          {"by_adapter", device.byAdapter.string()},
          {"by_socket", device.bySocket.string()},
          {"adapter", adapterText(device)},
          {"driver", device.driver}};
}

Json jsonOf(std::optional<Milliseconds> time) { return time ? Json(rounded(*time)) : Json(); }

template <typename Item>
Json listOf(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(jsonOf(item));
  return list;
}

Json recordOf(const Patient& patient, const Diagnosis& diagnosis) {
  const Connection& connection = patient.connection;
  const auto& reading = diagnosis.reading;
  const bool good = reading && reading->good();
  const char* unit = unitName(unitsOf(connection.model).weight);
  const PollTimes& polls = diagnosis.polls;
  return {{"id", patient.id.empty() ? Json() : Json(patient.id)},
          {"model", connection.model},
          {"transport", connection.network ? "tcp" : "serial"},
          {"line", patient.line()},
          {"weighs", diagnosis.weighs},
          {"verdict", diagnosis.verdict.code},
          {"cause", diagnosis.verdict.cause},
          {"remedy", diagnosis.verdict.remedy},
          {"weight", good ? Json(reading->weight) : Json()},
          {"unit", unit == nullptr ? Json() : Json(unit)},
          {"polls",
           {{"done", polls.done},
            {"answered", polls.answered},
            {"median_ms", jsonOf(polls.median)},
            {"worst_ms", jsonOf(polls.worst)},
            {"wire_ms", jsonOf(polls.wire)}}},
          {"bytes", diagnosis.bytes},
          {"notes", listOf(diagnosis.notes)},
          {"devices", listOf(diagnosis.devices)}};
}

void writeFinding(const Text& heading, const Finding& finding) {
  std::cout << say(heading) << ": " << finding.code << " - " << finding.cause << '\n';
  std::cout << "  " << say(text::kRemedyWord) << ": " << finding.remedy << '\n';
}

void writePolls(const PollTimes& polls, const Connection& connection) {
  if (!polls.median) return;
  std::cout << "  "
            << fill(text::kPollTimes, {std::to_string(polls.done), std::to_string(polls.answered),
                                       milliseconds(*polls.median), milliseconds(*polls.worst)});
  if (polls.wire) {
    std::cout << ' '
              << fill(text::kWireTime,
                      {milliseconds(*polls.wire), std::to_string(connection.baud)});
  }
  std::cout << '\n';
}

void writeDevices(const std::vector<devices::SerialDevice>& devices) {
  if (devices.empty()) return;
  Table table({say(text::kDeviceColumn), say(text::kAdapterColumn), say(text::kStableNamesColumn)});
  for (const devices::SerialDevice& device : devices) {
    table.add({device.path.string(), adapterText(device), device.byAdapter.string()});
    if (!device.bySocket.empty()) table.add({"", "", device.bySocket.string()});
  }
  std::cout << table.text();
}

void writeText(const Patient& patient, const Diagnosis& diagnosis) {
  const std::string model = std::to_string(patient.connection.model);
  std::cout << (patient.id.empty()
                    ? fill(text::kScaleLine, {model, patient.line()})
                    : fill(text::kScaleLineOfId, {patient.id, model, patient.line()}))
            << '\n';
  writeFinding(text::kVerdictWord, diagnosis.verdict);
  writePolls(diagnosis.polls, patient.connection);
  for (const Finding& note : diagnosis.notes) writeFinding(text::kNoteWord, note);
  writeDevices(diagnosis.devices);
  std::cout << std::flush;
}

ExitCode examine(const Program& program, const DoctorOptions& options) {
  const std::vector<Patient> patients = patientsOf(options);
  std::chrono::seconds longest{0};
  for (const Patient& patient : patients) longest += longestDiagnosis(patient.connection);
  if (longest.count() > 0)
    std::cerr << fill(text::kTakesUpTo, {std::to_string(longest.count())}) << std::endl;

  const Interrupt interrupt;
  ExitCode code = kGood;
  for (const Patient& patient : patients) {
    Diagnosis diagnosis;
    {
      Progress progress(longestDiagnosis(patient.connection));
      diagnosis =
          diagnose(patient.connection,
                   {.component = program.component, .interrupt = interrupt, .progress = progress});
    }
    if (options.format == Format::Json) {
      writeRecord(recordOf(patient, diagnosis));
    } else {
      if (&patient != &patients.front()) std::cout << '\n';
      writeText(patient, diagnosis);
    }
    if (!diagnosis.weighs) code = kScaleFailed;
    if (interrupt.asked()) return kScaleFailed;
  }
  return code;
}

/// Whether the command line has a parameter of a scale.
bool givesScale(const CLI::App& command) {
  const auto options = command.get_options([](const CLI::Option* option) {
    return option->get_group() == say(text::kScaleGroup) && option->count() > 0;
  });
  return !options.empty();
}

}  // namespace

void addDoctorCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DoctorOptions>();
  CLI::App& command = addCommand(app, {.name = "doctor",
                                       .about = text::kDoctorAbout,
                                       .example = "weigh doctor --model 13 --port /dev/ttyUSB0",
                                       .notes = &text::kDoctorNotes});
  addConnectionOptions(command, options->connection);
  command.add_option("folder", options->folder, say(text::kDoctorFolder))->type_name("DIR");
  addJsonFlag(command, options->format);
  command.callback([&program, &command, options] {
    if (!options->folder.empty() && givesScale(command))
      throw CLI::ValidationError("folder", say(text::kScaleAndFolder));
    program.action = [&program, options] { return examine(program, *options); };
  });
}

}  // namespace weigh
