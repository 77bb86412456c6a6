#include "Session.h"

#include <sys/statvfs.h>

#include <cerrno>
#include <fstream>
#include <system_error>

#include "LongWork.h"
#include "SettingsFile.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

template <typename Number>
Number numberAt(const host::CallResult& answer, std::size_t index) {
  const auto* number = std::get_if<Number>(&answer.params.at(index));
  return number == nullptr ? Number{} : *number;
}

[[noreturn]] void giveUpLog(const fs::path& folder, const std::error_code& why) {
  throw Failure(kWrongUsage, say("no exchange log in {0}: {1}", folder.string(), why.message()),
                say("Name a folder that this user may write to."));
}

fs::path absoluteFolder(const fs::path& folder) {
  std::error_code error;
  fs::path absolute = fs::absolute(folder, error);
  if (error) giveUpLog(folder, error);
  return absolute;
}

bool g_logIsWhole = true;

bool isFull(const fs::path& folder) {
  struct statvfs disk = {};
  return ::statvfs(folder.c_str(), &disk) == 0 && disk.f_bavail == 0;
}

std::unique_ptr<host::Component> attach(const fs::path& file) {
  using Reason = host::LoadError::Reason;
  try {
    return std::make_unique<host::Component>(file);
  } catch (const host::LoadError& error) {
    const std::string path = error.path.string();
    if (error.reason == Reason::Missing) {
      throw Failure(kWrongUsage, say("the component isn't there: {0}", path),
                    say("Build it with `cmake --build --preset release`, or name it with "
                        "--component PATH."));
    }
    const std::string what =
        error.reason == Reason::NotLoadable ? say("{0} can't be loaded: {1}", path, error.detail)
        : error.reason == Reason::NoExport
            ? say("{0} is no component: it has no export {1}", path, error.detail)
            : say("the component {0} gives no object: {1} failed", path, error.detail);
    throw Failure(kWrongUsage, what,
                  say("It has to be a component for Linux x86-64; take the one of a fresh build or "
                      "of the bundle."));
  }
}

}  // namespace

LoggingFolder::LoggingFolder(const fs::path& folder) : folder_(absoluteFolder(folder)) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) giveUpLog(folder, error);
  before_ = logsIn(folder_);
  const fs::path marker = folder_ / "log.txt";
  if (fs::exists(marker, error)) return;
  if (!std::ofstream(marker)) giveUpLog(folder, {errno, std::generic_category()});
  ownMarker_ = true;
  Ending::takeAway(marker);
}

LoggingFolder::~LoggingFolder() {
  std::error_code error;
  if (ownMarker_) fs::remove(folder_ / "log.txt", error);
  Ending::takeAway({});
  bool any = false;
  for (const auto& [log, size] : logsIn(folder_)) {
    const auto old = before_.find(log);
    if (size == (old == before_.end() ? 0 : old->second)) continue;
    tell(say("exchange log: {0}", log.string()));
    any = true;
  }
  if (isFull(folder_)) {
    g_logIsWhole = false;
    complain(say("the disk of {0} is full, so the exchange log isn't whole", folder_.string()));
  } else if (!any) {
    tell(say("no exchange log came into {0}", folder_.string()));
  }
}

bool LoggingFolder::isWhole() { return g_logIsWhole; }

LoggingFolder::Sizes LoggingFolder::logsIn(const fs::path& folder) {
  Sizes sizes;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with("log_scales_") || !name.ends_with(".log")) continue;
    if (!fs::is_regular_file(entry.symlink_status(error))) continue;
    const auto size = entry.file_size(error);
    if (!error) sizes.emplace(entry.path(), size);
  }
  return sizes;
}

Session::Session(const fs::path& component, const std::optional<fs::path>& log)
    : log_(log ? std::make_unique<LoggingFolder>(*log) : nullptr), component_(attach(component)) {
  if (!log_) return;
  const fs::path settings = settingsFileOf(log_->path());
  if (fs::exists(settings))
    complain(say("{0} is there, so its scales are loaded too", settings.string()));
  useFolder(log_->path());
}

host::LastError Session::useFolder(const fs::path& folder) {
  component_->call("SetPathDllFolder", {folder.string()});
  return component_->lastError();
}

void Session::setParameters(const Connection& connection) {
  const auto set = [&](const char* name, host::Value value) {
    component_->call("SetParameter", {std::string(name), std::move(value)});
  };
  set("model", connection.model);
  set("conntype", connection.network ? 1 : 0);
  set("conleave", connection.leave);
  set("coeff", connection.coeff);
  set("cport", connection.device);
  set("cbaudrate", connection.baud);
  set("ehost", connection.host);
  set("eport", connection.tcpPort);
}

std::string Session::open(const Connection& connection) {
  setParameters(connection);
  const host::CallResult answer = component_->call("Open");
  const auto* id = std::get_if<std::string>(&answer.params.at(0));
  return id == nullptr ? std::string() : *id;
}

Weighing Session::read(const std::string& id, bool withDetails) {
  const auto start = std::chrono::steady_clock::now();
  const host::CallResult answer =
      component_->call(withDetails ? "GetWeightPriceCost" : "GetWeight", {id});
  Weighing weighing;
  weighing.poll = std::chrono::steady_clock::now() - start;
  weighing.error = component_->lastError();
  weighing.weight = numberAt<double>(answer, 1);
  if (withDetails) {
    weighing.details = {.price = numberAt<double>(answer, 2),
                        .cost = numberAt<double>(answer, 3),
                        .stable = numberAt<std::int32_t>(answer, 4) != 0};
  }
  return weighing;
}

}  // namespace weigh
