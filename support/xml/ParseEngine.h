#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

class StringBuffer;

/// A cursor over text. It reads the caller's bytes in place, so they must outlive it; a NUL byte
/// is the end of the text, and nothing behind the last byte is ever looked at. What is captured
/// points into the text too. What copies throws std::bad_alloc.
class ParseEngine {
 public:
  explicit ParseEngine(std::string_view text);

  /// False for an engine over a null pointer.
  bool hasText() const { return m_text.data() != nullptr; }
  bool atEnd() const { return m_pos == m_text.size(); }
  /// What has not been read yet.
  std::string_view rest() const { return m_text.substr(m_pos); }

  /// True if this byte comes next.
  bool at(char c) const { return m_pos < m_text.size() && m_text[m_pos] == c; }
  bool at(std::string_view text) const { return rest().starts_with(text); }
  /// The same for a text in whatever case (ASCII).
  bool atNoCase(std::string_view text) const;
  /// Passes the byte or text if it comes next.
  bool pass(char c);
  bool pass(std::string_view text);
  bool passNoCase(std::string_view text);
  void skipWhiteSpace();
  void skipToEnd() { m_pos = m_text.size(); }

  /// Takes everything up to, not including, the first byte of the classes (XmlByteClass), or up
  /// to the end.
  std::string_view captureToNext(std::uint8_t classes);
  /// The same with one byte to stop at.
  std::string_view captureToNextChar(char stop);
  /// Finds the text and moves behind it; false, without a move, if it doesn't come.
  bool seekAndSkipExact(std::string_view text);
  /// Appends everything through the text, found in whatever case, and moves behind it; false,
  /// without a move or a copy, if it doesn't come.
  bool seekAndCopy(std::string_view text, StringBuffer& out);
  /// Moves to the first `a` or `b`, or to the end. False only if `b` comes first.
  bool skipUntilChar2(char a, char b);
  /// Appends everything through the `close` that brings the depth to 0, each `open` adding 1 to
  /// it. Without one, everything is appended and the result is false.
  bool seekAndCopyToClosing(char open, char close, int depth, StringBuffer& out);

 private:
  std::string_view m_text;
  std::size_t m_pos = 0;
};
