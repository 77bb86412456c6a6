#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace recognise {

/// What bytes look like in which no protocol finds a frame.
enum class Noise {
  /// Too few to say.
  TooFew,
  /// Letters, digits and line ends: speed and parity are right, the protocol is none of ours.
  CleanText,
  /// Text whose top bit makes every byte even: 7 data bits and even parity, read as 8 without.
  EvenParity,
  /// The same with odd parity.
  OddParity,
  /// Many bytes that neither text nor digits have, or that change level seldom: what a line looks
  /// like that is read at another speed.
  WrongSpeed,
  /// None of these.
  Unclear,
};

Noise judgeNoise(std::span<const std::uint8_t> bytes);

}  // namespace recognise
