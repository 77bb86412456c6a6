#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>

#include "Commands.h"
#include "DeviceAccess.h"
#include "DoctorOutput.h"
#include "Holders.h"
#include "ReportTexts.h"
#include "SelfDescription.h"
#include "SettingsFile.h"
#include "SupportArchive.h"
#include "Texts.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t kKibibyte = 1024;
constexpr std::uintmax_t kMostOfLog = 256 * kKibibyte;
/// A settings file of a hundred scales takes a twentieth of this.
constexpr std::uintmax_t kMostOfSettings = 1024 * kKibibyte;
constexpr std::size_t kMostLogs = 32;

struct ReportOptions {
  std::string folder;
  std::string output;
  bool noDoctor = false;
  Format format = Format::Text;
};

/// One file of the archive.
struct Part {
  std::string name;
  std::string content;
  /// Size of the file that it is the end of; its own where it is whole.
  std::uintmax_t whole = 0;
};

Part made(const std::string& name, std::string content) {
  const std::uintmax_t size = content.size();
  return {.name = name, .content = std::move(content), .whole = size};
}

/// The last `most` bytes of a file.
Part endOf(const fs::path& file, std::uintmax_t most) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  Part part{.name = file.filename(), .content = {}, .whole = error ? 0 : size};
  part.content.resize(static_cast<std::size_t>(std::min(part.whole, most)));
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(part.whole - part.content.size()));
  stream.read(part.content.data(), static_cast<std::streamsize>(part.content.size()));
  part.content.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
  return part;
}

/// The last part of an exchange log, from the beginning of a record on.
Part endOfLog(const fs::path& file) {
  static constexpr std::string_view kRecordStart = "\r\n____";
  Part part = endOf(file, kMostOfLog);
  if (part.content.size() < part.whole) {
    const std::size_t start = part.content.find(kRecordStart);
    if (start != std::string::npos) part.content.erase(0, start);
  }
  part.name = "logs/" + part.name;
  return part;
}

/// The exchange logs of a folder, the newest first. Links aren't followed: what they lead to is
/// nobody's log.
std::vector<fs::path> logsOf(const fs::path& folder) {
  std::vector<std::pair<fs::file_time_type, fs::path>> logs;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename();
    if (!name.starts_with("log_scales_") || !name.ends_with(".log")) continue;
    if (!fs::is_regular_file(entry.symlink_status(error))) continue;
    logs.emplace_back(entry.last_write_time(error), entry.path());
  }
  std::sort(logs.rbegin(), logs.rend());
  std::vector<fs::path> files;
  files.reserve(logs.size());
  for (auto& [time, file] : logs) files.push_back(std::move(file));
  return files;
}

Json versions(Session& session, const fs::path& component) {
  const host::CallResult answer = session.component().call("GetVersion");
  const auto* version = std::get_if<std::string>(&answer.result);
  std::error_code error;
  return {{"tool", versionLine("weigh")},
          {"component", version == nullptr ? Json() : Json(*version)},
          {"component_file", component.string()},
          {"component_bytes", fs::file_size(component, error)}};
}

std::string distribution() {
  static constexpr std::string_view kKey = "PRETTY_NAME=";
  std::ifstream facts("/etc/os-release");
  for (std::string line; std::getline(facts, line);) {
    if (!line.starts_with(kKey)) continue;
    line.erase(0, kKey.size());
    std::erase(line, '"');
    return line;
  }
  return {};
}

Json systemFacts() {
  utsname kernel = {};
  ::uname(&kernel);
  Json locale;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    locale[name] = value == nullptr ? Json() : Json(value);
  }
  return {{"distribution", distribution()},
          {"kernel", std::string(kernel.sysname) + ' ' + kernel.release + ' ' + kernel.machine},
          {"locale", locale}};
}

Json portFacts() {
  Json ports = Json::array();
  for (const devices::SerialDevice& device : devices::serialDevices()) {
    Json port = deviceRecord(device);
    port["latency_ms"] = device.latency_ms ? Json(*device.latency_ms) : Json();
    if (const auto access = devices::accessOf(device.path)) {
      port["owner"] = access->owner;
      port["group"] = access->group;
      port["mode"] = access->modeText();
      port["usable"] = devices::mayUse(device.path);
    }
    Json& holders = port["held_by"] = Json::array();
    for (const devices::Holder& holder : devices::holdersOf(device.path).processes)
      holders.push_back({{"process", holder.pid}, {"name", holder.name}});
    ports.push_back(std::move(port));
  }
  return ports;
}

Json folderFacts(const fs::path& folder) {
  std::error_code error;
  return {{"path", fs::absolute(folder, error).string()},
          {"log_switched_on", fs::exists(folder / "log.txt", error)},
          {"writable", ::access(folder.c_str(), W_OK) == 0}};
}

Part facts(const Program& program, const fs::path& folder) {
  Session session(program.component);
  const Json all = {{"made", timestamp()},
                    {"versions", versions(session, program.component)},
                    {"system", systemFacts()},
                    {"folder", folderFacts(folder)},
                    {"ports", portFacts()}};
  static constexpr int kIndent = 2;
  return made("system.json", all.dump(kIndent, ' ', false, Json::error_handler_t::replace) + '\n');
}

/// The doctor's verdicts, for people and for programs. False if they were interrupted.
bool addVerdicts(const Program& program, const fs::path& folder, const Interrupt& interrupt,
                 std::vector<Part>& parts) {
  std::string forPeople;
  std::string forPrograms;
  bool whole = true;
  try {
    whole = diagnoseAll(patientsOf(folder), program.component, interrupt,
                        [&](const Patient& patient, const Diagnosis& diagnosis) {
                          forPeople += diagnosisText(patient, diagnosis) + '\n';
                          forPrograms += recordLine(diagnosisRecord(patient, diagnosis));
                        });
  } catch (const Failure& failure) {
    // Settings that can't be read are for support to see.
    forPeople += std::string(failure.what()) + '\n' + failure.remedy + '\n';
  }
  parts.push_back(made("verdict.txt", std::move(forPeople)));
  if (!forPrograms.empty()) parts.push_back(made("verdict.jsonl", std::move(forPrograms)));
  return whole;
}

fs::path archiveName(const ReportOptions& options) {
  fs::path name = options.output;
  if (name.empty()) name = "orbelo-report-" + timestamp("%Y%m%d-%H%M%S") + ".tar.gz";
  std::error_code error;
  if (fs::exists(name, error)) {
    throw Failure(kWrongUsage, fill(text::kArchiveThere, {name.string()}),
                  say(text::kArchiveThereRemedy));
  }
  return name;
}

void tell(const fs::path& name, const std::vector<Part>& parts,
          const std::vector<std::string>& leftOut, Format format) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(name, error);
  if (format == Format::Json) {
    Json packed = Json::array();
    for (const Part& part : parts)
      packed.push_back(
          {{"name", part.name}, {"bytes", part.content.size()}, {"of_bytes", part.whole}});
    writeRecord(
        {{"archive", name.string()}, {"bytes", size}, {"packed", packed}, {"left_out", leftOut}});
    return;
  }
  std::cout << say(text::kPacking) << '\n';
  for (const Part& part : parts) {
    const std::string taken = std::to_string(part.content.size());
    const bool whole = part.content.size() == part.whole;
    std::cout << (whole ? fill(text::kPackedLine, {part.name, taken})
                        : fill(text::kPackedTail, {part.name, taken, std::to_string(part.whole)}))
              << '\n';
  }
  std::string names;
  for (const std::string& log : leftOut) names += (names.empty() ? "" : ", ") + log;
  if (!names.empty()) std::cout << fill(text::kLeftOut, {std::to_string(kMostLogs), names}) << '\n';
  std::cout << fill(text::kArchiveMade, {name.string(), std::to_string(size)}) << std::endl;
}

ExitCode pack(const Program& program, const ReportOptions& options) {
  const fs::path folder = options.folder;
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    throw Failure(kWrongUsage, fill(text::kNoFolder, {folder.string()}),
                  say(text::kNoFolderRemedy));
  }
  // Before the scales are asked: a name that can't be written is to be told at once.
  const fs::path name = archiveName(options);
  // As long as there is half an archive: it is finished or taken away, whatever happens.
  const Interrupt interrupt;
  SupportArchive archive(name);

  std::vector<Part> parts;
  const bool whole = options.noDoctor || addVerdicts(program, folder, interrupt, parts);
  parts.push_back(facts(program, folder));
  const fs::path settings = settingsFileOf(folder);
  if (fs::is_regular_file(settings, error)) parts.push_back(endOf(settings, kMostOfSettings));
  std::vector<std::string> leftOut;
  std::size_t taken = 0;
  for (const fs::path& log : logsOf(folder)) {
    if (++taken > kMostLogs) {
      leftOut.push_back(log.filename());
    } else {
      parts.push_back(endOfLog(log));
    }
  }

  for (const Part& part : parts) archive.add("orbelo-report/" + part.name, part.content);
  archive.finish();
  tell(name, parts, leftOut, options.format);
  return whole ? kGood : kScaleFailed;
}

}  // namespace

void addReportCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ReportOptions>();
  CLI::App& command = addCommand(app, {.name = "report",
                                       .about = text::kReportAbout,
                                       .example = "weigh report /opt/orbelo --output report.tar.gz",
                                       .notes = &text::kReportNotes});
  command.add_option("folder", options->folder, say(text::kReportFolder))
      ->required()
      ->type_name("DIR");
  command.add_option("--output,-o", options->output, say(text::kReportOutput))->type_name("FILE");
  command.add_flag("--no-doctor", options->noDoctor, say(text::kReportNoDoctor));
  addJsonFlag(command, options->format);
  command.callback([&program, options] {
    program.action = [&program, options] { return pack(program, *options); };
  });
}

}  // namespace weigh
