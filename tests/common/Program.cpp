#include "Program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace fixture {

namespace {

struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

Pipe makePipe() {
  std::array<int, 2> ends = {};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throwErrno("pipe2");
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

std::string readAll(int fd) {
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t got = 0; (got = ::read(fd, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return text;
}

}  // namespace

Program::Program(std::vector<std::string> commandLine, Errors errors)
    : errors_(std::tmpfile(), &std::fclose) {
  std::vector<char*> argv;
  for (std::string& word : commandLine) argv.push_back(word.data());
  argv.push_back(nullptr);
  Pipe in = makePipe();
  Pipe out = makePipe();
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_adddup2(&files, in.readEnd.get(), STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&files, out.writeEnd.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(
      &files, errors == Errors::Apart ? ::fileno(errors_.get()) : out.writeEnd.get(),
      STDERR_FILENO);
  const int failed = ::posix_spawnp(&pid_, argv[0], &files, nullptr, argv.data(), environ);
  ::posix_spawn_file_actions_destroy(&files);
  if (failed != 0) throw std::runtime_error(commandLine[0] + " can't be started");
  input_ = std::move(in.writeEnd);
  output_ = std::move(out.readEnd);
}

Program::~Program() {
  if (pid_ == 0) return;
  signal(SIGKILL);
  end();
}

void Program::say(const std::string& text) const {
  if (::write(input_.get(), text.data(), text.size()) < 0) throwErrno("write");
}

void Program::signal(int number) const { ::kill(pid_, number); }

std::string Program::line() const {
  std::string text;
  for (char c = 0; ::read(output_.get(), &c, 1) == 1 && c != '\n';) text += c;
  return text;
}

std::string Program::rest() const { return readAll(output_.get()); }

int Program::end() {
  int status = 0;
  ::waitpid(pid_, &status, 0);
  pid_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Program::errors() const {
  std::rewind(errors_.get());
  return readAll(::fileno(errors_.get()));
}

}  // namespace fixture
