#include "Fields.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>

#include "FrameSearch.h"

namespace recognise {

namespace {

void add(std::vector<std::size_t>& places, std::size_t begin, std::size_t size) {
  const std::size_t before = places.size();
  places.resize(before + size);
  std::iota(places.begin() + static_cast<std::ptrdiff_t>(before), places.end(), begin);
}

void add(std::vector<std::size_t>& places, const Mark& mark) {
  // Marks that no byte speaks of stand everywhere or nowhere.
  if (mark.mask != 0) places.push_back(mark.at);
}

std::vector<std::size_t> allPlacesOf(const NumberField& field, Frame frame) {
  std::vector<std::size_t> places = placesOf(field, frame);
  add(places, field.negative);
  if (!field.decimals.factors.empty()) places.push_back(field.decimals.at);
  return places;
}

std::set<std::size_t> fixedPlaces(const ProtocolSheet& sheet, Frame frame) {
  std::set<std::size_t> places;
  for (const FixedBytes* fixed : {&sheet.fixed, &sheet.orFixed}) {
    for (const FixedByte& byte : fixed->view()) {
      const std::size_t place = byte.placeIn(frame.size());
      // One byte may be fixed to the signs.
      if (byte.oneOf.size() == 1 && byte.oneOf.contains(frame[place])) places.insert(place);
    }
  }
  return places;
}

/// How a notation writes a digit; none for one that has bits and no digits.
const TextNotation* textOf(const NumberField& field) {
  return std::get_if<TextNotation>(&field.written);
}

}  // namespace

std::vector<std::size_t> placesOf(const NumberField& field, Frame frame) {
  std::vector<std::size_t> places;
  add(places, field.at,
      field.size == NumberField::kToTheEnd ? frame.size() - field.at : field.size);
  add(places, field.thenAt, field.thenSize);
  return places;
}

bool isRead(const NumberField& field, Frame frame, std::size_t place) {
  const TextNotation* text = textOf(field);
  if (text == nullptr) return true;
  std::vector<std::uint8_t> changed(frame.begin(), frame.end());
  const double number = field.in(frame).number;
  constexpr std::array<std::uint8_t, 2> kDigits = {1, 5};
  return std::ranges::any_of(kDigits, [&](std::uint8_t digit) {
    changed[place] = static_cast<std::uint8_t>(text->zero + digit);
    return field.in(changed).number != number;
  });
}

std::vector<FrameField> fieldsOf(const ProtocolSheet& sheet, Frame frame) {
  std::vector<std::size_t> stable;
  if (sheet.motion.told == Motion::Told::ByFrame) {
    add(stable, sheet.motion.mark);
    add(stable, sheet.motion.also);
  }
  std::vector<std::size_t> code;
  add(code, sheet.overload);
  std::vector<FrameField> fields = {{FrameField::Name::Weight, allPlacesOf(sheet.weight, frame)},
                                    {FrameField::Name::Price, allPlacesOf(sheet.price, frame)},
                                    {FrameField::Name::Cost, allPlacesOf(sheet.cost, frame)},
                                    {FrameField::Name::Stable, std::move(stable)},
                                    {FrameField::Name::Code, std::move(code)}};
  const std::set<std::size_t> fixed = fixedPlaces(sheet, frame);
  for (FrameField& field : fields) {
    std::erase_if(field.bytes, [&](std::size_t place) { return fixed.contains(place); });
    std::ranges::sort(field.bytes);
  }
  std::erase_if(fields, [](const FrameField& field) { return field.bytes.empty(); });
  return fields;
}

bool hidesWeight(const ProtocolSheet& sheet, Frame frame) {
  const TextNotation* text = textOf(sheet.weight);
  const Said said = readingOf(sheet, frame);
  if (text == nullptr || said.code != kSuccess || said.reading.weight != 0.0) return false;
  const std::set<std::size_t> fixed = fixedPlaces(sheet, frame);
  bool zeros = false;
  bool others = false;
  for (const std::size_t place : placesOf(sheet.weight, frame)) {
    const std::uint8_t byte = frame[place];
    if (byte > text->zero && byte <= text->zero + 9) return true;
    zeros |= byte == text->zero;
    others |= byte != text->zero && byte != ' ' && byte != '.' && !fixed.contains(place);
  }
  // Behind a zero there may be a unit.
  return others && !zeros;
}

std::vector<std::size_t> unreadBytes(const ProtocolSheet& sheet, Frame frame) {
  const TextNotation* text = textOf(sheet.weight);
  std::vector<std::size_t> unread = placesOf(sheet.weight, frame);
  // Behind a comma that follows the point other values begin.
  const auto isPoint = [&](std::size_t place) {
    return frame[place] == '.' || frame[place] == ',';
  };
  const auto point = std::ranges::find_if(unread, isPoint);
  if (point != unread.end()) {
    const auto isComma = [&](std::size_t place) { return frame[place] == ','; };
    unread.erase(std::find_if(point + 1, unread.end(), isComma), unread.end());
  }
  std::erase_if(unread, [&](std::size_t place) {
    const std::uint8_t byte = frame[place];
    const bool ofNumber = byte == '.' || byte == ',' || byte == '-' ||
                          (text != nullptr && byte >= text->zero && byte <= text->zero + 9);
    return !ofNumber || isRead(sheet.weight, frame, place);
  });
  return unread;
}

}  // namespace recognise
