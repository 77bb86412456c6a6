#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "Doctor.h"
#include "Models.h"
#include "Recognise.h"

namespace weigh {

/// What came in on a line, piece by piece.
struct Heard {
  /// Before anything was asked.
  recognise::Bytes unasked;
  /// Behind each request.
  std::vector<recognise::Bytes> answers;
  /// The host ended the connection, or the adapter went.
  bool hungUp = false;
  /// Characters that the hardware found wrong; 0 where it doesn't count them.
  int framingErrors = 0;
  int parityErrors = 0;

  recognise::Bytes all() const;
};

/// How long listening may take.
std::chrono::milliseconds longestListening(const ProtocolSheet& sheet);

/// Listens to the line of a model, then asks for a weight and listens again.
Heard listen(const Connection& connection, const ProtocolSheet& sheet, const Interrupt& interrupt);

/// What a serial line that answers well brings without being asked; none for a model that transmits
/// by itself. A protocol without checks takes any bytes for a weight.
std::optional<Finding> unaskedNote(const Connection& connection, const ScalesModel& model,
                                   const Interrupt& interrupt);

/// What is the matter with a line on which no poll of `model` was answered.
Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection);

}  // namespace weigh
