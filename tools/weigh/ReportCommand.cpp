#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>

#include "DeviceAccess.h"
#include "Doctor.h"
#include "Holders.h"
#include "Text.h"

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

/// A .tar.gz that is there when it is whole: until `finish` it grows under another name, and
/// without it nothing is left. All of these throw Failure where the file can't be written.
class Archive {
 public:
  explicit Archive(fs::path file)
      : file_(std::move(file)), part_(file_.string() + ".part"), writer_(::archive_write_new()) {
    // A name that is there already, a link too, is somebody else's.
    descriptor_ = ::open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (descriptor_ < 0) giveUp(part_, std::strerror(errno));
    Ending::takeAway(part_);
    require(::archive_write_add_filter_gzip(writer_.get()));
    // Takes names as they are; others want to convert them, which the locale C can't.
    require(::archive_write_set_format_gnutar(writer_.get()));
    require(::archive_write_open_fd(writer_.get(), descriptor_));
  }
  ~Archive() {
    writer_.reset();
    ::close(descriptor_);
    std::error_code error;
    if (!finished_) fs::remove(part_, error);
    Ending::takeAway({});
  }
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  /// Adds a file with this content; only its owner may read it when it is unpacked.
  void add(const std::string& name, std::string_view content) {
    const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(::archive_entry_new(),
                                                                         &::archive_entry_free);
    ::archive_entry_set_pathname(entry.get(), name.c_str());
    ::archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.size()));
    ::archive_entry_set_filetype(entry.get(), AE_IFREG);
    ::archive_entry_set_perm(entry.get(), 0600);
    ::archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
    require(::archive_write_header(writer_.get(), entry.get()));
    require(::archive_write_data(writer_.get(), content.data(), content.size()));
  }

  void finish() {
    require(::archive_write_close(writer_.get()));
    // By its number: the programs run with a libc that has no name for it, too.
    if (::syscall(SYS_renameat2, AT_FDCWD, part_.c_str(), AT_FDCWD, file_.c_str(),
                  RENAME_NOREPLACE) != 0)
      giveUp(file_, std::strerror(errno));
    finished_ = true;
  }

 private:
  struct Free {
    void operator()(archive* writer) const { ::archive_write_free(writer); }
  };

  [[noreturn]] static void giveUp(const fs::path& file, const std::string& why) {
    throw Failure(kWrongUsage, say("{0} can't be written: {1}", file.string(), why),
                  say("Give a name in a folder that this user may write to with --output."));
  }

  /// What libarchive answers; it also warns, of what would be missing then.
  void require(la_ssize_t result) {
    if (result >= ARCHIVE_OK) return;
    const char* why = ::archive_error_string(writer_.get());
    giveUp(file_, why == nullptr ? "" : why);
  }

  fs::path file_;
  fs::path part_;
  int descriptor_;
  bool finished_ = false;
  std::unique_ptr<archive, Free> writer_;
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

/// The exchange logs of a folder, the newest first.
std::vector<fs::path> logsOf(const fs::path& folder) {
  std::vector<std::pair<fs::file_time_type, fs::path>> logs;
  std::error_code error;
  for (const auto& [log, size] : LoggingFolder::logsIn(folder))
    logs.emplace_back(fs::last_write_time(log, error), log);
  std::ranges::sort(logs, std::ranges::greater{});
  std::vector<fs::path> files;
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
          {"kernel", fmt::format("{} {} {}", kernel.sysname, kernel.release, kernel.machine)},
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
bool addVerdicts(const Program& program, const fs::path& folder, std::vector<Part>& parts) {
  std::string forPeople;
  std::string forPrograms;
  bool whole = true;
  try {
    whole = diagnoseAll(scalesOf(folder), program.component,
                        [&](const NamedScale& scale, const Diagnosis& diagnosis) {
                          forPeople += diagnosisText(scale, diagnosis) + '\n';
                          forPrograms += recordLine(diagnosisRecord(scale, diagnosis));
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
  if (fs::exists(fs::symlink_status(name, error))) {
    throw Failure(kWrongUsage, say("{0} is there already", name.string()),
                  say("Give another name with --output."));
  }
  return name;
}

void tellWhatIsPacked(const fs::path& name, const std::vector<Part>& parts,
                      const std::vector<std::string>& leftOut, Format format) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(name, error);
  Json packed = Json::array();
  std::string text = say("Packed:") + '\n';
  for (const Part& part : parts) {
    const std::size_t taken = part.content.size();
    packed.push_back({{"name", part.name}, {"bytes", taken}, {"of_bytes", part.whole}});
    text += "  " + part.name + "  " +
            (taken == part.whole ? sayCount("{0} byte", "{0} bytes", taken)
                                 : say("the last {0} of {1} bytes", taken, part.whole)) +
            '\n';
  }
  if (!leftOut.empty())
    text += say("Left out, older than the {0} newest logs: {1}", kMostLogs, joined(leftOut)) + '\n';
  RecordWriter(format).write(
      {{"archive", name.string()}, {"bytes", size}, {"packed", packed}, {"left_out", leftOut}},
      text + name.string() + ", " + sayCount("{0} byte", "{0} bytes", size));
}

ExitCode pack(const Program& program, const ReportOptions& options) {
  const fs::path folder = options.folder;
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    throw Failure(kWrongUsage, say("there is no folder {0}", folder.string()),
                  say("Name the component's folder."));
  }
  // Before the scales are asked: a name that can't be written is to be told at once.
  const fs::path name = archiveName(options);
  Archive archive(name);

  std::vector<Part> parts;
  const bool whole = options.noDoctor || addVerdicts(program, folder, parts);
  parts.push_back(facts(program, folder));
  const fs::path settings = settingsFileOf(folder);
  if (fs::is_regular_file(settings, error)) parts.push_back(endOf(settings, kMostOfSettings));
  std::vector<std::string> leftOut;
  std::size_t taken = 0;
  for (const fs::path& log : logsOf(folder)) {
    if (++taken > kMostLogs) {
      leftOut.push_back(log.filename());
    } else {
      parts.push_back(endOf(log, kMostOfLog));
      parts.back().name.insert(0, "logs/");
    }
  }

  for (const Part& part : parts) archive.add("orbelo-report/" + part.name, part.content);
  archive.finish();
  tellWhatIsPacked(name, parts, leftOut, options.format);
  return whole ? kGood : kFailed;
}

}  // namespace

void addReportCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<ReportOptions>();
  CLI::App& command = addCommand(
      app, "report", say("Pack what support needs to know into one archive"),
      "weigh report /opt/orbelo --output report.tar.gz",
      say("Packs the doctor's verdict on each scale, settings.xml, the last part of each exchange "
          "log, facts about serial ports and system, and versions; it lists what it packs and "
          "takes "
          "nothing else.\n"
          "Exit codes: 0 packed; 1 stopped before every scale was looked at, and packed without; 2 "
          "wrong usage, or the archive can't be written."));
  addText(command, "folder", options->folder, say("Component folder"))
      ->required()
      ->type_name("DIR");
  addText(command, "--output,-o", options->output,
          say("The archive to make (default: orbelo-report-TIME.tar.gz in the working folder)"))
      ->type_name("FILE");
  command.add_flag("--no-doctor", options->noDoctor, say("Ask no scale, pack the rest"));
  addJsonFlag(command, options->format);
  setAction(command, program, options, pack);
}

}  // namespace weigh
