// What `weigh find` tells of every doubt, noise and end, to people and to programs.

#include <iostream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "FindReport.h"
#include "Language.h"

namespace {

using nlohmann::json;
using recognise::Noise;
using testing::AllOf;
using testing::HasSubstr;
using weigh::Connection;
using weigh::FindResult;
using weigh::Format;

const Connection kLine = {.network = false, .device = "/dev/ttyUSB0"};

std::string written(const FindResult& result, Format format) {
  useLanguage(Language::English);
  std::ostringstream out;
  std::streambuf* const terminal = std::cout.rdbuf(out.rdbuf());
  writeFindResult(kLine, result, format);
  std::cout.rdbuf(terminal);
  return out.str();
}

/// A scale of model 13 that was heard at 4800.
FindResult heard(unsigned doubts) {
  FindResult result;
  result.sightings.resize(1);
  auto& [candidate, setting, asked] = result.sightings.front();
  candidate.model = &scalesModels()[13];
  candidate.good = 3;
  candidate.bad = 2;
  candidate.explained = 48;
  candidate.bytes = 60;
  candidate.checks.guarded = 4;
  candidate.checks.size = 16;
  candidate.said.reading.weight = 1.25;
  candidate.kin = {27, 40};
  candidate.doubts = doubts;
  setting.bitsPerSecond = 4800;
  return result;
}

TEST(FindReport, GivesEachDoubtItsReason) {
  const struct {
    recognise::Doubt doubt;
    const char* name;
    const char* sentence;
  } rows[] = {
      {recognise::kKin, "kin", "models 27, 40 explain the same bytes as well"},
      {recognise::kFewChecks, "few_checks", "checks so few bytes (4 of 16)"},
      {recognise::kFewFrames, "few_frames", "only one good frame came"},
      {recognise::kBadFrames, "bad_frames", "2 frames were refused"},
      {recognise::kStrayBytes, "stray_bytes", "12 of 60 bytes belong to no frame"},
      {recognise::kImplausible, "implausible", "most of the frame plays no part"},
  };
  for (const auto& [doubt, name, sentence] : rows) {
    EXPECT_THAT(written(heard(doubt), Format::Text),
                AllOf(HasSubstr("Probably model 13, but uncertain:\n  - "), HasSubstr(sentence),
                      HasSubstr("weigh read --model 13 --port /dev/ttyUSB0 --baud 4800")));
    const std::string records = written(heard(doubt), Format::Json);
    EXPECT_EQ(json::parse(records.substr(0, records.find('\n')))["doubts"], json{name});
  }
}

TEST(FindReport, SaysThatAFrameHeldNoWeight) {
  FindResult result = heard(recognise::kNoDoubt);
  result.sightings.front().candidate.said.code = 6;
  EXPECT_THAT(written(result, Format::Text), HasSubstr("error 6"));
}

TEST(FindReport, NamesNoisesAndEnds) {
  const struct {
    Noise noise;
    const char* name;
    const char* words;
  } noises[] = {
      {Noise::TooFew, "too_few", "too few to tell"},
      {Noise::CleanText, "text", "clean text of an unknown protocol"},
      {Noise::EvenParity, "even_parity", "text with 7 data bits and even parity"},
      {Noise::OddParity, "odd_parity", "text with 7 data bits and odd parity"},
      {Noise::WrongSpeed, "wrong_speed", "looks like a wrong speed"},
      {Noise::Unclear, "unclear", "unclear"},
  };
  FindResult result;
  for (const auto& row : noises) result.unexplained.push_back({{9600, {}}, {0x55}, row.noise});
  const std::string text = written(result, Format::Text);
  const json record = json::parse(written(result, Format::Json));
  for (std::size_t i = 0; i < std::size(noises); ++i) {
    EXPECT_THAT(text, HasSubstr(std::string("9600 8N1: 1 bytes, ") + noises[i].words));
    EXPECT_EQ(record["unexplained"][i]["looks_like"], noises[i].name);
  }
  using End = FindResult::End;
  for (const auto& [end, name] : {std::pair{End::Done, "done"},
                                  {End::Interrupted, "interrupted"},
                                  {End::LineLost, "line_lost"}}) {
    result.end = end;
    EXPECT_EQ(json::parse(written(result, Format::Json))["end"], name);
  }
}

}  // namespace
