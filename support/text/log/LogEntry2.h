#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ExtPtrArray.h"
#include "KestrumObject.h"
#include "StringBuffer.h"
#include "ValidityWord.h"

/// One node of a log's tree: a line, tagged data, or a context with children.
class LogEntry2 : public KestrumObject {
 public:
  LogEntry2() = default;
  /// Ends the whole tree below, without recursion and without a need for memory.
  ~LogEntry2() override;

  // What the node is: to be called once -----------------------------------------------------------

  /// `startTick` is 0 for a context that measures no time.
  bool SetContext(const char* name, std::uint32_t startTick);
  bool SetError(const char* text) { return SetLine('E', text); }
  bool SetInfo(const char* text) { return SetLine('I', text); }
  bool SetXml(const char* xml) { return SetLine('X', xml); }
  bool SetMessage(const char* tag, const char* value);

  // The tree --------------------------------------------------------------------------------------

  bool isContext() const { return m_kind == 'C'; }
  int numChildren() const { return m_children ? m_children->getSize() : 0; }
  bool isFull() const { return numChildren() >= kMostChildren; }
  /// Takes the node over; one that has an owner already is refused.
  bool appendLogEntry(std::unique_ptr<LogEntry2> entry);
  /// The stack of open contexts holds this node, which no parent may take any more.
  void setOwned() { m_ownerMark = kOwned; }
  /// Removes the last child if it is a context without children.
  void CheckDeleteEmptyContext();
  /// Ends the measuring: from now on the time is known.
  void computeElapsed(std::uint32_t nowTick);
  bool isTimed() const { return m_elapsed != 0; }
  std::uint32_t getElapsed() const { return m_elapsed; }

  // Rendering: appends to `out` with lines that end in CR LF; false, and nothing, without memory

  bool GetText(StringBuffer& out, int depth) const;
  bool GetHtml(StringBuffer& out) const;
  bool GetXml(StringBuffer& out, int depth) const;

 private:
  /// Lines beyond this are dropped, so that no loop fills the memory with its log.
  static constexpr int kMostChildren = 10'000;
  static constexpr char kOwned = 's';
  static constexpr char kFree = 'o';

  struct Form;

  bool SetLine(char kind, const char* text);
  bool render(const Form& form, std::size_t depth, StringBuffer& out) const;
  const LogEntry2* child(int i) const;

  std::unique_ptr<ExtPtrArray> m_children;
  std::uint32_t m_elapsed = 0;
  bool m_elapsedValid = false;
  char m_ownerMark = kFree;
  ValidityWord<char, 'i'> m_validityMark;
  char m_kind = 'E';
  std::unique_ptr<StringBuffer> m_tag;
  std::unique_ptr<StringBuffer> m_value;
  LogEntry2* m_parent = nullptr;
};
