#pragma once

#include <memory>

#include "ExtPtrArray.h"
#include "LogEntry2.h"

/// The tree of a log with the stack of its open contexts. Not locked: the logger does that.
class _ckErrorLog : public KestrumObject {
 public:
  /// A tree with an open root context.
  explicit _ckErrorLog(const char* rootName);

  /// False if the current context is full or memory is short.
  bool append(std::unique_ptr<LogEntry2> entry);
  /// Opens a context inside the current one. A `startTick` other than 0 measures its time. False,
  /// and nothing opened, if the current one is full or memory is short.
  bool enter(const char* name, std::uint32_t startTick);

  struct Left {
    bool isTimed;
    std::uint32_t elapsed_ms;
  };
  /// Closes the current context, unless it is the root.
  Left leave(bool measure, std::uint32_t nowTick);

  const LogEntry2& root() const { return *m_root; }

 private:
  LogEntry2* current() const { return static_cast<LogEntry2*>(m_stack.lastElement()); }

  std::unique_ptr<LogEntry2> m_root;
  ExtPtrArray m_stack;
};
