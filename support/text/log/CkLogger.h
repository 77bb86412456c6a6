#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "ErrorLog.h"
#include "KestrumCritSec.h"
#include "LogBase.h"
#include "LogDraft.h"
#include "XString.h"

/// The log of one object: a tree of contexts, grown and rendered on demand, and, once a path is
/// set, a file to which every message goes at once. Any number of threads may use it.
class _ckLogger : public LogBase, public KestrumCritSec {
 public:
  _ckLogger();
  ~_ckLogger() override;

  bool getXml(StringBuffer& out) override;
  bool getHtml(StringBuffer& out) override;
  bool getText(StringBuffer& out) override;
  bool SaveXML(bool append, const char* path) override;

  bool LogError(const char* message) override;
  bool LogInfo(const char* message) override;
  bool LogXml(const char* xml) override;
  void ClearLog() override;
  bool EnterContext(const char* name, bool timed) override;
  bool LeaveContext() override;
  /// White space around the tag is dropped, blanks inside become "_"; an empty tag is refused.
  /// A null value is "(NULL)".
  bool LogData(const char* tag, const char* value) override;

  bool DbgLogInfo(const char* message) override;
  bool DbgLogData(const char* tag, const char* value) override;
  bool DbgLogInt(const char* tag, int value) override;

  /// Empty while there is no debug file.
  void get_DebugLogFilePath(XString& path);
  /// An empty path ends the debug file. One that can't be opened is ignored.
  void put_DebugLogFilePath(XString& path);

 private:
  bool ensureErrLog();
  bool add(const LogDraft::Line& line);
  enum class Indent { None, ByDepth };
  void debugLine(Indent indent, std::initializer_list<const char*> parts);

  LogDraft m_draft;
  /// None while the draft takes the lines.
  std::unique_ptr<_ckErrorLog> m_tree;
  std::uint32_t m_depth = 0;
  std::unique_ptr<XString> m_debugPath;
  XString m_rootName;
};
