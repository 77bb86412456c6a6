#pragma once

#include <vector>

#include "ProtocolSheet.h"

// What the bytes of a good frame are for, by its sheet.

namespace recognise {

struct FrameField {
  enum class Name { Weight, Price, Cost, Stable, Code };
  Name name;
  /// Positions from 0, ascending.
  std::vector<std::size_t> bytes;
};
/// The parts of the reading with the bytes that they are read from, signs and places of decimals
/// among them and fixed bytes not; parts that no byte speaks of are left out.
std::vector<FrameField> fieldsOf(const ProtocolSheet& sheet, Frame frame);

/// Where the number itself stands, without its sign and the place of its decimals.
std::vector<std::size_t> placesOf(const NumberField& field, Frame frame);

/// Whether another digit at that place of the field would make another number of it. A number may
/// end before its field does, and scales put more into it than a driver reads.
bool isRead(const NumberField& field, Frame frame, std::size_t place);

/// The frame is good and its weight 0, but its field holds other than zeros, blanks and a point:
/// digits that the driver doesn't read, or no zero at all.
bool hidesWeight(const ProtocolSheet& sheet, Frame frame);
/// Digits, points and minuses of the weight's field that its number doesn't use.
std::vector<std::size_t> unreadBytes(const ProtocolSheet& sheet, Frame frame);

}  // namespace recognise
