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
  /// room left, which is so long before a tree would be full.
  bool add(const Line& line);
  /// Closes the context that was entered last, if one is open. There is always room for that.
  void leave();
  void clear();

  /// Gives each line to `bool take(const Line&)`, until that is false.
  template <typename Take>
  bool allTaken(Take take) const {
    for (std::size_t at = 0; at < m_size;) {
      if (!take(lineAt(at))) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kCapacity = 1024;
  /// A line is its kind and two texts with their zeros.
  static constexpr std::size_t kFrame = 3;

  void write(const Line& line);
  /// Moves `at` behind the line.
  Line lineAt(std::size_t& at) const;

  std::unique_ptr<std::array<char, kCapacity>> m_bytes;
  std::size_t m_size = 0;
  /// Contexts to be left yet.
  std::size_t m_open = 0;
};
