// The program itself: what it prints, what it leaves behind, how it ends.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Endpoint.h"
#include "Host.h"
#include "Output.h"
#include "Program.h"
#include "SettingsEntry.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

/// A running scalesim that speaks English.
class Scalesim : public fixture::Program {
 public:
  explicit Scalesim(std::vector<std::string> arguments)
      : Program(commandLine(std::move(arguments)), Errors::WithOutput) {}

 private:
  static std::vector<std::string> commandLine(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SCALESIM_PROGRAM);
    arguments.insert(arguments.end(), {"--lang", "en"});
    return arguments;
  }
};

/// At the address that scalesim told.
Host hostAt(const std::string& address) {
  if (address.starts_with('/')) return Host(address);
  return Host(std::stoi(address.substr(address.find(':') + 1)));
}

TEST(Program, PlaysOnALinkUntilToldToQuit) {
  const sim::TemporaryDirectory folder;
  const std::string link = folder.path() / "scale";
  Scalesim program({"13", "--port", link, "--weight", "2.5"});
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
  Scalesim program({"23", "--tcp", "--verbose"});
  program.closeInput();
  EXPECT_THAT(program.line(), HasSubstr("can't read model 23 over TCP"));
  const std::string address = program.line();
  ASSERT_THAT(address, StartsWith("127.0.0.1:"));
  const Host host = hostAt(address);
  host.say({0x05});
  EXPECT_EQ(host.hear(12).size(), 12U);
  program.signal(SIGINT);
  EXPECT_THAT(program.rest(), ContainsRegex("[0-9.:]+  23  <-  05\n[0-9.:]+  23  ->  02 42 0D "));
  EXPECT_EQ(program.end(), kGood);
}

/// A record of an exchange log of up to ten bytes.
std::string record(const char* label, const std::string& bytes) {
  const std::string size = std::to_string((bytes.size() + 1) / 3);
  return std::string(label) + " 126-10-23 01:57:03.000 ---- Bytes:" + size +
         "\r\nCOMPORT: x\r\n\r\n\r\n00001: " + bytes + "\r\n\r\n";
}

TEST(Program, ReplaysALogTurnByTurnAndTellsOfAStranger) {
  const sim::TemporaryDirectory folder;
  const auto log = folder.path() / "once.log";
  std::ofstream(log) << record("OUT >>>>>", "05 11") << record("OUT >>>>>", "05 11")
                     << record("IN <<<<<<", "06 01 02 53 20 20 31 2E 32 35")
                     << record("IN <<<<<<", "30 6B 67 77 03 04");
  for (const char* line : {"--verbose", "--tcp"}) {
    // Asked once without an answer, then answered; and asked again.
    Scalesim program({"--replay", log, "--verbose", line});
    {
      const Host host = hostAt(program.line());
      host.say({0x05, 0x11});
      host.say({0x05, 0x12});
      const sim::Bytes frame = host.hear(16);
      EXPECT_THAT(std::string(frame.begin(), frame.end()), HasSubstr("1.250kg"));
    }
    program.signal(SIGTERM);
    const std::string told = program.rest();
    EXPECT_THAT(told, HasSubstr("1 turn,"));
    EXPECT_THAT(told, HasSubstr("once.log  <-  05 11"));
    EXPECT_THAT(told, HasSubstr("sent 05 11 05 12, in the record it was 05 11 05 11"));
    EXPECT_EQ(program.end(), kGood);
  }
}

TEST(Program, PlaysAllAndCleansUp) {
  const sim::TemporaryDirectory folder;
  const auto inside = folder.path() / "all";
  // What a simulation left that was killed.
  std::filesystem::create_directory(inside);
  std::ofstream(inside / "settings.xml") << "<SCALESIM></SCALESIM>";
  {
    Scalesim program({"--all", inside, "--weight", "3"});
    EXPECT_EQ(program.line(), (inside / "settings.xml").string());
    EXPECT_EQ(program.line(), "0\t0\t" + (inside / "0").string());
    const auto entries = readSettings(inside / "settings.xml");
    ASSERT_TRUE(entries && entries->size() == 68);
    EXPECT_EQ(entries->front().port(), inside / "0");
    const Host host(inside / "37");
    host.say({'W', '\r'});
    EXPECT_EQ(host.hear(12).size(), 12U);
    program.signal(SIGTERM);
    EXPECT_THAT(program.rest(), HasSubstr("68 scales"));
    EXPECT_EQ(program.end(), kGood);
  }
  EXPECT_TRUE(std::filesystem::is_empty(inside));
}

TEST(Program, LeavesAloneWhatIsNotItsOwn) {
  const sim::TemporaryDirectory folder;
  const auto other = folder.path() / "a.new";
  std::ofstream(other) << "mine";
  Scalesim first({"--all", folder.path()});
  const std::string settings = first.line();
  Scalesim second({"--all", folder.path()});
  EXPECT_THAT(second.rest(), HasSubstr("Another scalesim"));
  EXPECT_EQ(second.end(), kFailed);
  EXPECT_TRUE(std::filesystem::exists(settings));
  {
    Scalesim third({"13", "--port", folder.path() / "a"});
    third.line();
    third.signal(SIGHUP);
    EXPECT_EQ(third.end(), kGood);
  }
  first.signal(SIGINT);
  EXPECT_EQ(first.end(), kGood);
  EXPECT_TRUE(std::filesystem::is_regular_file(other));
}

TEST(Program, CountsWhatItCantWriteAsFailure) {
  for (const char* task : {"--list", "--about 13", "--help", "13"}) {
    fixture::Program program(
        {"sh", "-c", std::string(SCALESIM_PROGRAM) + " --lang en " + task + " > /dev/full"},
        fixture::Program::Errors::WithOutput);
    EXPECT_THAT(program.rest(), HasSubstr("can't be written")) << task;
    EXPECT_EQ(program.end(), kFailed);
  }
}

TEST(Program, TellsWhatWentWrong) {
  const sim::TemporaryDirectory folder;
  const sim::TcpEndpoint taken;
  const sim::PtyEndpoint played(folder.path() / "played");
  std::ofstream(folder.path() / "settings.xml") << "<ROOT/>";
  struct Wrong {
    std::vector<std::string> arguments;
    int code;
    const char* message;
  };
  const Wrong cases[] = {
      {{"13", "--price", "1"}, kWrongUsage, "`scalesim --help` shows"},
      {{"13", "--tcp-port", std::to_string(taken.port())}, kFailed, "Choose another port"},
      {{"13", "--port", folder.path()}, kFailed, "something that scalesim didn't make"},
      {{"13", "--port", played.address()}, kFailed, "Another scalesim"},
      {{"13", "--port", folder.path() / "no" / "link"}, kFailed, "Make the folder first"},
      {{"--all", folder.path()}, kFailed, "was not written by scalesim"},
      {{"--replay", "/no/such.log"}, kFailed, "can't be read"},
      {{"--all", folder.path() / std::string(200, 'a') / std::string(60, 'b')},
       kFailed,
       "choose another folder"},
      {{"--version"}, kGood, "scalesim "},
      {{"--list"}, kGood, "CAS-LP"},
      {{"--about", "13"}, kGood, "05 11"},
  };
  for (const Wrong& wrong : cases) {
    Scalesim program(wrong.arguments);
    EXPECT_THAT(program.rest(), HasSubstr(wrong.message));
    EXPECT_EQ(program.end(), wrong.code) << wrong.message;
  }
}

}  // namespace
