// What the notes on the models and the sheets make of bytes that are read wrongly or not at all.

#include <gtest/gtest.h>

#include "Doctor.h"
#include "HexBytes.h"
#include "ModelNotes.h"
#include "Models.h"

namespace weigh {
namespace {

TEST(Notes, TellWeightsThatAreNotWhatTheyRead) {
  struct Row {
    int model;
    const char* frame;
    const char* code;
  };
  for (const Row& row : {
           // Digits as numbers where characters are read.
           Row{17, "05 07 02 00 00 00 00 00 03 02 01 03 08 03 03 00 00", "hidden-weight"},
           Row{30, "05 07 02 00 00 00 00 00 03 02 01 00 03 08 03 03 00 00", "hidden-weight"},
           Row{0, "05 07 02 00 00 00 00 00 03 02 01 00 03 08 03 03 00 00", ""},
           // A plus before the number, and a blank in its place.
           Row{39, "0A 'ST,GS,+011.120kg' 0D", "hidden-weight"},
           Row{39, "0A 'ST,GS,-011.120kg' 0D", ""},
           // Binary where characters are read; letters for underload; a status that says invalid.
           Row{26, "00 03 E8 06 0D 0A", "hidden-weight"},
           Row{23, "40 50 0D '0    UF' 0D 0A", "hidden-weight"},
           Row{31, "02 2D 34 '   1250     0' 0D", "hidden-weight"},
           // A blank that ends the number early; zeros that are zeros.
           Row{25, "0D 0A 'ST,GS  24 5.6 kg' 0D 0A", "unread-weight"},
           Row{25, "0D 0A 'ST,GS   20.7 kg ' 0D 0A", ""},
           Row{13, "06 01 02 'S 00.000kg' 61 03 04", ""},
           // A seventh place that counts decimals; a protocol that sends by itself; an error's
           // number.
           Row{12, "02 'AD+00125031B' 03", "misread-weight"},
           Row{38, "02 'AD-01234521B' 03", "misread-weight"},
           Row{38, "02 'AD+001.25006' 03", ""},
           Row{7, "02 'AD+01234541B' 03", "misread-weight"},
           Row{7, "02 'AD+00125031B' 03", ""},
           Row{10, "55 AA", "misread-weight"},
           Row{11, "'C1050027:0601' 0D 0A", "misread-weight"},
           Row{11, "'81050027:   1.250 kg N' 0D 0A", ""},
           // Other units, divisions, places of the sign, and an overload.
           Row{8, "'ww012.345lb' 0D 0A", "misread-weight"},
           Row{8, "'ww012.345kg' 0D 0A", ""},
           Row{9, "'    1250.0  g ' 0D 0A", "misread-weight"},
           Row{9, "'    12.345 kg ' 0D 0A", ""},
           Row{25, "0D 0A 'ST,GS,   245.6 g' 0D 0A", "misread-weight"},
           Row{25, "0D 0A 'ST,GS    20.7g  ' 0D 0A", "misread-weight"},
           Row{25, "0D 0A 'ST,GS-  1.250kg ' 0D 0A", ""},
           Row{31, "02 '50   1250     0' 0D", "misread-weight"},
           Row{31, "02 '%0 001250000000' 0D", "misread-weight"},
           Row{31, "02 '-0  12345     0' 0D", ""},
           Row{33, "02 ' 1234567KGO' 0D", "misread-weight"},
           Row{33, "02 '   12.34KG ' 0D", ""},
           Row{39, "0A 'ST,GS-  12.34,kg' 0D", "misread-weight"},
           Row{39, "0A 'ST,GS   12.34,kg' 0D", ""},
       }) {
    const auto doubt = weightDoubt(*findScalesModel(row.model), fixture::bytes(row.frame));
    EXPECT_EQ(doubt ? doubt->code : "", row.code) << row.model << ": " << row.frame;
  }
}

TEST(Notes, KnowOtherOutputsOfTheSameScale) {
  struct Row {
    int model;
    const char* bytes;
    bool known;
  };
  for (const Row& row : {
           Row{8, "'WG004.139kg3D' 0D 0A", true},
           Row{11, "'   1.250KG ' 0D 0A", true},
           Row{13, "06 01 02 'S   123.7 g' 1D 03 04", true},
           Row{16, "02 'GW:0023.45(kg)' 03", true},
           Row{24, "02 '   1.250KG ' 0D 0A", true},
           Row{35, "'SUI I' 0D 0A", true},
           Row{8, "'ww012.345kg' 0D 0A", false},
           Row{13, "06 01 02 'S  1.250kg' 20 03 04", false},
           Row{1, "02 '   1.250KG ' 0D 0A", false},
       }) {
    EXPECT_EQ(notes::otherFormatIn(row.model, fixture::bytes(row.bytes)).has_value(), row.known)
        << row.model << ": " << row.bytes;
  }
}

}  // namespace
}  // namespace weigh
