#pragma once

#include <array>
#include <cstddef>
#include <memory>

/// Lines of a log that nobody has read yet, one behind the other in one block of memory. Most calls
/// end well and nobody reads their log, which takes several blocks a line as a tree. Not locked:
/// the logger does that.
class LogDraft {
 public:
  enum class Kind : char { Error, Info, Xml, Data, Enter, Leave };

  struct Line {
    Kind kind;
    /// Of data; of a context its name.
    const char* tag;
    const char* text;
  };

  /// Texts are copied; a null pointer is an empty text. False, and nothing added, if there is no
  /// room left, which is so long before a tree would be full or too deep.
  bool add(const Line& line);
  void clear() { m_size = 0; }

  /// Gives each line to `take(const Line&)` and is empty then.
  template <typename Take>
  void handOver(Take take) {
    for (std::size_t at = 0; at < m_size;) take(lineAt(at));
    clear();
  }

 private:
  static constexpr std::size_t kCapacity = 1024;

  /// Moves `at` behind the line.
  Line lineAt(std::size_t& at) const;

  std::unique_ptr<std::array<char, kCapacity>> m_bytes;
  std::size_t m_size = 0;
};
