#include "DoctorOutput.h"

#include <iostream>
#include <sstream>

#include "DoctorDevice.h"
#include "SettingsFile.h"
#include "Table.h"
#include "Texts.h"
#include "Units.h"

namespace weigh {

namespace {

Json jsonOf(const Finding& finding) {
  return {{"code", finding.code}, {"cause", finding.cause}, {"remedy", finding.remedy}};
}

Json jsonOf(const devices::SerialDevice& device) { return deviceRecord(device); }

Json jsonOf(std::optional<Milliseconds> time) { return time ? Json(rounded(*time)) : Json(); }

template <typename Item>
Json listOf(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(jsonOf(item));
  return list;
}

void writeFinding(std::ostream& out, const Text& heading, const Finding& finding) {
  out << say(heading) << ": " << finding.code << " - " << finding.cause << '\n';
  out << "  " << say(text::kRemedyWord) << ": " << finding.remedy << '\n';
}

void writePolls(std::ostream& out, const PollTimes& polls, const Connection& connection) {
  if (!polls.median) return;
  out << "  "
      << fill(text::kPollTimes, {std::to_string(polls.done), std::to_string(polls.answered),
                                 milliseconds(*polls.median), milliseconds(*polls.worst)});
  if (polls.wire) {
    out << ' '
        << fill(text::kWireTime, {milliseconds(*polls.wire), std::to_string(connection.baud)});
  }
  out << '\n';
}

void writeDevices(std::ostream& out, const std::vector<devices::SerialDevice>& devices) {
  if (devices.empty()) return;
  Table table({say(text::kDeviceColumn), say(text::kAdapterColumn), say(text::kStableNamesColumn)});
  for (const devices::SerialDevice& device : devices) {
    table.add({device.path.string(), adapterText(device), device.byAdapter.string()});
    if (!device.bySocket.empty()) table.add({"", "", device.bySocket.string()});
  }
  out << table.text();
}

}  // namespace

std::string Patient::line() const {
  return connection.network ? connection.host + ':' + std::to_string(connection.tcpPort)
                            : connection.device + ' ' + std::to_string(connection.baud);
}

std::vector<Patient> patientsOf(const std::filesystem::path& folder) {
  std::vector<Patient> patients;
  for (const SettingsEntry& entry : readSettings(folder))
    patients.push_back({.id = entry.id(), .connection = connectionOf(entry)});
  return patients;
}

bool diagnoseAll(const std::vector<Patient>& patients, const std::filesystem::path& component,
                 const Interrupt& interrupt,
                 const std::function<void(const Patient&, const Diagnosis&)>& found) {
  std::chrono::seconds longest{0};
  for (const Patient& patient : patients) longest += longestDiagnosis(patient.connection);
  if (longest.count() > 0)
    std::cerr << fill(text::kTakesUpTo, {std::to_string(longest.count())}) << std::endl;
  for (const Patient& patient : patients) {
    Diagnosis diagnosis;
    {
      Progress progress(longestDiagnosis(patient.connection));
      diagnosis = diagnose(patient.connection,
                           {.component = component, .interrupt = interrupt, .progress = progress});
    }
    found(patient, diagnosis);
  }
  return !interrupt.asked();
}

std::string diagnosisText(const Patient& patient, const Diagnosis& diagnosis) {
  std::ostringstream out;
  const std::string model = std::to_string(patient.connection.model);
  out << (patient.id.empty() ? fill(text::kScaleLine, {model, patient.line()})
                             : fill(text::kScaleLineOfId, {patient.id, model, patient.line()}))
      << '\n';
  writeFinding(out, text::kVerdictWord, diagnosis.verdict);
  writePolls(out, diagnosis.polls, patient.connection);
  for (const Finding& note : diagnosis.notes) writeFinding(out, text::kNoteWord, note);
  writeDevices(out, diagnosis.devices);
  return out.str();
}

Json diagnosisRecord(const Patient& patient, const Diagnosis& diagnosis) {
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

Json deviceRecord(const devices::SerialDevice& device) {
  Json record = {{"device", device.path.string()},
                 {"by_adapter", device.byAdapter.string()},
                 {"by_socket", device.bySocket.string()},
                 {"adapter", adapterText(device)},
                 {"driver", device.driver}};
  if (!device.adapter) return record;
  record["usb_id"] = device.adapter->id;
  record["serial_number"] = device.adapter->serialNumber;
  record["socket"] = device.adapter->socket;
  return record;
}

}  // namespace weigh
