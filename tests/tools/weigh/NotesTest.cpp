// What the notes on the models and the sheets make of bytes that are read wrongly or not at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "Doctor.h"
#include "HexBytes.h"
#include "ModelNotes.h"
#include "Models.h"

namespace {

TEST(Notes, TellWhatIsReadWronglyOrNotAtAll) {
  const std::string kOutputs = "other outputs of ";
  for (const fixture::DataRow& row : fixture::dataRows("weight_doubts.txt")) {
    SCOPED_TRACE(row.heading + ": " + row.left);
    const int model = std::stoi(row.heading.substr(row.heading.rfind(' ')));
    const fixture::Bytes bytes = fixture::bytes(row.left);
    if (row.heading.starts_with(kOutputs)) {
      EXPECT_EQ(notes::otherFormatIn(model, bytes) ? "other-format" : "nothing", row.right);
      continue;
    }
    const auto doubt = weigh::weightDoubt(*findScalesModel(model), bytes);
    const std::size_t end = std::min(row.right.find(", "), row.right.size());
    EXPECT_EQ(doubt ? doubt->code : "nothing", row.right.substr(0, end));
    if (end == row.right.size()) continue;
    EXPECT_THAT(doubt ? doubt->cause : "", testing::HasSubstr(row.right.substr(end + 2)));
  }
}

TEST(Notes, DoubtNoRightWeightOfAPaper) {
  for (const fixture::DataRow& row : fixture::dataRows("frames.txt")) {
    const bool right = row.remark.find("means") == std::string::npos;
    const bool ofAPaper = row.remark.find("by ") == 0 || row.remark.find("printed in") == 0;
    if (row.right == "refused" || !right) continue;
    const int model = std::stoi(row.heading.substr(row.heading.rfind(' ')));
    const auto doubt = weigh::weightDoubt(*findScalesModel(model), fixture::bytes(row.left));
    // What no paper has may be odd; but it isn't what the notes know.
    EXPECT_TRUE(!doubt || (!ofAPaper && doubt->code != "misread-weight"))
        << row.heading << ": " << row.left << " # " << row.remark << ": " << doubt->cause;
  }
}

}  // namespace
