#pragma once

#include <span>
#include <vector>

#include "Models.h"
#include "Recognise.h"

// What an unknown scale may be asked: weight requests and nothing else, in an order in which two of
// them, one behind the other, never make a command.

namespace recognise {

/// A weight request, and the models that it is the request of. They also share the line's setting.
struct Question {
  const Request* request = nullptr;
  Framing line;
  /// The time that the drivers wait for an answer; the longest of the models'.
  int budget_ms = 0;
  /// Empty for a request that only stands between two others.
  std::vector<const ScalesModel*> models;

  /// All that goes out, as in the first attempt of a poll.
  Bytes bytes() const { return request->bytesOfFirstAttempt(); }
  /// From the first byte sent to the end of the waiting, when no answer comes.
  int longest_ms() const { return request->pause_ms + budget_ms; }
};

/// The requests of those of the models that are asked, in the order in which they may go out again
/// and again. Lines of text come first and the first of them twice: what a scale has gathered of
/// foreign bytes is over with the line's end.
std::vector<Question> questionsFor(std::span<const ScalesModel* const> models);

/// Whether a scale that sees `next` follow `before` finds a command in it: at the beginning of
/// `next`, across the border, or, unless it is a line of text, anywhere.
bool makesCommand(const Bytes& before, const Bytes& next);

}  // namespace recognise
