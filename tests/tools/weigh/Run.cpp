#include "Run.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "FileDescriptor.h"

namespace {

std::string readAll(int file) {
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t got = 0; (got = ::read(file, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return text;
}

ProgramRun run(const Arguments& arguments, int signal) {
  Arguments words = Arguments{WEIGH_PROGRAM, "--lang", "en"} + arguments;
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  std::array<int, 2> out = {};
  if (::pipe2(out.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const sim::FileDescriptor output(out[0]);
  sim::FileDescriptor outputEnd(out[1]);
  // What goes to standard error may be longer than a pipe holds while nobody reads it.
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> errors(std::tmpfile(), &std::fclose);
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_adddup2(&files, outputEnd.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&files, ::fileno(errors.get()), STDERR_FILENO);
  pid_t pid = 0;
  const int failed = ::posix_spawn(&pid, WEIGH_PROGRAM, &files, nullptr, argv.data(), environ);
  ::posix_spawn_file_actions_destroy(&files);
  if (failed != 0) throw std::runtime_error("weigh can't be started");
  outputEnd.reset();

  ProgramRun result{};
  if (signal != 0) {
    char c = 0;
    while (c != '\n' && ::read(output.get(), &c, 1) == 1) result.out += c;
    ::kill(pid, signal);
  }
  result.out += readAll(output.get());
  int status = 0;
  ::waitpid(pid, &status, 0);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::rewind(errors.get());
  result.err = readAll(::fileno(errors.get()));
  return result;
}

}  // namespace

std::vector<nlohmann::json> ProgramRun::records() const {
  std::vector<nlohmann::json> records;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) records.push_back(nlohmann::json::parse(line));
  return records;
}

ProgramRun weigh(const Arguments& arguments) { return run(arguments, 0); }

ProgramRun weighUntil(int signal, const Arguments& arguments) { return run(arguments, signal); }

Arguments operator+(Arguments first, const Arguments& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Arguments optionsOf(const sim::SimulatedScale& scale) {
  const std::string model = std::to_string(scale.model().number);
  if (scale.port() == 0) return {"--model", model, "--port", scale.devicePath(), "--baud", "9600"};
  return {"--model", model, "--host", "127.0.0.1", "--tcp-port", std::to_string(scale.port())};
}
