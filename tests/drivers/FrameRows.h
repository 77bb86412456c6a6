#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <string>

#include "HexBytes.h"
#include "ProtocolSheet.h"

/// What a driver makes of a frame. Outputs that aren't given are 0.
struct Says {
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  long stable = 0;
  int code = kSuccess;
  Outcome::Next next = Outcome::Next::EndPoll;
  /// False for a frame that is none: the outputs stay as they are at the poll's entry.
  bool good = true;
};

/// A frame as a scale would send it, and what it means by the scale's protocol.
struct FrameRow {
  int model;
  /// As `fixture::bytes` takes it.
  std::string frame;
  /// What the scale says, or what is odd about it.
  std::string meaning;
  Says says;
};

/// The rows of a model in tests/data/frames.txt; the first one is good. Wrong lengths stand there
/// only where length is nearly all that is checked: the tests against any bytes try them with
/// every model.
std::span<const FrameRow> frameRowsOf(int model);

/// A frame in a heap block of just its length, so that the address sanitizer sees a read of the
/// first byte behind it.
class TightFrame {
 public:
  explicit TightFrame(Frame bytes) : size_(bytes.size()), block_(new std::uint8_t[bytes.size()]) {
    std::copy(bytes.begin(), bytes.end(), block_.get());
  }
  operator Frame() const { return {block_.get(), size_}; }

 private:
  std::size_t size_;
  std::unique_ptr<std::uint8_t[]> block_;
};
