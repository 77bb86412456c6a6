// What simulated scales send, against frames of papers and of real scales.

#include <algorithm>
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

ScaleState stateOf(const std::string& text, const ScaleModel& model) {
  ScaleState state = model.usualState();
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
    } else if (name != "variant") {
      throw std::runtime_error("no state of a scale: " + text);
    }
  }
  return state;
}

TEST(Frames, AreThoseOfPapersAndRealScales) {
  for (const fixture::DataRow& row : fixture::dataRows("sim_frames.txt")) {
    SCOPED_TRACE(row.heading + ", " + row.left);
    const std::string variant = fixture::dataFields(row.left)["variant"];
    const ScaleModel* model = findScaleModel(modelIn(row.heading), variant);
    ASSERT_NE(model, nullptr);
    Bytes sent = model->frame(stateOf(row.left, *model));
    const Bytes real = fixture::bytes(row.right);
    if (model->streams()) {
      // The frame may begin at another place of the stream.
      const Bytes once = sent;
      sent.insert(sent.end(), once.begin(), once.end());
      EXPECT_NE(std::search(sent.begin(), sent.end(), real.begin(), real.end()), sent.end())
          << fixture::hex(once);
    } else {
      EXPECT_EQ(fixture::hex(sent), fixture::hex(real));
    }
  }
}

}  // namespace
}  // namespace sim
