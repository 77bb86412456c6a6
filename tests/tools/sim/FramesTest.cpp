// Every frame as the makers' protocols have it, and what the component reads from it.

#include <map>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "DataFile.h"
#include "HexBytes.h"
#include "ScaleModel.h"

namespace sim {
namespace {

/// Of "model 13".
int modelIn(const std::string& heading) { return std::stoi(heading.substr(heading.find(' '))); }

ScaleState stateOf(const std::string& text) {
  ScaleState state;
  for (const auto& [name, value] : fixture::dataFields(text)) {
    if (name == "weight") {
      state.weight = std::stod(value);
    } else if (name == "price") {
      state.price = std::stod(value);
    } else if (name == "tare") {
      state.tare = std::stod(value);
    } else if (name == "decimals") {
      state.decimals = std::stoi(value);
    } else if (name == "moving") {
      state.stable = false;
    } else if (name == "overload") {
      state.overload = true;
    } else {
      throw std::runtime_error("no state of a scale: " + text);
    }
  }
  return state;
}

TEST(Frames, AreBuiltAndReadAsTheProtocolSays) {
  for (const fixture::DataRow& row : fixture::dataRows("sim_frames.txt")) {
    SCOPED_TRACE(row.heading + ", " + row.left);
    const ScaleModel& model = *findScaleModel(modelIn(row.heading));
    const ScaleState state = stateOf(row.left);
    const std::size_t reads = row.right.find(" reads ");
    EXPECT_EQ(fixture::hex(model.frame(state)),
              fixture::hex(fixture::bytes(row.right.substr(0, reads))));
    auto wanted = fixture::dataFields(row.right.substr(reads + std::string(" reads ").size()));
    const auto number = [&](const char* name) {
      return wanted[name].empty() ? 0 : std::stod(wanted[name]);
    };
    const Reading reading = model.expectedReading(state);
    EXPECT_DOUBLE_EQ(reading.weight, number("weight"));
    EXPECT_DOUBLE_EQ(reading.price, number("price"));
    EXPECT_DOUBLE_EQ(reading.cost, number("cost"));
    EXPECT_EQ(reading.code, number("code"));
    EXPECT_EQ(reading.stable, wanted.contains("stable"));
  }
}

}  // namespace
}  // namespace sim
