#include "Player.h"

#include <fmt/chrono.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Console.h"
#include "Endpoint.h"
#include "Messages.h"
#include "ModelSheet.h"
#include "ReplayLine.h"
#include "ScaleLine.h"
#include "SettingsEntry.h"
#include "SimulationLoop.h"
#include "Text.h"

namespace {

constexpr const char* kHost = "127.0.0.1";
/// Added to the model number for the device id of a network scale.
constexpr int kNetworkIds = 100;
constexpr int kUsualSpeed = 9600;
constexpr const char* kNoCorrection = "1.000";

std::string timeOfDay() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const auto milliseconds =
      duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) % seconds{1};
  return fmt::format("{:%H:%M:%S}.{:03}", fmt::localtime(system_clock::to_time_t(now)),
                     milliseconds.count());
}

/// The settings.xml of a simulation in its folder, removed at the end.
class SettingsFile {
 public:
  SettingsFile(const std::filesystem::path& folder, const std::vector<SettingsEntry>& entries)
      : path_(folder / kSettingsFile) {
    // By its root a file of ours is known again.
    static constexpr std::string_view kRoot = "SCALESIM";
    if (entries.size() > kMostSettingsEntries) throw std::runtime_error("more than 100 scales");
    if (std::ifstream old(path_); old) {
      const std::string text{std::istreambuf_iterator<char>(old), {}};
      if (text.find(fmt::format("<{}>", kRoot)) == std::string::npos)
        throw Failure(kFailed, say("{0} was not written by scalesim and stays as it is; choose "
                                   "another folder",
                                   path_.string()));
    }
    // By way of a second name, so that whoever waits for the file finds it whole.
    const std::filesystem::path fresh = folder / fmt::format(".scalesim-{}", ::getpid());
    if (!(std::ofstream(fresh) << settingsDocument(kRoot, entries) << std::flush)) {
      const int reason = errno;
      ::unlink(fresh.c_str());
      throw std::system_error(reason, std::generic_category(), path_.string());
    }
    std::filesystem::rename(fresh, path_);
  }
  ~SettingsFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Writes what goes over a line to standard error.
sim::Observer tellBytes(const std::string& name) {
  return [name](sim::Direction direction, std::span<const std::uint8_t> bytes) {
    tell(timeOfDay() + "  " + name + (direction == sim::Direction::Received ? "  <-  " : "  ->  ") +
         hexText(bytes));
  };
}

sim::ScaleLine& addLine(sim::SimulationLoop& loop, const Options& options,
                        const sim::ScaleModel& model, std::unique_ptr<sim::Endpoint> endpoint) {
  sim::ScaleLine& line = loop.add(std::make_unique<sim::ScaleLine>(
      sim::Scale(model, options.stateOf(model)), std::move(endpoint), options.faults));
  if (options.verbose) line.setObserver(tellBytes(std::to_string(model.number)));
  return line;
}

/// Ends the loop at the first SIGINT, SIGTERM or SIGHUP, in good order; the second one ends the
/// program at once, whatever it waits for.
class EndSignals {
 public:
  explicit EndSignals(sim::SimulationLoop& loop) {
    loop_ = &loop;
    struct sigaction action = {};
    action.sa_handler = [](int) {
      const int keep = errno;
      loop_->stop();
      errno = keep;
    };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
  }
  ~EndSignals() {
    for (const int signal : kSignals) std::signal(signal, SIG_DFL);
  }
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
  static inline sim::SimulationLoop* loop_ = nullptr;
};

void runUntilTold(sim::SimulationLoop& loop, const std::vector<sim::ScaleLine*>& lines) {
  Console console(lines, std::cerr, ::isatty(STDIN_FILENO) == 1);
  // In the background a terminal would stop the process that reads from it.
  std::signal(SIGTTIN, SIG_IGN);
  loop.watch(STDIN_FILENO, [&] {
    std::array<char, 4096> input = {};
    const ssize_t got = ::read(STDIN_FILENO, input.data(), input.size());
    if (got > 0) {
      console.feed({input.data(), static_cast<std::size_t>(got)});
    } else {
      loop.unwatch(STDIN_FILENO);
      console.end();
    }
    if (console.quit()) loop.stop();
  });
  loop.run();
  complain(say("stopped"));
}

std::unique_ptr<sim::Endpoint> serialEnd(const std::string& link, const Options& options,
                                         const sim::ScaleModel* model) {
  auto pty = std::make_unique<sim::PtyEndpoint>(link);
  if (options.baud != 0) pty->setLineEnd({options.baud, model->line});
  return pty;
}

std::unique_ptr<sim::Endpoint> endpointOf(const Options& options) {
  if (options.tcp) return std::make_unique<sim::TcpEndpoint>(*options.tcp);
  return serialEnd(options.port, options, options.model);
}

void playOne(sim::SimulationLoop& loop, const Options& options) {
  const sim::ScaleModel& model = *options.model;
  if (options.tcp && !model.worksOverTcp())
    complain(say("the component can't read model {0} over TCP: {1}", model.number,
                 translated(model.noTcp)));
  sim::ScaleLine& line = addLine(loop, options, model, endpointOf(options));
  const std::string address = line.endpoint().address();
  printRaw(address + "\n");
  complain(say("model {0}, {1}, at {2}; \"help\" lists the commands, Ctrl-C ends it", model.number,
               displayText(model, model.display(line.scale().state())), address));
  runUntilTold(loop, {&line});
}

std::vector<exchange::Turn> turnsIn(const std::string& log) {
  std::ifstream stream(log, std::ios::binary);
  std::vector<exchange::Turn> turns = exchange::turnsOf(exchange::readLog(stream));
  if (turns.empty())
    throw Failure(kFailed, say("{0} can't be read, or has nothing that a scale sent", log));
  return turns;
}

void replay(sim::SimulationLoop& loop, const Options& options) {
  std::vector<exchange::Turn> turns = turnsIn(options.log);
  const std::size_t count = turns.size();
  sim::ReplayLine& line =
      loop.add(std::make_unique<sim::ReplayLine>(std::move(turns), endpointOf(options)));
  line.setStranger([](const sim::Bytes& came, const sim::Bytes& recorded) {
    complain(say("the host sent {0}, in the record it was {1}", hexText(came), hexText(recorded)));
  });
  if (options.verbose) line.setObserver(tellBytes(options.log));
  const std::string address = line.endpoint().address();
  printRaw(address + "\n");
  complain(sayCount("{1}, {0} turn, at {2}; Ctrl-C ends it",
                    "{1}, {0} turns, at {2}; Ctrl-C ends it", count, options.log, address));
  runUntilTold(loop, {});
}

std::string remedyFor(const std::error_code& code) {
  if (code == std::errc::address_in_use)
    return say("Choose another port, or --tcp for any that is free.");
  if (code == std::errc::device_or_resource_busy)
    return say("Another scalesim plays under this name; choose another.");
  if (code == std::errc::file_exists)
    return say("The name is taken by something that scalesim didn't make; choose another.");
  if (code == std::errc::no_such_file_or_directory) return say("Make the folder first.");
  if (code == std::errc::permission_denied)
    return say(
        "Check the permissions (ports below 1024 are for root), or choose another name or "
        "port.");
  return {};
}

void playAll(sim::SimulationLoop& loop, const Options& options) {
  constexpr std::size_t kLongestPortName = 255;
  const std::filesystem::path folder = std::filesystem::absolute(options.folder).lexically_normal();
  std::filesystem::create_directories(folder);
  std::vector<SettingsEntry> entries;
  std::vector<sim::ScaleLine*> lines;
  const auto add = [&](const sim::ScaleModel& model, std::unique_ptr<sim::Endpoint> endpoint,
                       SettingsEntry entry) {
    lines.push_back(&addLine(loop, options, model, std::move(endpoint)));
    entry.model = model.number;
    entry.coefficient = kNoCorrection;
    entries.push_back(std::move(entry));
  };
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    const std::string link = folder / std::to_string(model.number);
    if (link.size() > kLongestPortName) {
      throw Failure(kFailed,
                    say("{0} is longer than the 255 bytes that a port's name may have; choose "
                        "another folder",
                        link));
    }
    add(model, serialEnd(link, options, &model),
        {.number = model.number, .isComPort = 1, .baudRate = kUsualSpeed, .comPortName = link});
  }
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    if (!model.worksOverTcp()) continue;
    auto tcp = std::make_unique<sim::TcpEndpoint>();
    const int port = tcp->port();
    add(model, std::move(tcp),
        {.number = model.number + kNetworkIds, .tcpPort = port, .host = kHost});
  }
  const SettingsFile settings(folder, entries);
  std::string list = settings.path().string() + "\n";
  for (const SettingsEntry& entry : entries) {
    const std::string port = entry.isSerial() ? "" : ":" + std::to_string(entry.tcpPort);
    list += fmt::format("{}\t{}\t{}{}\n", entry.id(), entry.model, entry.port(), port);
  }
  printRaw(list);
  complain(sayCount("{0} scale; \"13: 1.250\" sets one, \"1.250\" all, Ctrl-C ends it",
                    "{0} scales; \"13: 1.250\" sets one, \"1.250\" all, Ctrl-C ends it",
                    entries.size()));
  runUntilTold(loop, lines);
}

}  // namespace

void play(const Options& options) try {
  sim::SimulationLoop loop;
  // Before anything is made that is to be removed at the end.
  const EndSignals signals(loop);
  switch (options.task) {
    case Options::Task::PlayAll: playAll(loop, options); break;
    case Options::Task::Replay: replay(loop, options); break;
    default: playOne(loop, options); break;
  }
} catch (const std::system_error& error) {
  throw Failure(kFailed, error.what(), remedyFor(error.code()));
}
