// scalesim: plays the scale's side of any model of the driver.

#include <csignal>
#include <iostream>
#include <system_error>

#include "ModelSheet.h"
#include "Options.h"
#include "Player.h"
#include "SelfDescription.h"
#include "Texts.h"

namespace {

enum ExitCode { kGood = 0, kFailure = 1, kWrongUsage = 2 };

const char* remedyFor(const std::error_code& code) {
  if (code == std::errc::address_in_use) return say(texts::kRemedyPortTaken);
  if (code == std::errc::file_exists) return say(texts::kRemedyFileInTheWay);
  if (code == std::errc::no_such_file_or_directory) return say(texts::kRemedyNoFolder);
  if (code == std::errc::permission_denied) return say(texts::kRemedyNoAccess);
  return "";
}

int run(int argc, const char* const* argv) {
  const Options options = readOptions(argc, argv);
  switch (options.task) {
    case Options::Task::Help: std::cout << helpText(); break;
    case Options::Task::HelpOnModel: std::cout << modelSheet(*options.model); break;
    case Options::Task::Version: std::cout << versionLine("scalesim") << '\n'; break;
    case Options::Task::Describe: std::cout << descriptionText(options.description); break;
    case Options::Task::List: std::cout << modelList(); break;
    case Options::Task::Play:
    case Options::Task::PlayAll:
    case Options::Task::Replay: play(options); break;
  }
  return kGood;
}

}  // namespace

int main(int argc, char** argv) {
  // Whoever reads our output may leave before us.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const UsageError& error) {
    std::cerr << fill(texts::kUsageError, {error.what()}) << "\n"
              << say(texts::kSeeHelp) << std::endl;
    return kWrongUsage;
  } catch (const std::system_error& error) {
    std::cerr << fill(texts::kFailed, {error.what(), remedyFor(error.code())}) << std::endl;
  } catch (const std::exception& error) {
    std::cerr << fill(texts::kFailed, {error.what(), ""}) << std::endl;
  }
  return kFailure;
}
