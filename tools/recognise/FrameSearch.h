#pragma once

#include <cstddef>
#include <vector>

#include "ProtocolSheet.h"

// Where a protocol finds its frames in bytes that were received, without a line: what
// PolledScales does with a port, by the same sheets.

namespace recognise {

/// How the bytes came.
enum class Origin {
  /// By themselves: they may begin and end inside a frame.
  Stream,
  /// As the one answer to a request.
  Answer,
};

/// A frame that a driver would read and take for good: it begins and ends as the style of reading
/// wants it, and the protocol's own check agrees.
bool isTaken(const ProtocolSheet& sheet, Frame frame);

/// What a good frame says.
struct Said {
  /// With what the driver sets before a poll, where the frame doesn't speak of it.
  Outputs reading;
  int code = 0;
  Outcome::Next next = Outcome::Next::EndPoll;
};
/// For frames that are taken only.
Said readingOf(const ProtocolSheet& sheet, Frame frame);

/// The frames of one protocol in a run of bytes, which outlives them.
struct Found {
  std::vector<Frame> good;
  /// What lies outside the good frames and would have been read as a frame, and refused.
  std::size_t bad = 0;
  /// Bytes that stand in good frames.
  std::size_t explained = 0;
  /// Bytes at the ends of a stream that may belong to frames which weren't heard whole.
  std::size_t cut = 0;
};
Found findFrames(const ProtocolSheet& sheet, Frame bytes, Origin origin);

}  // namespace recognise
