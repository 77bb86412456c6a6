// The program itself: what it prints, what it leaves behind, how it ends.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Endpoint.h"
#include "Host.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int kGood = 0;
constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;

/// A running scalesim with pipes at its input and output.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SCALESIM_PROGRAM);
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::array<int, 2> in = {};
    std::array<int, 2> out = {};
    EXPECT_EQ(::pipe2(in.data(), O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(out.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, in[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&files, out[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&files, out[1], STDERR_FILENO);
    EXPECT_EQ(::posix_spawn(&pid_, SCALESIM_PROGRAM, &files, nullptr, argv.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&files);
    ::close(in[0]);
    ::close(out[1]);
    input_ = sim::FileDescriptor(in[1]);
    output_ = sim::FileDescriptor(out[0]);
  }
  ~Program() {
    if (pid_ > 0) {
      ::kill(pid_, SIGKILL);
      end();
    }
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void say(const std::string& text) const {
    EXPECT_EQ(::write(input_.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void closeInput() { input_.reset(); }
  void signal(int number) const { ::kill(pid_, number); }

  std::string line() const {
    std::string text;
    for (char c = 0; ::read(output_.get(), &c, 1) == 1 && c != '\n';) text += c;
    return text;
  }
  std::string rest() const {
    std::string text;
    for (char c = 0; ::read(output_.get(), &c, 1) == 1;) text += c;
    return text;
  }
  /// Waits for the end; the exit code, or -1 for an end by a signal.
  int end() {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t pid_ = 0;
  sim::FileDescriptor input_;
  sim::FileDescriptor output_;
};

TEST(Program, PlaysOnALinkUntilToldToQuit) {
  const sim::TemporaryDirectory folder;
  const std::string link = folder.path() / "scale";
  Program program({"13", "--link", link, "--weight", "2.5", "--lang", "en"});
  EXPECT_EQ(program.line(), link);
  {
    const Host host(link);
    host.say({0x05, 0x11});
    const sim::Bytes frame = host.hear(16);
    EXPECT_THAT(std::string(frame.begin(), frame.end()), HasSubstr("2.500kg"));
  }
  program.say("quit\n");
  EXPECT_EQ(program.end(), kGood);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Program, PlaysOnATcpPortAndLivesOnWhenItsInputEnds) {
  Program program({"13", "--tcp", "--lang", "en"});
  program.closeInput();
  const std::string address = program.line();
  ASSERT_THAT(address, StartsWith("127.0.0.1:"));
  const Host host(std::stoi(address.substr(address.find(':') + 1)));
  host.say({0x05, 0x11});
  EXPECT_EQ(host.hear(16).size(), 16U);
  program.signal(SIGINT);
  EXPECT_EQ(program.end(), kGood);
}

TEST(Program, ReplaysALogTurnByTurnAndTellsOfAStranger) {
  // Asked once without an answer, then answered; and asked again.
  Program program({"--replay", EXCHANGES "/13-serial-silent-once.log", "--tcp", "--lang", "en"});
  const std::string address = program.line();
  {
    const Host host(std::stoi(address.substr(address.find(':') + 1)));
    host.say({0x05, 0x11});
    host.say({0x05, 0x12});
    const sim::Bytes frame = host.hear(16);
    EXPECT_THAT(std::string(frame.begin(), frame.end()), HasSubstr("1.250kg"));
  }
  program.signal(SIGTERM);
  const std::string told = program.rest();
  EXPECT_THAT(told, HasSubstr("1 turns"));
  EXPECT_THAT(told, HasSubstr("sent 05 11 05 12, in the record it was 05 11 05 11"));
  EXPECT_EQ(program.end(), kGood);
}

TEST(Program, PlaysAllAndCleansUp) {
  const sim::TemporaryDirectory folder;
  const auto inside = folder.path() / "all";
  {
    Program program({"--all", inside, "--lang", "en", "--weight", "3"});
    EXPECT_EQ(program.line(), (inside / "settings.xml").string());
    EXPECT_EQ(program.line(), "0\t0\t" + (inside / "0").string());
    EXPECT_TRUE(std::filesystem::exists(inside / "settings.xml"));
    const Host host(inside / "37");
    host.say({'W', '\r'});
    EXPECT_EQ(host.hear(12).size(), 12U);
    program.signal(SIGTERM);
    EXPECT_THAT(program.rest(), HasSubstr("68 scales"));
    EXPECT_EQ(program.end(), kGood);
  }
  EXPECT_TRUE(std::filesystem::is_empty(inside));
}

TEST(Program, TellsWhatWentWrong) {
  const sim::TemporaryDirectory folder;
  const sim::TcpEndpoint taken;
  struct Wrong {
    std::vector<std::string> arguments;
    int code;
    const char* message;
  };
  const Wrong cases[] = {
      {{"13", "--price", "1"}, kWrongUsage, "See scalesim --help"},
      {{"13", "--tcp", std::to_string(taken.port())}, kFailure, "Choose another port"},
      {{"13", "--link", folder.path()}, kFailure, "something that is no link"},
      {{"13", "--link", folder.path() / "no" / "link"}, kFailure, "Make the folder first"},
      {{"--replay", "/no/such.log"}, kFailure, "can't be read"},
      {{"--list"}, kGood, "CAS-LP"},
      {{"--help", "13"}, kGood, "05 11"},
  };
  for (const Wrong& wrong : cases) {
    std::vector<std::string> arguments = wrong.arguments;
    arguments.insert(arguments.end(), {"--lang", "en"});
    Program program(arguments);
    EXPECT_THAT(program.rest(), HasSubstr(wrong.message));
    EXPECT_EQ(program.end(), wrong.code) << wrong.message;
  }
}

}  // namespace
