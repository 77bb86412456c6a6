#include "Doctor.h"
#include "Text.h"

namespace weigh {

namespace {

struct DoctorOptions {
  Connection connection;
  std::string folder;
  Format format = Format::Text;
};

Json jsonOf(std::optional<Milliseconds> time) { return time ? Json(rounded(*time)) : Json(); }

template <typename Item>
Json listOf(const std::vector<Item>& items, Json (*record)(const Item&)) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(record(item));
  return list;
}

std::string pollsText(const PollTimes& polls, const Connection& connection) {
  if (!polls.median) return {};
  std::string text = "  " + say("Polls {0}, answered {1}; median {2} ms, worst {3} ms.", polls.done,
                                polls.answered, msText(*polls.median), msText(*polls.worst));
  if (polls.wire) {
    text += " " + say("The line alone takes {0} ms of it at {1} baud.", msText(*polls.wire),
                      connection.baud);
  }
  return text + "\n";
}

std::string devicesText(const std::vector<devices::SerialDevice>& devices) {
  if (devices.empty()) return {};
  Table table({say("DEVICE"), say("ADAPTER"), say("STABLE NAMES, BY ADAPTER AND BY SOCKET")});
  for (const devices::SerialDevice& device : devices) {
    table.add({device.path.string(), adapterText(device), device.byAdapter.string()});
    if (!device.bySocket.empty()) table.add({"", "", device.bySocket.string()});
  }
  return table.text();
}

ExitCode examine(const Program& program, const DoctorOptions& options) {
  std::vector<NamedScale> scales = {{.id = {}, .connection = options.connection}};
  if (!options.folder.empty()) scales = scalesOf(options.folder);
  bool allWeigh = true;
  RecordWriter writer(options.format);
  const bool whole = diagnoseAll(
      scales, program.component, [&](const NamedScale& scale, const Diagnosis& diagnosis) {
        allWeigh = allWeigh && diagnosis.weighs;
        writer.write(diagnosisRecord(scale, diagnosis), diagnosisText(scale, diagnosis));
      });
  return whole && allWeigh ? kGood : kFailed;
}

}  // namespace

bool diagnoseAll(const std::vector<NamedScale>& scales, const std::filesystem::path& component,
                 const std::function<void(const NamedScale&, const Diagnosis&)>& found) {
  std::chrono::milliseconds longest{0};
  for (const NamedScale& scale : scales) longest += longestDiagnosis(scale.connection);
  if (longest.count() > 0) {
    tell(say("This takes up to {0} s.", std::chrono::ceil<std::chrono::seconds>(longest).count()));
  }
  for (const NamedScale& scale : scales) {
    Diagnosis diagnosis;
    {
      Progress progress(longestDiagnosis(scale.connection));
      diagnosis = diagnose(scale.connection, {.component = component, .progress = progress});
    }
    found(scale, diagnosis);
  }
  return !Ending::asked();
}

std::string diagnosisText(const NamedScale& scale, const Diagnosis& diagnosis) {
  const int model = scale.connection.model;
  std::string text = scale.id.empty()
                         ? say("Scale: model {0}, {1}", model, scale.line())
                         : say("Scale {0}: model {1}, {2}", scale.id, model, scale.line());
  text += "\n" + findingText(say("Verdict"), diagnosis.verdict) +
          pollsText(diagnosis.polls, scale.connection);
  for (const Finding& note : diagnosis.notes) text += findingText(say("Note"), note);
  return text + devicesText(diagnosis.devices);
}

Json diagnosisRecord(const NamedScale& scale, const Diagnosis& diagnosis) {
  const Connection& connection = scale.connection;
  const auto& weighing = diagnosis.weighing;
  const PollTimes& polls = diagnosis.polls;
  return {{"id", orNull(scale.id)},
          {"model", connection.model},
          {"transport", connection.network ? "tcp" : "serial"},
          {"line", scale.line()},
          {"weighs", diagnosis.weighs},
          {"verdict", diagnosis.verdict.code},
          {"cause", diagnosis.verdict.cause},
          {"remedy", diagnosis.verdict.remedy},
          {"weight", weighing && weighing->good() ? Json(weighing->weight) : Json()},
          {"unit", orNull(unitName(unitsOf(connection.model).weight))},
          {"polls",
           {{"done", polls.done},
            {"answered", polls.answered},
            {"median_ms", jsonOf(polls.median)},
            {"worst_ms", jsonOf(polls.worst)},
            {"wire_ms", jsonOf(polls.wire)}}},
          {"bytes", diagnosis.bytes},
          {"notes", listOf(diagnosis.notes, findingRecord)},
          {"devices", listOf(diagnosis.devices, deviceRecord)}};
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

void addDoctorCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DoctorOptions>();
  CLI::App& command = addCommand(
      app, "doctor", say("Find out why a scale doesn't answer, and what to do"),
      "weigh doctor --model 13 --port /dev/ttyUSB0\nweigh doctor /opt/orbelo",
      say("Give the parameters of one scale, or a component folder for all scales of its "
          "settings.xml. Only weights are asked for; nothing is set in the scale.\n"
          "Exit codes: 0 every scale gives a weight; 1 a scale doesn't; 2 wrong usage."));
  addFolder(command, options->folder);
  addConnectionOptions(command, options->connection);
  addJsonFlag(command, options->format);
  setAction(command, program, options, examine);
}

}  // namespace weigh
