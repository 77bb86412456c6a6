#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "Bytes.h"
#include "ReadStyle.h"
#include "ResultCode.h"
#include "SerialPort.h"

// What a driver states about its scale. PolledScales does the rest.

/// The bytes received in one attempt.
using Frame = std::span<const std::uint8_t>;

/// The outputs of a poll; a parse changes those that its frame speaks of.
struct Reading {
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  /// Non-zero when the weight doesn't move.
  long stable = 0;
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

/// What the outputs hold before anything is read, and so after a poll without a good frame.
enum class AtEntry {
  AllZero,
  /// `stable` is 0, the others stay as the caller had them.
  Moving,
  /// `stable` is 1, the others stay as the caller had them.
  Stable,
};

/// The speed is the user's setting in all protocols.
struct LineSettings {
  COMPort::Parity parity = COMPort::None;
  COMPort::DataBits dataBits = COMPort::Bits8;
  COMPort::StopBits stopBits = COMPort::One;
};

/// Size of the reads that throw away what waits on the line before an attempt.
inline constexpr std::size_t kSmallDrain = 10240;
inline constexpr std::size_t kLargeDrain = 102400;

/// What is sent for a weight. Empty for a scale that transmits by itself.
struct Request {
  Bytes first = {};
  int pause_ms = 0;
  /// Follows the pause, if it isn't empty.
  Bytes second = {};
  /// So many bytes of the frame buffer go out behind `first` in the same write: zeros in the
  /// first attempt of a poll, later the head of the last answer.
  std::size_t frameHead = 0;
};

/// What is sent to make the scale do something.
struct Command {
  enum class Afterwards {
    Nothing,
    /// One read of up to 100 bytes, thrown away.
    ReadOnce,
    /// Reads until nothing comes, all thrown away.
    Drain,
  };

  Bytes bytes = {};
  /// After each write.
  int pause_ms = 0;
  int times = 1;
  Afterwards afterwards = Afterwards::Nothing;
};

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

/// The protocol of one model.
struct ProtocolSheet {
  LineSettings line = {};
  AtEntry atEntry = AtEntry::AllZero;

  std::size_t drainSize = kLargeDrain;
  Request request = {};
  ReadStyle read = LengthRead{};
  int budget_ms = 500;
  /// The attempts of a poll share one budget instead of having one each.
  bool oneBudgetForAll = false;
  int attempts = 3;

  /// Looks at every frame before it is judged; most protocols have no need of it.
  void (*glance)(Frame frame, Reading& reading) = nullptr;
  /// Is this a good frame? Length and fixed bytes, for any bytes whatever.
  bool (*isGood)(Frame frame) = nullptr;
  /// What does it say? Called with good frames only.
  Outcome (*parse)(Frame frame, Reading& reading) = nullptr;

  /// Commands that the scale lacks give "not supported" and leave the port alone.
  std::optional<Command> tare = std::nullopt;
  std::optional<Command> zero = std::nullopt;
  /// The command for a price. None for a price that stands for no command: that is answered
  /// "not supported" with the port left open.
  std::optional<Command> (*price)(long price) = nullptr;

  /// Whatever is thrown closes the port; one protocol leaves it as it is.
  bool closeOnException = true;

  WeightUnit weightUnit = WeightUnit::Kilogram;
  MoneyUnit moneyUnit = MoneyUnit::None;
};
