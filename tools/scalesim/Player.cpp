#include "Player.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

#include "Console.h"
#include "Endpoint.h"
#include "ModelSheet.h"
#include "ReplayLine.h"
#include "ScaleLine.h"
#include "SettingsFile.h"
#include "SimulationLoop.h"
#include "Texts.h"

namespace {

constexpr const char* kHost = "127.0.0.1";
/// Added to the model number for the device id of a network scale.
constexpr int kNetworkIds = 100;
constexpr int kUsualSpeed = 9600;
constexpr const char* kNoCorrection = "1.000";

std::string timeOfDay() {
  timespec now = {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  tm parts = {};
  ::localtime_r(&now.tv_sec, &parts);
  std::array<char, 32> text = {};
  std::strftime(text.data(), text.size(), "%H:%M:%S", &parts);
  constexpr long kNanosecondsInMillisecond = 1'000'000;
  const std::string ms = std::to_string(now.tv_nsec / kNanosecondsInMillisecond);
  return text.data() + ("." + std::string(3 - ms.size(), '0')) + ms;
}

/// Writes what goes over a line to standard error.
sim::Observer tellBytes(const std::string& name) {
  return [name](sim::Direction direction, std::span<const std::uint8_t> bytes) {
    std::cerr << timeOfDay() << "  " << name
              << (direction == sim::Direction::Received ? "  <-  " : "  ->  ") << hexText(bytes)
              << std::endl;
  };
}

sim::ScaleLine& addLine(sim::SimulationLoop& loop, const Options& options,
                        const sim::ScaleModel& model, std::unique_ptr<sim::Endpoint> endpoint) {
  sim::ScaleLine& line = loop.add(std::make_unique<sim::ScaleLine>(
      sim::Scale(model, options.stateOf(model)), std::move(endpoint), options.faults));
  if (options.verbose) line.setObserver(tellBytes(std::to_string(model.number)));
  return line;
}

/// A descriptor that becomes readable when the process is asked to end.
sim::FileDescriptor endSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaddset(&signals, signal);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  sim::FileDescriptor descriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
  if (!descriptor) throw std::system_error(errno, std::generic_category(), "signalfd");
  return descriptor;
}

void runUntilTold(sim::SimulationLoop& loop, const std::vector<sim::ScaleLine*>& lines) {
  Console console(lines, std::cerr, ::isatty(STDIN_FILENO) == 1);
  // In the background a terminal would stop the process that reads from it.
  std::signal(SIGTTIN, SIG_IGN);
  loop.watch(STDIN_FILENO, [&] {
    std::array<char, 4096> input = {};
    const ssize_t got = ::read(STDIN_FILENO, input.data(), input.size());
    if (got <= 0) {
      loop.unwatch(STDIN_FILENO);
      return;
    }
    console.feed({input.data(), static_cast<std::size_t>(got)});
    if (console.quit()) loop.stop();
  });
  const sim::FileDescriptor signals = endSignals();
  loop.watch(signals.get(), [&] { loop.stop(); });
  loop.run();
  std::cerr << say(texts::kStopped) << std::endl;
}

void playOne(const Options& options) {
  const sim::ScaleModel& model = *options.model;
  std::unique_ptr<sim::Endpoint> endpoint;
  if (options.tcp) {
    if (!model.worksOverTcp()) {
      std::cerr << fill(texts::kNoTcpWarning, {std::to_string(model.number), model.noTcp})
                << std::endl;
    }
    endpoint = std::make_unique<sim::TcpEndpoint>(*options.tcp);
  } else {
    auto pty = std::make_unique<sim::PtyEndpoint>(options.link);
    if (options.speed != 0) pty->setLineEnd({options.speed, model.line});
    endpoint = std::move(pty);
  }
  sim::SimulationLoop loop;
  sim::ScaleLine& line = addLine(loop, options, model, std::move(endpoint));
  const std::string address = line.endpoint().address();
  std::cout << address << std::endl;
  std::cerr << fill(texts::kStarted, {std::to_string(model.number),
                                      displayText(model.display(line.scale().state())), address})
            << std::endl;
  runUntilTold(loop, {&line});
}

std::vector<exchange::Turn> turnsIn(const std::string& log) {
  std::ifstream stream(log, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  std::vector<exchange::Turn> turns = exchange::turnsOf(exchange::readLog(content.str()));
  if (turns.empty()) throw std::runtime_error(fill(texts::kNoReplay, {log}));
  return turns;
}

void replay(const Options& options) {
  std::vector<exchange::Turn> turns = turnsIn(options.log);
  const std::string count = std::to_string(turns.size());
  std::unique_ptr<sim::Endpoint> endpoint;
  if (options.tcp) {
    endpoint = std::make_unique<sim::TcpEndpoint>(*options.tcp);
  } else {
    endpoint = std::make_unique<sim::PtyEndpoint>(options.link);
  }
  sim::SimulationLoop loop;
  sim::ReplayLine& line =
      loop.add(std::make_unique<sim::ReplayLine>(std::move(turns), std::move(endpoint)));
  line.setStranger([](const sim::Bytes& came, const sim::Bytes& recorded) {
    std::cerr << fill(texts::kStranger, {hexText(came), hexText(recorded)}) << std::endl;
  });
  if (options.verbose) line.setObserver(tellBytes(options.log));
  const std::string address = line.endpoint().address();
  std::cout << address << std::endl;
  std::cerr << fill(texts::kStartedReplay, {options.log, count, address}) << std::endl;
  runUntilTold(loop, {});
}

void playAll(const Options& options) {
  constexpr std::size_t kLongestPortName = 255;
  const std::filesystem::path folder = std::filesystem::absolute(options.folder).lexically_normal();
  std::filesystem::create_directories(folder);
  refuseForeignSettings(folder);
  sim::SimulationLoop loop;
  std::vector<SettingsEntry> entries;
  std::vector<sim::ScaleLine*> lines;
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    const std::filesystem::path link = folder / std::to_string(model.number);
    if (link.string().size() > kLongestPortName) {
      throw std::runtime_error(fill(texts::kPathTooLong, {link.string()}));
    }
    auto pty = std::make_unique<sim::PtyEndpoint>(link);
    if (options.speed != 0) pty->setLineEnd({options.speed, model.line});
    lines.push_back(&addLine(loop, options, model, std::move(pty)));
    entries.push_back({.number = model.number,
                       .model = model.number,
                       .isComPort = 1,
                       .baudRate = kUsualSpeed,
                       .comPortName = link.string(),
                       .coefficient = kNoCorrection});
  }
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    if (!model.worksOverTcp()) continue;
    auto tcp = std::make_unique<sim::TcpEndpoint>();
    entries.push_back({.number = model.number + kNetworkIds,
                       .model = model.number,
                       .tcpPort = tcp->port(),
                       .host = kHost,
                       .coefficient = kNoCorrection});
    lines.push_back(&addLine(loop, options, model, std::move(tcp)));
  }
  const SettingsFile settings(folder, entries);
  std::cout << settings.path().string() << std::endl;
  for (const SettingsEntry& entry : entries) {
    std::cout << entry.id() << "\t" << entry.model << "\t" << entry.port();
    if (!entry.isSerial()) std::cout << ":" << entry.tcpPort;
    std::cout << "\n";
  }
  std::cout << std::flush;
  std::cerr << fill(texts::kStartedAll, {std::to_string(entries.size())}) << std::endl;
  runUntilTold(loop, lines);
}

}  // namespace

void play(const Options& options) {
  switch (options.task) {
    case Options::Task::PlayAll: playAll(options); break;
    case Options::Task::Replay: replay(options); break;
    default: playOne(options); break;
  }
}
