#include "Sleeper.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fixture {

Sleeper::Sleeper(const std::string& file) {
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, file.c_str(), O_RDWR | O_NOCTTY, 0);
  std::string program = "/bin/sleep";
  std::string time = "60";
  char* const arguments[] = {program.data(), time.data(), nullptr};
  ::posix_spawn(&pid_, program.c_str(), &files, nullptr, arguments, environ);
  ::posix_spawn_file_actions_destroy(&files);
}

Sleeper::~Sleeper() {
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

}  // namespace fixture
