#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

#include "ScaleModel.h"

namespace sim {

/// How a scale misbehaves. All kinds may be combined; garbage stands before a cut frame whole.
struct Faults {
  /// Listens and says nothing.
  bool silent = false;
  /// Bytes before each frame; none of them opens a frame of any model.
  std::size_t garbage = 0;
  /// Damages one frame of so many, the first one first; 0 none. The damage hits a byte by which
  /// the component can tell, where the model has one.
  int corruptEvery = 0;
  /// Sends only so many bytes of each frame.
  std::optional<std::size_t> cut = {};
  /// Pause before each byte.
  std::chrono::milliseconds dribble{0};
  /// The line goes away after so many frames, again and again; 0 never.
  int hangUpAfter = 0;
  /// Only so many frames are spoiled, and then all is well; 0 all.
  int frames = 0;
  /// Sends this without end and without being asked, and nothing else.
  enum class Endless { Nothing, Garbage, Frames };
  Endless endless = Endless::Nothing;
  /// Speed of the endless sending; 0 as fast as the line takes it.
  int bytesPerSecond = 0;
};

/// One frame as it goes out.
struct Transmission {
  Bytes bytes;
  /// Pause before each of them; 0 for all at once.
  std::chrono::milliseconds byteByByte{0};
  bool hangUp = false;
};

/// Spoils the frames that a scale wants to send.
class Misbehaviour {
 public:
  explicit Misbehaviour(Faults faults = {}) : faults_(faults) {}

  /// What goes out in place of the model's `frame`.
  Transmission transmit(const ScaleModel& model, Bytes frame);
  /// The next `count` bytes of what is sent without end.
  Bytes endless(const Bytes& frame, std::size_t count) const;
  /// So many of them went out.
  void sentEndless(std::size_t count) { endlessSent_ += count; }

 private:
  Faults faults_;
  int framesSeen_ = 0;
  std::size_t endlessSent_ = 0;
};

}  // namespace sim
