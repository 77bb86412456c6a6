// The component as the platform has it: loaded, called through its exports, polled over both
// transports. Cases are named operation/who/size; those that have an aim carry it as a counter.

#include <arpa/inet.h>
#include <fcntl.h>
#include <malloc.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "Component.h"
#include "ExchangeLog.h"
#include "SimulatedScale.h"
#include "Utf16.h"

namespace {

using host::Component;
using host::Value;
using std::chrono::duration;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::int32_t kEmulator = 20;
constexpr std::int32_t kPolledModel = 13;

/// The most that a case may take, in seconds, or hold, in bytes; the table shows both.
void setAim(benchmark::State& state, double aim) { state.counters["aim"] = aim; }

void set(Component& component, const char* parameter, Value value) {
  component.call("SetParameter", {parameter, std::move(value)});
}

/// Opens a scale by what is set and gives its device id.
Value open(Component& component) { return component.call("Open").params.at(0); }

Value openEmulator(Component& component) {
  set(component, "model", kEmulator);
  return open(component);
}

/// Thread time, so that the simulator's thread doesn't count.
duration<double> processorTime() {
  timespec now = {};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

// Loading and memory -----------------------------------------------------------------------------

void load(benchmark::State& state) {
  for (auto _ : state) Component component(host::Library::besideProgram());
  setAim(state, 1e-3);
}

void librarySize(benchmark::State& state, const std::string& stripped) {
  for (auto _ : state) benchmark::DoNotOptimize(state.iterations());
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(stripped));
  setAim(state, 1.5 * (1 << 20));
}

/// What the heap holds more with so many emulators open in one component.
void memory(benchmark::State& state, int scales) {
  const auto inUse = [] {
    const struct mallinfo2 heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
  };
  double most = 0;
  for (auto _ : state) {
    const double before = inUse();
    Component component(host::Library::besideProgram());
    for (int i = 0; i < scales; ++i) openEmulator(component);
    most = std::max(most, inUse() - before);
  }
  state.counters["bytes"] = most;
  setAim(state, 2.0 * (1 << 20));
}

// Calls ------------------------------------------------------------------------------------------

/// A call that is made again and again with variants made once: the host's work on its own texts
/// is none of the component's.
class PreparedCall {
 public:
  PreparedCall(Component& component, const std::string& name, const std::vector<Value>& values)
      : component_(component),
        number_(component.findMethod(name)->number),
        params_(values, component.memory()),
        given_(params_.data(), params_.data() + params_.count()) {}

  /// True if the call was done; what it brought stays until the next.
  bool operator()() {
    takeBack();
    return component_.object().CallAsFunc(number_, result_.data(), params_.data(), params_.count());
  }

  const tVariant& result() { return *result_.data(); }

 private:
  void takeBack() {
    for (std::size_t i = 0; i < given_.size(); ++i) restore(params_.data()[i], given_[i]);
    restore(*result_.data(), tVariant{});
  }

  void restore(tVariant& variant, const tVariant& given) {
    if (variant.vt == kVariantWideString &&
        variant.value.wide.pwstrVal != given.value.wide.pwstrVal) {
      void* text = variant.value.wide.pwstrVal;
      component_.memory().FreeMemory(&text);
    }
    variant = given;
  }

  Component& component_;
  long number_;
  host::Variants params_;
  std::vector<tVariant> given_;
  host::Variants result_{std::array<Value, 1>{}, component_.memory()};
};

/// Methods of a scale are told an id that no scale has: the road there and back without the
/// scale's work.
void dispatch(benchmark::State& state, const std::string& name) {
  Component component(host::Library::besideProgram());
  std::vector<Value> values(static_cast<std::size_t>(component.findMethod(name)->parameters));
  if (!values.empty()) values.front() = "no such scale";
  PreparedCall call(component, name, values);
  for (auto _ : state) call();
  if (name == "GetVersion") setAim(state, 1e-6);
}

void findMethod(benchmark::State& state) {
  Component component(host::Library::besideProgram());
  const auto name = host::toUtf16("ПолучитьВес");
  for (auto _ : state) benchmark::DoNotOptimize(component.object().FindMethod(name.c_str()));
}

void emulatorPoll(benchmark::State& state) {
  Component component(host::Library::besideProgram());
  PreparedCall getWeight(component, "GetWeight", {openEmulator(component), {}});
  for (auto _ : state) getWeight();
  setAim(state, 2e-6);
}

void openAndClose(benchmark::State& state) {
  Component component(host::Library::besideProgram());
  set(component, "model", kEmulator);
  for (auto _ : state) component.call("Close", {open(component)});
}

/// One record of 40 bytes, into a file that swallows it.
void logRecord(benchmark::State& state) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/dev/null", "w"),
                                                             &std::fclose);
  const std::time_t now = std::time(nullptr);
  const std::tm time = *std::localtime(&now);
  const std::vector<std::uint8_t> bytes(40, 0x35);
  for (auto _ : state) {
    writeLogRecord(file.get(), LogRecord::Incoming, time, "/dev/ttyUSB0:9600", bytes);
  }
}

// Polls of a scale that answers at once ----------------------------------------------------------

struct Line {
  const char* name;
  sim::Transport transport;
  bool keepOpen;
  /// What the protocol itself makes a poll wait: 150 ms between the two bytes of its request, and
  /// 100 ms of silence that a drain over TCP must hear.
  milliseconds mandated;
};

constexpr Line kLines[] = {{"pty", sim::Transport::Pty, false, milliseconds{150}},
                           {"pty_kept", sim::Transport::Pty, true, milliseconds{150}},
                           {"tcp", sim::Transport::Tcp, false, milliseconds{250}},
                           {"tcp_kept", sim::Transport::Tcp, true, milliseconds{250}}};

/// The nap of a driver that finds no byte yet. How many of them the scale's thread makes a poll
/// take is chance, so they count as mandated.
constexpr duration<double> kNap = milliseconds{50};

enum class Clock { Processor, WallOverMandated };

void poll(benchmark::State& state, const Line& line, Clock clock) {
  sim::SimulatedScale scale(kPolledModel, line.transport);
  Component component(host::Library::besideProgram());
  set(component, "model", kPolledModel);
  set(component, "conleave", line.keepOpen);
  if (line.transport == sim::Transport::Pty) {
    set(component, "conntype", std::int32_t{0});
    set(component, "cport", scale.devicePath());
    set(component, "cbaudrate", std::int32_t{9600});
  } else {
    set(component, "conntype", std::int32_t{1});
    set(component, "ehost", "127.0.0.1");
    set(component, "eport", std::int32_t{scale.port()});
  }
  PreparedCall getWeight(component, "GetWeight", {open(component), {}});
  getWeight();
  for (auto _ : state) {
    const auto started = steady_clock::now();
    const auto startedWork = processorTime();
    const bool done = getWeight();
    const duration<double> work = processorTime() - startedWork;
    const duration<double> wall = steady_clock::now() - started - line.mandated;
    const duration<double> over{std::fmod(wall.count(), kNap.count())};
    if (!done || !getWeight.result().value.bVal) {
      state.SkipWithError("the simulated scale gives no weight");
    }
    state.SetIterationTime(clock == Clock::Processor ? work.count() : over.count());
  }
  setAim(state, clock == Clock::Processor ? 200e-6 : 2e-3);
}

/// The same exchange over an open line by system calls alone: what the kernel takes of a poll.
void barePoll(benchmark::State& state, const Line& line) {
  sim::SimulatedScale scale(kPolledModel, line.transport);
  const bool serial = line.transport == sim::Transport::Pty;
  const int fd = serial ? ::open(scale.devicePath().c_str(), O_RDWR | O_NOCTTY)
                        : ::socket(AF_INET, SOCK_STREAM, 0);
  if (serial) {
    termios raw = {};
    ::cfmakeraw(&raw);
    raw.c_cc[VMIN] = 0;
    ::tcsetattr(fd, TCSANOW, &raw);
  } else {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(scale.port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      state.SkipWithError("the simulated scale can't be reached");
    }
  }
  std::array<char, 4096> bytes;
  const auto readSilence = [&] {
    pollfd silent = {fd, POLLIN, 0};
    while (::poll(&silent, 1, serial ? 0 : 50) > 0) (void)!::read(fd, bytes.data(), bytes.size());
  };
  for (auto _ : state) {
    const duration<double> started = processorTime();
    for (int half = 0; half < (serial ? 1 : 2); ++half) readSilence();
    (void)!::write(fd, "\5", 1);
    const timespec pause = {0, 150'000'000};
    ::nanosleep(&pause, nullptr);
    (void)!::write(fd, "\21", 1);
    pollfd answer = {fd, POLLIN, 0};
    if (!serial) ::poll(&answer, 1, 100);
    const timespec nap = {0, 50'000'000};
    while (::read(fd, bytes.data(), 1) == 0) ::nanosleep(&nap, nullptr);
    (void)!::read(fd, bytes.data(), bytes.size());
    state.SetIterationTime((processorTime() - started).count());
  }
  ::close(fd);
}

void enlist(const std::string& stripped) {
  const auto add = [](const std::string& name, auto run) {
    return benchmark::RegisterBenchmark((name + "/0").c_str(), run);
  };
  add("load/ours", load);
  add("size/ours", [stripped](benchmark::State& state) {
    librarySize(state, stripped);
  })->Iterations(1);
  for (const int scales : {1, 100}) {
    benchmark::RegisterBenchmark(("memory/ours/" + std::to_string(scales)).c_str(), memory, scales)
        ->Iterations(3);
  }
  add("FindMethod/ours", findMethod);
  for (const host::Method& method : Component(host::Library::besideProgram()).methods()) {
    add("call_" + method.name + "/ours",
        [name = method.name](benchmark::State& state) { dispatch(state, name); });
  }
  add("poll_emulator/ours", emulatorPoll);
  add("open_close/ours", openAndClose);
  add("log_record/ours", logRecord);
  for (const Line& line : kLines) {
    for (const auto& [suffix, clock] :
         {std::pair{"_cpu", Clock::Processor}, std::pair{"_wall", Clock::WallOverMandated}}) {
      add(std::string("poll_") + line.name + suffix + "/ours",
          [&line, clock = clock](benchmark::State& state) { poll(state, line, clock); })
          ->UseManualTime()
          ->Iterations(20);
    }
    if (!line.keepOpen) continue;
    add(std::string("poll_") + line.name + "_cpu/bare",
        [&line](benchmark::State& state) { barePoll(state, line); })
        ->UseManualTime()
        ->Iterations(20);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: component_bench [--benchmark_...] STRIPPED_LIBRARY\n");
    return 2;
  }
  enlist(argv[1]);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
