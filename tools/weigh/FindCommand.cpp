#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>
#include <memory>
#include <ranges>
#include <sstream>

#include "Commands.h"
#include "FindReport.h"
#include "FindSearch.h"
#include "FindTexts.h"
#include "Interrupt.h"
#include "Progress.h"
#include "Texts.h"

namespace weigh {

namespace {

using std::chrono::milliseconds;

/// Those of the parameter page that a serial line takes; the usual ones first.
constexpr std::array<int, 8> kSpeeds = {9600, 4800, 19200, 2400, 115200, 57600, 38400, 1200};

std::string speedNames() {
  std::string names;
  for (const int speed : kSpeeds) names += (names.empty() ? "" : ",") + std::to_string(speed);
  return names;
}

std::vector<std::string> parts(const std::string& list, char separator) {
  std::vector<std::string> found;
  std::istringstream stream(list);
  for (std::string part; std::getline(stream, part, separator);) found.push_back(part);
  return found;
}

std::vector<const ScalesModel*> modelsWithProtocol() {
  std::vector<const ScalesModel*> models;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) models.push_back(&model);
  }
  return models;
}

/// "13,27" or "7-12,16".
std::vector<const ScalesModel*> modelsOf(const std::string& list) {
  const int last = static_cast<int>(scalesModels().size()) - 1;
  std::vector<const ScalesModel*> models;
  const auto refuse = [&] {
    throw CLI::ValidationError("--models", fill(text::kFindBadModels, {list}));
  };
  for (const std::string& part : parts(list, ',')) {
    const std::size_t dash = part.find('-');
    const auto from = wholeNumber(part.substr(0, dash), 0, last);
    const auto to = dash == std::string::npos ? from : wholeNumber(part.substr(dash + 1), 0, last);
    if (!from || !to) refuse();
    for (const ScalesModel* model : modelsWithProtocol()) {
      if (model->number >= *from && model->number <= *to) models.push_back(model);
    }
  }
  if (models.empty()) refuse();
  return models;
}

std::vector<int> speedsOf(const std::string& list) {
  std::vector<int> speeds;
  for (const std::string& part : parts(list, ',')) {
    const auto speed = wholeNumber(part, kSpeeds.back(), 115200);
    if (!speed || std::ranges::count(kSpeeds, *speed) == 0) {
      throw CLI::ValidationError("--speeds", fill(text::kFindBadSpeeds, {list, speedNames()}));
    }
    speeds.push_back(static_cast<int>(*speed));
  }
  return speeds;
}

std::string durationText(milliseconds time) {
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(time).count();
  constexpr std::int64_t kMinute = 60;
  if (seconds < kMinute) return fill(text::kSeconds, {std::to_string(seconds)});
  return fill(text::kMinutes,
              {std::to_string(seconds / kMinute), std::to_string(seconds % kMinute)});
}

std::string planText(const FindOptions& options, const FindPlan& plan) {
  const std::string settings = std::to_string(plan.listening.size());
  const std::string questions = std::to_string(plan.questions.size());
  const std::string time = durationText(plan.longest);
  if (plan.questions.empty()) return fill(text::kFindPlanListen, {settings, time});
  if (options.connection.network) return fill(text::kFindPlanHost, {questions, time});
  return fill(text::kFindPlanAsk, {settings, questions, std::to_string(plan.speeds.size()), time});
}

ExitCode find(const FindOptions& options, Format format) {
  const FindPlan plan(options);
  const Interrupt interrupt;
  std::cerr << planText(options, plan) << std::endl;
  FindResult result;
  {
    Progress progress(std::chrono::ceil<std::chrono::seconds>(plan.longest));
    result = findScale(options, plan, interrupt, [&](const LineSetting& setting, bool asks) {
      const std::string at = setting.bitsPerSecond == 0 ? options.connection.host : setting.text();
      progress.show(fill(asks ? text::kFindAsking : text::kFindListening, {at}));
    });
  }
  writeFindResult(options.connection, result, format);
  return result.sightings.empty() ? kScaleFailed : kGood;
}

}  // namespace

void addFindCommand(CLI::App& app, Program& program) {
  struct Given {
    FindOptions options{.connection = {},
                        .models = modelsWithProtocol(),
                        .speeds = {kSpeeds.begin(), kSpeeds.end()}};
    Format format = Format::Text;
  };
  const auto given = std::make_shared<Given>();
  FindOptions& options = given->options;
  CLI::App& command = addCommand(app, {.name = "find",
                                       .about = text::kFindAbout,
                                       .example = "weigh find --port /dev/ttyUSB0",
                                       .notes = &text::kFindNotes});
  const auto* device =
      command.add_option("--port,-p,--device", options.connection.device, say(text::kPortOption))
          ->type_name("DEVICE");
  const auto* host =
      command.add_option("--host,-H", options.connection.host, say(text::kHostOption))
          ->type_name("HOST");
  addNumber(command, "--tcp-port,-t", options.connection.tcpPort, 1, 65535, text::kTcpPortOption);
  command
      .add_option_function<std::string>(
          "--models,-m", [&options](const std::string& list) { options.models = modelsOf(list); },
          say(text::kFindModelsOption))
      ->type_name("LIST");
  command
      .add_option_function<std::string>(
          "--speeds,-b", [&options](const std::string& list) { options.speeds = speedsOf(list); },
          say(text::kFindSpeedsOption))
      ->type_name("LIST")
      ->default_str(speedNames());
  command.add_flag("--passive", options.passive, say(text::kFindPassiveFlag));
  command
      .add_option_function<std::string>(
          "--listen",
          [&options](const std::string& seconds) {
            const auto number = realNumber(seconds);
            if (!number || !(*number >= 0.1 && *number <= 60)) {
              throw CLI::ValidationError("--listen", fill(text::kFindBadListen, {seconds}));
            }
            options.listening =
                std::chrono::round<milliseconds>(std::chrono::duration<double>(*number));
          },
          say(text::kFindListenOption))
      ->type_name("SECONDS")
      ->default_str("1");
  command.add_flag_callback(
      "--json", [given] { given->format = Format::Json; }, say(text::kFindJsonFlag));
  command.parse_complete_callback([&options, device, host] {
    options.connection.network = host->count() > 0;
    if (device->count() + host->count() == 1) return;
    throw CLI::ValidationError("find", say(text::kFindWhere));
  });
  command.callback([&program, given] {
    program.action = [given] { return find(given->options, given->format); };
  });
}

}  // namespace weigh
