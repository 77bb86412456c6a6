#include "FrameSearch.h"

#include <algorithm>
#include <variant>

namespace recognise {

namespace {

/// The frame that a driver would read if it looked from `bytes` on; all that is left where the
/// bytes end before it does.
Frame frameAtHead(const ProtocolSheet& sheet, Frame bytes) {
  if (const std::size_t length = frameLength(sheet); length != 0) {
    return bytes.first(std::min(length, bytes.size()));
  }
  const auto& style = std::get<TerminatorRead>(sheet.read);
  std::size_t size = std::min(style.minLength, bytes.size());
  while (size < bytes.size() && !isWhole(style, bytes.first(size))) ++size;
  return bytes.first(size);
}

/// Whether all bytes whatever, if only they are of the right number, are taken.
bool takesAnything(const ProtocolSheet& sheet) {
  return std::holds_alternative<LengthRead>(sheet.read) && sheet.fixed.view().empty();
}

/// A scale that transmits lines may let the end of one be the beginning of the next.
std::size_t sharedWithNext(const ProtocolSheet& sheet, Frame frame) {
  if (!transmitsByItself(sheet)) return 0;
  static constexpr std::size_t kLineEnd = 2;
  for (std::size_t size = std::min(kLineEnd, frame.size() - 1); size > 0; --size) {
    if (std::ranges::equal(frame.first(size), frame.last(size))) return size;
  }
  return 0;
}

class Search {
 public:
  Search(const ProtocolSheet& sheet, Frame bytes) : sheet_(sheet), bytes_(bytes) {}

  Found stream() {
    std::size_t covered = 0;
    for (std::size_t at = 0; at < bytes_.size();) {
      const Frame frame = frameAtHead(sheet_, bytes_.subspan(at));
      if (!isTaken(sheet_, frame)) {
        ++at;
        continue;
      }
      // What comes before the first frame may be the rest of one whose head wasn't heard.
      if (found_.good.empty()) {
        found_.cut = at < frame.size() ? at : 0;
      } else if (at > covered) {
        addBad(bytes_.subspan(covered, at - covered));
      }
      found_.good.push_back(frame);
      const std::size_t end = at + frame.size();
      found_.explained += end - std::max(at, covered);
      covered = end;
      at = end - sharedWithNext(sheet_, frame);
    }
    if (found_.good.empty()) {
      addBad(bytes_);
    } else if (bytes_.size() - covered < found_.good.back().size()) {
      found_.cut += bytes_.size() - covered;
    }
    return found_;
  }

  Found answer() {
    const auto begin =
        std::ranges::find_if(bytes_, [&](std::uint8_t byte) { return mayBegin(sheet_, byte); });
    const Frame rest = bytes_.subspan(static_cast<std::size_t>(begin - bytes_.begin()));
    if (rest.empty()) return found_;
    const Frame frame = frameAtHead(sheet_, rest);
    if (isTaken(sheet_, frame)) {
      found_.good.push_back(frame);
      found_.explained = frame.size();
    } else {
      ++found_.bad;
    }
    return found_;
  }

 private:
  /// As many frames as a driver would have read from there. The last one may have been cut by the
  /// end of the listening.
  void addBad(Frame gap) {
    while (!gap.empty()) {
      if (!mayBegin(sheet_, gap.front())) {
        gap = gap.subspan(1);
        continue;
      }
      gap = gap.subspan(frameAtHead(sheet_, gap).size());
      ++found_.bad;
    }
  }

  const ProtocolSheet& sheet_;
  Frame bytes_;
  Found found_;
};

}  // namespace

bool isTaken(const ProtocolSheet& sheet, Frame frame) {
  if (frame.empty() || !mayBegin(sheet, frame.front())) return false;
  if (const auto* style = std::get_if<TerminatorRead>(&sheet.read);
      style != nullptr && (frame.size() > style->capacity || !endsFrame(*style, frame))) {
    return false;
  }
  return isGood(sheet, frame);
}

Said readingOf(const ProtocolSheet& sheet, Frame frame) {
  Said said;
  said.reading = outputsAtEntry(sheet, {});
  const Outcome outcome = parse(sheet, frame, said.reading);
  said.code = outcome.code;
  said.next = outcome.next;
  return said;
}

Found findFrames(const ProtocolSheet& sheet, Frame bytes, Origin origin) {
  // A protocol that takes anything would find itself everywhere; one whole frame and nothing
  // beside it is the least that speaks for it.
  if (takesAnything(sheet) && bytes.size() != frameLength(sheet)) return {};
  Search search(sheet, bytes);
  return origin == Origin::Stream && !takesAnything(sheet) ? search.stream() : search.answer();
}

}  // namespace recognise
