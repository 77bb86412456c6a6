#include "FindReport.h"

#include <array>
#include <iostream>

#include "FindTexts.h"
#include "Records.h"
#include "Report.h"
#include "Table.h"
#include "Texts.h"
#include "Units.h"

namespace weigh {

namespace {

using recognise::Candidate;
using recognise::Noise;

/// Of bytes that nobody knows, so many are shown.
constexpr std::size_t kShownBytes = 24;

struct DoubtName {
  recognise::Doubt doubt;
  const char* name;
};
constexpr std::array<DoubtName, 6> kDoubts = {{{recognise::kKin, "kin"},
                                               {recognise::kFewChecks, "few_checks"},
                                               {recognise::kFewFrames, "few_frames"},
                                               {recognise::kBadFrames, "bad_frames"},
                                               {recognise::kStrayBytes, "stray_bytes"},
                                               {recognise::kImplausible, "implausible"}}};

struct NoiseName {
  const char* name;
  const Text& text;
};
NoiseName nameOf(Noise noise) {
  switch (noise) {
    case Noise::TooFew: return {"too_few", text::kNoiseTooFew};
    case Noise::CleanText: return {"text", text::kNoiseText};
    case Noise::EvenParity: return {"even_parity", text::kNoiseEven};
    case Noise::OddParity: return {"odd_parity", text::kNoiseOdd};
    case Noise::WrongSpeed: return {"wrong_speed", text::kNoiseSpeed};
    case Noise::Unclear: break;
  }
  return {"unclear", text::kNoiseUnclear};
}

const char* endName(FindResult::End end) {
  switch (end) {
    case FindResult::End::Done: return "done";
    case FindResult::End::Interrupted: return "interrupted";
    case FindResult::End::LineLost: break;
  }
  return "line_lost";
}

std::string numbers(const std::vector<int>& list) {
  std::string text;
  for (const int number : list) text += (text.empty() ? "" : ", ") + std::to_string(number);
  return text;
}

std::string doubtText(recognise::Doubt doubt, const Candidate& candidate) {
  const auto count = [](std::size_t number) { return std::to_string(number); };
  switch (doubt) {
    case recognise::kKin: return fill(text::kDoubtKin, {numbers(candidate.kin)});
    case recognise::kFewChecks:
      return fill(text::kDoubtFewChecks,
                  {count(candidate.checks.guarded), count(candidate.checks.size)});
    case recognise::kFewFrames: return say(text::kDoubtFewFrames);
    case recognise::kBadFrames: return fill(text::kDoubtBadFrames, {count(candidate.bad)});
    case recognise::kStrayBytes:
      return fill(text::kDoubtStray,
                  {count(candidate.bytes - candidate.explained), count(candidate.bytes)});
    case recognise::kImplausible: return say(text::kDoubtImplausible);
    case recognise::kNoDoubt: break;
  }
  return {};
}

std::string saidText(const Candidate& candidate) {
  if (candidate.said.code != 0) {
    return fill(text::kNoReading, {std::to_string(candidate.said.code)});
  }
  return weightText(candidate.said.reading.weight, unitsOf(candidate.model->number));
}

/// The settings of the parameter page by their names.
struct PageValue {
  const char* name;
  Json value;
};
std::vector<PageValue> pageValues(const Connection& connection, const Sighting& sighting) {
  std::vector<PageValue> values = {{"model", sighting.candidate.model->number},
                                   {"conntype", connection.network ? 1 : 0}};
  if (connection.network) {
    values.push_back({"ehost", connection.host});
    values.push_back({"eport", connection.tcpPort});
  } else {
    values.push_back({"cport", connection.device});
    values.push_back({"cbaudrate", sighting.setting.bitsPerSecond});
  }
  return values;
}

std::string readCommand(const Connection& connection, const Sighting& sighting) {
  const std::string command =
      "weigh read --model " + std::to_string(sighting.candidate.model->number);
  if (connection.network) {
    return command + " --host " + connection.host + " --tcp-port " +
           std::to_string(connection.tcpPort);
  }
  return command + " --port " + connection.device + " --baud " +
         std::to_string(sighting.setting.bitsPerSecond);
}

void writeRanking(const std::vector<Sighting>& sightings) {
  Table table({say(text::kRankColumn), say(text::kModelColumn), say(text::kSettingColumn),
               say(text::kWayColumn), say(text::kFramesColumn), say(text::kCheckedColumn),
               say(text::kUsedColumn), say(text::kWeightColumn), say(text::kNameColumn)});
  int rank = 0;
  for (const auto& [candidate, setting, asked] : sightings) {
    const auto ofFrame = [size = candidate.checks.size](std::size_t part) {
      return fill(text::kOfBytes, {std::to_string(part), std::to_string(size)});
    };
    table.add({std::to_string(++rank), std::to_string(candidate.model->number),
               setting.bitsPerSecond == 0 ? say(text::kNetworkName) : setting.text(),
               say(asked ? text::kAsked : text::kHeard),
               std::to_string(candidate.good) + "/" + std::to_string(candidate.bad),
               ofFrame(candidate.checks.guarded), ofFrame(candidate.checks.used),
               saidText(candidate), candidate.model->pageText()});
  }
  std::cout << table.text() << say(text::kFindLegend) << "\n\n";
}

void writeVerdict(const Connection& connection, const Sighting& best) {
  const Candidate& candidate = best.candidate;
  const std::string number = std::to_string(candidate.model->number);
  std::cout << fill(candidate.uncertain() ? text::kUncertain : text::kCertain, {number}) << '\n';
  for (const DoubtName& row : kDoubts) {
    if ((candidate.doubts & row.doubt) == 0) continue;
    std::cout << "  - " << doubtText(row.doubt, candidate) << '\n';
  }
  std::cout << fill(text::kLastFrame, {hexText(candidate.frame)}) << "\n\n"
            << say(text::kPageValues) << '\n';
  for (const PageValue& value : pageValues(connection, best)) {
    const bool isText = value.value.is_string();
    std::cout << "  " << value.name << std::string(12 - std::string_view(value.name).size(), ' ')
              << (isText ? value.value.get<std::string>() : value.value.dump()) << '\n';
  }
  std::cout << fill(text::kTryIt, {readCommand(connection, best)}) << std::endl;
}

void writeUnexplained(const std::vector<Unexplained>& unexplained) {
  for (const auto& [setting, bytes, noise] : unexplained) {
    const auto shown = std::span(bytes).first(std::min(bytes.size(), kShownBytes));
    std::cout << "  "
              << fill(text::kNoiseLine,
                      {setting.bitsPerSecond == 0 ? say(text::kNetworkName) : setting.text(),
                       std::to_string(bytes.size()), say(nameOf(noise).text), hexText(shown)})
              << '\n';
  }
}

/// What may help when nothing was found.
const Text& remedyFor(const FindResult& result) {
  if (result.end != FindResult::End::Done) return text::kFindUnfinished;
  return result.bytes == 0 ? text::kFindSilent : text::kFindNoise;
}

void writeText(const Connection& connection, const FindResult& result) {
  if (result.end == FindResult::End::Interrupted) std::cout << say(text::kFindInterrupted) << '\n';
  if (result.end == FindResult::End::LineLost) std::cout << say(text::kFindLineLost) << '\n';
  if (!result.sightings.empty()) {
    writeRanking(result.sightings);
    writeVerdict(connection, result.sightings.front());
    return;
  }
  writeUnexplained(result.unexplained);
  std::cout << std::flush;
  complain(say(text::kNothingFound), say(remedyFor(result)));
}

Json candidateRecord(const Connection& connection, const Sighting& sighting, int rank) {
  const Candidate& candidate = sighting.candidate;
  Json record;
  record["rank"] = rank;
  record["model"] = candidate.model->number;
  record["name"] = candidate.model->pageText();
  record["speed"] = connection.network ? Json() : Json(sighting.setting.bitsPerSecond);
  record["framing"] = connection.network ? Json() : Json(sighting.setting.framing.text());
  record["asked"] = sighting.asked;
  record["good"] = candidate.good;
  record["bad"] = candidate.bad;
  record["frame"] = hexText(candidate.frame);
  record["frame_bytes"] = candidate.checks.size;
  record["checked_bytes"] = candidate.checks.guarded;
  record["used_bytes"] = candidate.checks.used;
  record["kin"] = candidate.kin;
  record["uncertain"] = candidate.uncertain();
  Json doubts = Json::array();
  for (const DoubtName& row : kDoubts) {
    if ((candidate.doubts & row.doubt) != 0) doubts.push_back(row.name);
  }
  record["doubts"] = doubts;
  record["weight"] = candidate.said.code == 0 ? Json(candidate.said.reading.weight) : Json();
  const char* unit = unitName(unitsOf(candidate.model->number).weight);
  record["unit"] = unit == nullptr ? Json() : Json(unit);
  record["code"] = candidate.said.code;
  Json& page = record["parameters"];
  for (const PageValue& value : pageValues(connection, sighting)) page[value.name] = value.value;
  return record;
}

void writeJson(const Connection& connection, const FindResult& result) {
  int rank = 0;
  for (const Sighting& sighting : result.sightings) {
    writeRecord(candidateRecord(connection, sighting, ++rank));
  }
  Json record;
  record["candidates"] = result.sightings.size();
  record["end"] = endName(result.end);
  record["bytes"] = result.bytes;
  Json& unexplained = record["unexplained"] = Json::array();
  for (const auto& [setting, bytes, noise] : result.unexplained) {
    Json row;
    row["line"] = setting.text();
    row["bytes"] = bytes.size();
    row["looks_like"] = nameOf(noise).name;
    row["hex"] = hexText(std::span(bytes).first(std::min(bytes.size(), kShownBytes)));
    unexplained.push_back(row);
  }
  writeRecord(record);
}

}  // namespace

std::string hexText(std::span<const std::uint8_t> bytes) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  return text;
}

void writeFindResult(const Connection& connection, const FindResult& result, Format format) {
  if (format == Format::Json) {
    writeJson(connection, result);
  } else {
    writeText(connection, result);
  }
}

}  // namespace weigh
