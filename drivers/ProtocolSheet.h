#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ByteRow.h"
#include "Notation.h"
#include "ReadStyle.h"
#include "ResultCode.h"
#include "SerialPort.h"

// What a driver states about its scale, row by row as the scale's paper does, and what follows from
// it. PolledScales does the rest.

/// What the caller gets from a poll.
struct Outputs {
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  /// The weight is at rest.
  bool stable = false;
};

/// How a poll goes on after a frame.
struct Outcome {
  enum class Next {
    /// The poll ends as polls do, and the port is closed unless the connection is to be kept.
    EndPoll,
    /// The next attempt begins; the code stands unless a later frame brings another.
    AskAgain,
    /// The poll ends, and the port is closed even if the connection is to be kept.
    HangUp,
  };

  int code = kSuccess;
  Next next = Next::EndPoll;
};

constexpr Outcome endPoll(int code = kSuccess) { return {code, Outcome::Next::EndPoll}; }
constexpr Outcome askAgain(int code) { return {code, Outcome::Next::AskAgain}; }
constexpr Outcome hangUp(int code) { return {code, Outcome::Next::HangUp}; }

/// The form of a character on a serial line. The speed is the user's setting in all protocols.
struct Framing {
  COMPort::DataBits dataBits = COMPort::Bits8;
  COMPort::Parity parity = COMPort::None;
  COMPort::StopBits stopBits = COMPort::One;

  bool operator==(const Framing&) const = default;
  /// "8N1".
  std::string text() const;
  /// Bits on the line for one byte, the start bit among them.
  int bits() const;
};
inline constexpr Framing k8N1 = {};
inline constexpr Framing k8E1 = {.parity = COMPort::Even};
inline constexpr Framing k8E2 = {.parity = COMPort::Even, .stopBits = COMPort::Two};

/// What the outputs hold before anything is read, and so after a poll without a good frame.
enum class AtEntry {
  AllZero,
  /// `stable` is false, the others stay as the caller had them.
  Moving,
  /// `stable` is true, the others stay as the caller had them.
  Stable,
};

/// Size of the reads that throw away what waits on the line before an attempt.
inline constexpr std::size_t kSmallDrain = 10240;
inline constexpr std::size_t kLargeDrain = 102400;

/// What is sent for a weight.
struct Request {
  ByteRow first = {};
  int pause_ms = 0;
  /// Follows the pause, if it isn't empty.
  ByteRow second = {};
  /// So many bytes of the frame buffer go out behind `first` in the same write: zeros in the
  /// first attempt of a poll, later the head of the last answer.
  std::size_t frameHead = 0;

  bool operator==(const Request&) const = default;
  /// All that goes out in the first attempt of a poll.
  std::vector<std::uint8_t> bytesOfFirstAttempt() const;
};
/// For a scale that transmits by itself.
inline constexpr Request kNoRequest = {};

/// How often a scale is asked, and how long it is waited for.
struct Asking {
  int attempts;
  int budget_ms;
  /// The attempts of a poll share one budget instead of having one each.
  bool oneBudgetForAll = false;
  /// All attempts are made, whatever the scale answers; the last good frame stands.
  bool allAttempts = false;
};
inline constexpr Asking kThreeTimes_500ms = {.attempts = 3, .budget_ms = kLongestBudget_ms};
inline constexpr Asking kThreeTimes_300ms = {.attempts = 3, .budget_ms = 300};
inline constexpr Asking kTwice_500ms = {.attempts = 2, .budget_ms = kLongestBudget_ms};
inline constexpr Asking kThreeTimesIn_500ms = {
    .attempts = 3, .budget_ms = kLongestBudget_ms, .oneBudgetForAll = true};
inline constexpr Asking kAlwaysThreeTimes_300ms = {
    .attempts = 3, .budget_ms = 300, .allAttempts = true};

/// What has to stand at a place of the frame: one of some bytes.
struct FixedByte {
  consteval FixedByte(int offset, std::uint8_t value) : at(offset), oneOf{value} {}
  consteval FixedByte(int offset, ByteRow values) : at(offset), oneOf(values) {}

  /// From 0; from the frame's end if negative, -1 for the last byte.
  int at;
  ByteRow oneOf;

  /// The place in a frame of that size.
  constexpr std::size_t placeIn(std::size_t frameSize) const {
    return static_cast<std::size_t>(at < 0 ? static_cast<int>(frameSize) + at : at);
  }
};

/// All that has to. One that has too many doesn't compile.
class FixedBytes {
 public:
  static constexpr std::size_t kCapacity = 6;

  constexpr FixedBytes() = default;
  consteval FixedBytes(std::initializer_list<FixedByte> bytes) {
    for (const FixedByte& byte : bytes) bytes_.at(size_++) = byte;
  }
  constexpr std::span<const FixedByte> view() const { return std::span(bytes_).first(size_); }

 private:
  static constexpr FixedByte kNone = {0, ByteRow{}};
  std::array<FixedByte, kCapacity> bytes_ = {kNone, kNone, kNone, kNone, kNone, kNone};
  std::size_t size_ = 0;
};
inline constexpr FixedBytes kNothingFixed = {};

struct Checksum {
  std::size_t at = 0;
  /// What it has to be; null for a frame that has none, or whose own isn't tested.
  std::uint8_t (*of)(Frame frame) = nullptr;
};

/// Whether the weight is at rest.
struct Motion {
  enum class Told { ByFrame, AlwaysAtRest, AlwaysMoving };

  Told told;
  Mark mark = kAlways;
  Mark also = kAlways;
  /// What both marks together mean, and their absence doesn't.
  bool atRest = true;

  constexpr bool isAtRest(Frame frame) const {
    if (told != Told::ByFrame) return told == Told::AlwaysAtRest;
    return (mark.isIn(frame) && also.isIn(frame)) == atRest;
  }
};
inline constexpr Motion kAlwaysAtRest = {Motion::Told::AlwaysAtRest};
inline constexpr Motion kAlwaysMoving = {Motion::Told::AlwaysMoving};
consteval Motion atRestIf(Mark mark, Mark also = kAlways) {
  return {Motion::Told::ByFrame, mark, also, true};
}
consteval Motion movingIf(Mark mark) { return {Motion::Told::ByFrame, mark, kAlways, false}; }

/// What is sent to make the scale do something.
struct Command {
  enum class Afterwards {
    Nothing,
    /// One read of up to 100 bytes, thrown away.
    ReadOnce,
    /// Reads until nothing comes, all thrown away.
    Drain,
  };

  ByteRow bytes;
  /// After each write.
  int pause_ms;
  int times = 1;
  Afterwards afterwards = Afterwards::Nothing;
};

/// Tells a price-computing scale the price, as `priceFrame` writes it behind the command's bytes.
struct PriceCommand {
  Command head;
  /// The scale's digit 0.
  std::uint8_t zero;

  Command of(long price) const;
};

/// Of a scale without a price: a number that selects a command when it is given as one.
struct SetupCommand {
  long number;
  Command command;
};

/// Commands that aren't named the scale lacks: they give "not supported" and leave the port alone.
struct Commands {
  std::optional<Command> tare = std::nullopt;
  std::optional<Command> zero = std::nullopt;
  std::optional<PriceCommand> price = std::nullopt;
  std::span<const SetupCommand> setup = {};

  bool takePrice() const { return price || !setup.empty(); }
  /// None for a price that stands for no command: that is answered "not supported" with the port
  /// left open.
  std::optional<Command> ofPrice(long price) const;
};
inline constexpr Commands kNoCommands = {};

/// What the numbers of a driver mean.
enum class WeightUnit {
  /// The number of the display with its decimal point; kilograms, as these scales are set up.
  Kilogram,
  Gram,
  /// The digits of the display without its decimal point; where that stands, the scale doesn't say.
  AsShown,
};
enum class MoneyUnit {
  None,
  /// Money units.
  Whole,
  Hundredth,
  /// The number as the scale counts it.
  AsCounted,
};

/// The protocol of one model. What every paper tells has to be stated, or the sheet doesn't
/// compile; what has a default is odd, and a sheet without it is of a scale without it.
struct ProtocolSheet {
  Framing line;
  AtEntry atEntry;

  std::size_t drainSize;
  Request request;
  ReadStyle read;
  Asking asking;

  /// A frame is good if its length is that of `read`, all that is fixed stands there, or all of
  /// `orFixed` if there is any, and the checksum agrees.
  FixedBytes fixed;
  FixedBytes orFixed = {};
  Checksum checksum = {};

  NumberField weight;
  NumberField price = {};
  NumberField cost = {};
  Motion motion;
  /// The motion is taken from every frame of the right length, also from one that isn't good.
  bool motionOfBadFrames = false;

  /// An overloaded scale gives the code 7, and 0 in motion.
  Mark overload = kNever;
  /// The code of a frame without a weight; of most it is a good zero.
  int withoutWeight = kSuccess;
  /// What else the frame says, called when all of the above is taken from it.
  Outcome (*judge)(Frame frame, Outputs& outputs) = nullptr;

  WeightUnit weightUnit;
  MoneyUnit moneyUnit = MoneyUnit::None;

  Commands commands;
  /// Whatever is thrown closes the port; one protocol leaves it as it is.
  bool closeOnException = true;
};

// What a sheet implies.

/// The scale isn't asked for its weight.
bool transmitsByItself(const ProtocolSheet& sheet);
/// A frame can say that the scale is overloaded.
bool showsOverload(const ProtocolSheet& sheet);
/// Length of a frame; 0 for a protocol whose frames end by a terminator.
std::size_t frameLength(const ProtocolSheet& sheet);
/// The fewest bytes of a frame.
std::size_t shortestFrame(const ProtocolSheet& sheet);
/// Whether the style of reading takes the byte for the first of a frame.
bool mayBegin(const ProtocolSheet& sheet, std::uint8_t byte);
/// Whether the terminator stands at the end.
bool endsFrame(const TerminatorRead& style, Frame frame);
/// Whether the style reads no further.
bool isWhole(const TerminatorRead& style, Frame frame);

/// The outputs as a poll begins, from what the caller has in them.
Outputs outputsAtEntry(const ProtocolSheet& sheet, const Outputs& ofCaller);

/// Where a frame of the right length isn't as the protocol wants it; the first of `fixed` and
/// `orFixed` that lacks fewest. The checksum isn't looked at.
std::vector<FixedByte> wrongBytes(const ProtocolSheet& sheet, Frame frame);
/// What one protocol takes of a frame before it is judged.
void takeMotionOfAnyFrame(const ProtocolSheet& sheet, Frame frame, Outputs& outputs);
/// Is this a good frame? For any bytes whatever.
bool isGood(const ProtocolSheet& sheet, Frame frame);
/// What does it say? For good frames only; changes the outputs that the frame speaks of.
Outcome parse(const ProtocolSheet& sheet, Frame frame, Outputs& outputs);
