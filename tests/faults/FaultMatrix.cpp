// Every model over both transports against every fault. Prints what failed; the exit code is 0 if
// nothing did.

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include <CLI/CLI.hpp>

#include "FaultTable.h"
#include "Usage.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Cell {
  const sim::ScaleModel* model;
  sim::Transport transport;
  const Fault* fault;
  std::vector<std::string> failures = {};
  bool wasOnlyLate = false;
};

void run(Cell& cell) {
  cell.failures.clear();
  try {
    Trial trial(*cell.model, cell.transport);
    cell.fault->run(trial);
    trial.poll("poll after the fault", Expected::Right);
    cell.failures = trial.faults();
    cell.wasOnlyLate = trial.wasOnlyLate();
  } catch (const std::exception& error) {
    cell.failures.push_back(error.what());
    cell.wasOnlyLate = false;
  }
}

void runAll(const std::vector<Cell*>& cells, std::size_t threads) {
  std::atomic<std::size_t> next = 0;
  std::vector<std::jthread> pool;
  for (std::size_t i = 0; i < std::min(threads, cells.size()); ++i) {
    pool.emplace_back([&] {
      for (std::size_t own = next++; own < cells.size(); own = next++) run(*cells[own]);
    });
  }
}

std::vector<Cell*> select(std::vector<Cell>& cells, auto wanted) {
  std::vector<Cell*> some;
  for (Cell& cell : cells) {
    if (wanted(cell)) some.push_back(&cell);
  }
  return some;
}

std::string title(const Cell& cell) {
  return "model " + std::to_string(cell.model->number) + ", " +
         (cell.transport == sim::Transport::Tcp ? "TCP" : "serial") + ", " +
         std::string(cell.fault->name);
}

std::vector<Cell> cellsFor(const std::string& wanted) {
  std::vector<Cell> cells;
  for (const Fault& fault : faultTable()) {
    for (const sim::ScaleModel& model : sim::scaleModels()) {
      for (const sim::Transport transport : {sim::Transport::Pty, sim::Transport::Tcp}) {
        if (transport == sim::Transport::Tcp && !model.worksOverTcp()) continue;
        const Cell cell = {&model, transport, &fault};
        if (title(cell).find(wanted) != std::string::npos) cells.push_back(cell);
      }
    }
  }
  return cells;
}

int runMatrix(std::size_t threads, const std::string& wanted) {
  /// A machine that is so busy that more than these are late can't be measured on.
  constexpr std::size_t kMostLate = 40;
  constexpr int kMostRounds = 3;
  constexpr std::size_t kBusyAtATime = 8;
  // The first thread brings the one that a sanitizer's runtime keeps for itself.
  std::thread([] {}).join();
  const auto before = fixture::Usage::now();
  const Clock::time_point begin = Clock::now();

  std::vector<Cell> cells = cellsFor(wanted);
  runAll(select(cells, [](const Cell& cell) { return !cell.fault->busy; }), threads);
  runAll(select(cells, [](const Cell& cell) { return cell.fault->busy; }), kBusyAtATime);
  // Other work on the machine makes every wait longer, so what was only late is measured again by
  // itself. A wrong weight never is.
  std::size_t again = 0;
  for (int round = 0; round < kMostRounds; ++round) {
    const std::vector<Cell*> late =
        select(cells, [](const Cell& cell) { return !cell.failures.empty() && cell.wasOnlyLate; });
    if (late.empty() || late.size() > kMostLate) break;
    again += late.size();
    runAll(late, 1);
  }

  std::size_t failed = 0;
  for (const Cell& cell : cells) {
    if (cell.failures.empty()) continue;
    ++failed;
    std::cout << title(cell) << '\n';
    for (const std::string& failure : cell.failures) std::cout << "    " << failure << '\n';
  }
  const auto after = fixture::Usage::now();
  const bool leaks = after.descriptors != before.descriptors || after.threads != before.threads;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin);
  std::cout << cells.size() - failed << " of " << cells.size() << " cells are good, " << again
            << " were measured again; " << seconds.count() << " s; descriptors "
            << before.descriptors << " -> " << after.descriptors << ", threads " << before.threads
            << " -> " << after.threads << '\n';
  return failed == 0 && !leaks && !cells.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) try {
  std::size_t threads = 48;
  std::string wanted;
  CLI::App app("Every model, over both transports, against every fault of scale and line");
  app.add_option("--threads", threads, "Cells at a time")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_option("cells", wanted, "Only those with this in their name, as \"model 13, TCP\"");
  CLI11_PARSE(app, argc, argv);
  return runMatrix(threads, wanted);
} catch (const std::exception& error) {
  std::cerr << "fault_matrix: " << error.what() << '\n';
  return EXIT_FAILURE;
}
