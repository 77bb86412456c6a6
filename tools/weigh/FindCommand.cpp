#include <algorithm>
#include <array>
#include <utility>

#include "Doctor.h"
#include "FindSearch.h"
#include "LongWork.h"
#include "Records.h"
#include "Text.h"

namespace weigh {

namespace {

using recognise::Candidate;
using recognise::Noise;
using std::chrono::milliseconds;

/// Those of the parameter page that a serial line takes; the usual ones first.
constexpr std::array<int, 8> kSpeeds = {9600, 4800, 19200, 2400, 115200, 57600, 38400, 1200};
/// Of bytes that nobody knows, so many are shown.
constexpr std::size_t kShownBytes = 24;

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
  const auto turnDown = [&] {
    refuse("--model", say("'{0}' is no list of models that have a protocol", list));
  };
  for (const std::string_view part : partsOf(list, ',')) {
    const std::size_t dash = part.find('-');
    const auto from = wholeNumber(part.substr(0, dash), 0, last);
    const auto to = dash == std::string::npos ? from : wholeNumber(part.substr(dash + 1), 0, last);
    if (!from || !to) turnDown();
    for (const ScalesModel* model : modelsWithProtocol()) {
      const bool wanted = model->number >= *from && model->number <= *to;
      if (wanted && std::ranges::count(models, model) == 0) models.push_back(model);
    }
  }
  if (models.empty()) turnDown();
  return models;
}

std::vector<int> speedsOf(const std::string& list) {
  std::vector<int> speeds;
  for (const std::string_view part : partsOf(list, ',')) {
    const auto speed = wholeNumber(part, 0, 115200);
    if (!speed || std::ranges::count(kSpeeds, *speed) == 0)
      refuse("--baud", say("'{0}' is no list of speeds; they are {1}", list, joined(kSpeeds, ",")));
    if (std::ranges::count(speeds, *speed) == 0) speeds.push_back(static_cast<int>(*speed));
  }
  if (speeds.empty()) refuse("--baud", say("may not be empty"));
  return speeds;
}

std::string durationText(milliseconds time) {
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(time).count();
  constexpr std::int64_t kMinute = 60;
  if (seconds < kMinute) return say("{0} s", seconds);
  return say("{0} min {1} s", seconds / kMinute, seconds % kMinute);
}

std::string planText(const FindOptions& options, const FindPlan& plan) {
  const std::size_t questions = plan.questions.size();
  std::string text = options.connection.network
                         ? say("Listening to the network scale")
                         : sayCount("Listening at {0} setting of the line",
                                    "Listening at {0} settings of the line", plan.listening.size());
  if (questions > 0) {
    text += ", " + sayCount("then asking {0} weight request", "then asking {0} weight requests",
                            questions);
    if (!options.connection.network)
      text += " " + sayCount("at {0} speed", "at each of {0} speeds", plan.speeds.size());
  }
  return text + "; " +
         say("this may take {0}, and ends sooner on a sure find.", durationText(plan.longest));
}

Finding nameOf(Noise noise) {
  switch (noise) {
    case Noise::TooFew: return {"too_few", say("too few to tell")};
    case Noise::CleanText: return {"text", say("clean text of an unknown protocol")};
    case Noise::EvenParity: return {"even_parity", say("text with 7 data bits and even parity")};
    case Noise::OddParity: return {"odd_parity", say("text with 7 data bits and odd parity")};
    case Noise::WrongSpeed: return {"wrong_speed", say("looks like a wrong speed")};
    case Noise::Unclear: break;
  }
  return {"unclear", say("unclear")};
}

/// Whether all that explain the same bytes as the best read the same of them.
bool sameWeights(const std::vector<Sighting>& sightings) {
  const Candidate& best = sightings.front().candidate;
  const auto agrees = [&](const Sighting& other) {
    return std::ranges::count(best.kin, other.candidate.model->number) > 0 &&
           other.candidate.said.reading.weight == best.said.reading.weight;
  };
  return std::cmp_equal(std::ranges::count_if(sightings, agrees), best.kin.size());
}

/// What speaks against the best of the sightings.
std::vector<Finding> doubtsOf(const std::vector<Sighting>& sightings) {
  const Candidate& best = sightings.front().candidate;
  std::vector<Finding> doubts;
  const auto add = [&](recognise::Doubt doubt, const char* name, const std::string& text) {
    if ((best.doubts & doubt) != 0) doubts.push_back({name, text});
  };
  add(recognise::kKin, "kin",
      sameWeights(sightings)
          ? sayCount("model {1} can't be told apart from it on this line, and reads the same "
                     "weight; it comes first for the plainest line settings",
                     "models {1} can't be told apart from it on this line, and read the same "
                     "weight; it comes first for the plainest line settings",
                     best.kin.size(), joined(best.kin))
          : sayCount("model {1} explains the same bytes as well; take the one whose weight is "
                     "that on the display",
                     "models {1} explain the same bytes as well; take the one whose weight is "
                     "that on the display",
                     best.kin.size(), joined(best.kin)));
  add(recognise::kFewChecks, "few_checks",
      say("the protocol checks so few bytes ({0} of {1}) that others would have passed too",
          best.checks.guarded, best.checks.size));
  add(recognise::kFewFrames, "few_frames", say("only one good frame came"));
  add(recognise::kBadFrames, "bad_frames",
      sayCount("{0} frame was refused", "{0} frames were refused", best.bad));
  add(recognise::kStrayBytes, "stray_bytes",
      say("{0} of {1} bytes belong to no frame", best.bytes - best.explained, best.bytes));
  add(recognise::kImplausible, "implausible",
      say("most of the frame plays no part in the reading, or price and cost don't agree"));
  return doubts;
}

std::string saidText(const Candidate& candidate) {
  if (candidate.said.code != 0) return say("error {0}", candidate.said.code);
  return weightText(candidate.said.reading.weight, unitsOf(candidate.model->number));
}

/// The line as it was found.
Connection foundAt(Connection connection, const Sighting& sighting) {
  connection.model = sighting.candidate.model->number;
  connection.baud = sighting.setting.bitsPerSecond;
  return connection;
}

/// The settings of the parameter page by their names.
Json pageValues(const Connection& found) {
  Json page = {{"model", found.model}, {"conntype", found.network ? 1 : 0}};
  page[found.network ? "ehost" : "cport"] = found.network ? found.host : found.device;
  page[found.network ? "eport" : "cbaudrate"] = found.network ? found.tcpPort : found.baud;
  return page;
}

std::string settingText(const LineSetting& setting) {
  return setting.bitsPerSecond == 0 ? say("network") : setting.text();
}

std::string rankingText(const std::vector<Sighting>& sightings) {
  Table table({say("RANK"), say("MODEL"), say("LINE"), say("HOW"), say("GOOD/BAD"), say("CHECKED"),
               say("USED"), say("WEIGHT"), say("NAME")});
  int rank = 0;
  for (const auto& [candidate, setting, asked] : sightings) {
    const recognise::Checks& checks = candidate.checks;
    table.add({std::to_string(++rank), std::to_string(candidate.model->number),
               settingText(setting), asked ? say("asked") : say("heard"),
               fmt::format("{}/{}", candidate.good, candidate.bad),
               say("{0} of {1}", checks.guarded, checks.size),
               say("{0} of {1}", checks.used, checks.size), saidText(candidate),
               candidate.model->pageText()});
  }
  return table.text() +
         say("CHECKED: bytes of a frame whose change the protocol refuses. USED: bytes that the "
             "reading depends on.") +
         "\n\n";
}

std::string verdictText(const Connection& connection, const std::vector<Sighting>& sightings) {
  const Candidate& best = sightings.front().candidate;
  std::string text = best.uncertain()
                         ? say("Probably model {0}, but uncertain:", best.model->number)
                         : say("Model {0} it is.", best.model->number);
  text += '\n';
  for (const Finding& doubt : doubtsOf(sightings)) text += "  - " + doubt.cause + "\n";
  text += say("Its last frame: {0}", hexText(best.frame)) + "\n\n" +
          say("For the parameter page:") + "\n";
  const Connection found = foundAt(connection, sightings.front());
  const Json page = pageValues(found);
  for (const auto& [name, value] : page.items()) {
    const std::string shown = value.is_string() ? value.get<std::string>() : value.dump();
    text += fmt::format("  {:<12}{}\n", name, shown);
  }
  return text +
         say("Try it: {0}", fmt::format("weigh read --model {} {}", found.model, found.options())) +
         "\n";
}

/// What is to be said beside the ranking: a weight that isn't what it reads, and bytes that are
/// another output of a scale that is known.
std::vector<Finding> notesOn(const FindOptions& options, const FindResult& result) {
  std::vector<Finding> notes;
  const auto add = [&](std::optional<Finding> note) {
    if (note && std::ranges::count(notes, note->remedy, &Finding::remedy) == 0)
      notes.push_back(std::move(*note));
  };
  const std::string line = options.connection.address();
  if (!result.sightings.empty()) {
    const Candidate& best = result.sightings.front().candidate;
    add(weightDoubt(*best.model, best.frame));
    for (const ScalesModel* model : options.models) add(otherFormat(*model, best.frame, line));
  }
  for (const Unexplained& other : result.unexplained) {
    for (const ScalesModel* model : options.models) add(otherFormat(*model, other.bytes, line));
  }
  return notes;
}

/// What helps where nothing came: the settings of the scale itself, where it is known which it is.
std::string silenceText(const FindOptions& options) {
  std::string text =
      say("Nothing came at all. Is the scale on, is the cable the right one (crossed or "
          "straight), is this the port that it is on? A scale may be set to send on its "
          "print key only.");
  constexpr std::size_t kFew = 3;
  if (options.models.size() > kFew)
    return text + " " + say("`weigh models --about N` tells what to set on the scale of model N.");
  for (const ScalesModel* model : options.models) text += onTheScale(model->number);
  return text;
}

void writeText(const FindOptions& options, const FindResult& result) {
  const Connection& connection = options.connection;
  if (result.end == FindResult::End::Interrupted)
    print(say("Ended early: this is what there is so far.") + "\n");
  if (result.end == FindResult::End::LineLost)
    print(say("The line is gone: this is what there is so far.") + "\n");
  if (!result.sightings.empty()) {
    print(rankingText(result.sightings) + verdictText(connection, result.sightings));
  }
  for (const auto& [setting, bytes, noise] : result.unexplained) {
    if (!result.sightings.empty()) break;
    print("  " +
          sayCount("{1}: {0} byte, {2}: {3}", "{1}: {0} bytes, {2}: {3}", bytes.size(),
                   settingText(setting), nameOf(noise).cause, hexText(bytes, kShownBytes)) +
          "\n");
  }
  const std::vector<Finding> notes = notesOn(options, result);
  for (const Finding& note : notes) print(findingText(say("Note"), note));
  if (!result.sightings.empty()) return;
  complain(say("no model's frames were found"),
           result.end != FindResult::End::Done
               ? say("The search did not come to its end. Start it again for an answer.")
           : result.bytes == 0 ? silenceText(options)
           : notes.empty()
               ? say("Bytes came that belong to no model. The scale's menu tells its speed and "
                     "protocol; try the other protocols that it offers.")
               : notes.front().remedy);
}

Json candidateRecord(const Connection& connection, const std::vector<Sighting>& sightings,
                     std::size_t index) {
  const Sighting& sighting = sightings[index];
  const Candidate& candidate = sighting.candidate;
  const bool network = connection.network;
  Json doubts = Json::array();
  for (const Finding& doubt :
       doubtsOf({sightings.begin() + static_cast<std::ptrdiff_t>(index), sightings.end()})) {
    doubts.push_back(doubt.code);
  }
  return {{"rank", index + 1},
          {"model", candidate.model->number},
          {"name", candidate.model->pageText()},
          {"speed", network ? Json() : Json(sighting.setting.bitsPerSecond)},
          {"framing", network ? Json() : Json(sighting.setting.framing.text())},
          {"asked", sighting.asked},
          {"good", candidate.good},
          {"bad", candidate.bad},
          {"frame", hexText(candidate.frame)},
          {"frame_bytes", candidate.checks.size},
          {"checked_bytes", candidate.checks.guarded},
          {"used_bytes", candidate.checks.used},
          {"kin", candidate.kin},
          {"uncertain", candidate.uncertain()},
          {"doubts", doubts},
          {"weight", candidate.said.code == 0 ? Json(candidate.said.reading.weight) : Json()},
          {"unit", orNull(unitName(unitsOf(candidate.model->number).weight))},
          {"code", candidate.said.code},
          {"parameters", pageValues(foundAt(connection, sighting))}};
}

void writeJson(const FindOptions& options, const FindResult& result) {
  for (std::size_t i = 0; i < result.sightings.size(); ++i)
    writeRecord(candidateRecord(options.connection, result.sightings, i));
  Json unexplained = Json::array();
  for (const auto& [setting, bytes, noise] : result.unexplained) {
    const auto shown = std::span(bytes).first(std::min(bytes.size(), kShownBytes));
    unexplained.push_back({{"line", setting.text()},
                           {"bytes", bytes.size()},
                           {"looks_like", nameOf(noise).code},
                           {"hex", hexText(shown)}});
  }
  Json notes = Json::array();
  for (const Finding& note : notesOn(options, result)) notes.push_back(findingRecord(note));
  static constexpr std::array kEnds = {"done", "interrupted", "line_lost"};
  writeRecord({{"candidates", result.sightings.size()},
               {"end", kEnds.at(static_cast<std::size_t>(result.end))},
               {"bytes", result.bytes},
               {"unexplained", unexplained},
               {"notes", notes}});
}

ExitCode find(const FindOptions& options, Format format) {
  const FindPlan plan(options);
  tell(planText(options, plan));
  FindResult result;
  {
    Progress progress(plan.longest);
    result = findScale(options, plan, [&](const LineSetting& setting, bool asks) {
      const std::string at = setting.bitsPerSecond == 0 ? options.connection.host : setting.text();
      progress.show(asks ? say("asking {0}", at) : say("listening {0}", at));
    });
  }
  if (format == Format::Json) {
    writeJson(options, result);
  } else {
    writeText(options, result);
  }
  return result.sightings.empty() ? kFailed : kGood;
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
  CLI::App& command = addCommand(
      app, "find", say("Find out which scale is on a line, and at which speed"),
      "weigh find --port /dev/ttyUSB0\nweigh find --host 192.168.0.200 --tcp-port 20108",
      say("Listens first, then asks with the weight requests of the models and sends nothing else: "
          "no scale is tared, zeroed, priced or set up. At a wrong speed a scale gets garbage, as "
          "from any host that is set wrongly. A speed at which good frames came is the only one "
          "that is asked on; a sure find ends it at once, Ctrl-C ends it with what it has.\n"
          "Exit code 0 if a model was found, also an uncertain one; 1 if none was."));
  addLineOptions(command, options.connection);
  command
      .add_option_function<std::string>(
          "--model,-m", [&options](const std::string& list) { options.models = modelsOf(list); },
          say("Only these models, such as 13,27 or 7-12 (default: all with a protocol)"))
      ->type_name("LIST");
  command
      .add_option_function<std::string>(
          "--baud,-b", [&options](const std::string& list) { options.speeds = speedsOf(list); },
          say("Only these speeds, in this order (default: {0})", joined(kSpeeds, ",")))
      ->type_name("LIST");
  command.add_flag("--passive", options.passive, say("Only listen, send nothing"));
  addSeconds(command, "--listen", options.listening, 0.1, 60,
             say("Seconds to listen at each speed and framing"));
  addJsonFlag(command, given->format,
              say("One JSON record per candidate, the best first, and one about the search"));
  command.callback([&program, &command, given] {
    if (command.count("--port") + command.count("--host") == 0)
      refuse("find", say("which line? --port DEVICE or --host HOST"));
    program.action = [given] { return find(given->options, given->format); };
  });
}

}  // namespace weigh
