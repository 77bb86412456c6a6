#pragma once

#include <atomic>
#include <cstdint>

#include "CkLogger.h"
#include "KestrumCritSec.h"
#include "LogBase.h"
#include "RefCountedObject.h"
#include "ValidityWord.h"

class StringBuffer;
class XString;

/// Base of the inner objects behind the public handles: its own lock, with a log that tells about
/// the last public call.
///
/// A public operation runs under `CritSecExitor lock(this)` and opens its context with
/// `LogContextExitor context(*this, "Name")`. The object's lock comes before its log's.
class ClsBase : public RefCountedObject {
 public:
  /// The programming language of the caller, 0 if it never said. 13 and 15 hand texts over in
  /// UTF-8; some get the text of the log with CR LF.
  static int m_progLang;

  ClsBase() = default;

  /// Gives up the handle's share; the object goes with its last owner.
  void deleteSelf() { decRefCount(); }
  /// False once the object is gone or was overwritten.
  bool checkObjectValidity() const;

  _ckLogger& mlog() { return m_log; }
  LogBase& getLogBase() { return m_log; }

  /// Starts the log of a new public call.
  void enterContextBase(const char* name);
  /// Writes which build this is and how it was called.
  void logKestrumVersion(LogBase& log);
  void logSuccessFailure(bool success);

  /// The log in three renderings. Line ends are CR LF, in the text only for the languages that
  /// want them. The target is emptied if the object isn't alive or memory is short.
  void get_LastErrorText(XString& out);
  void get_LastErrorHtml(XString& out);
  void get_LastErrorXml(XString& out);
  /// Writes the XML rendering; false for an empty path or one that can't be written.
  bool SaveLastError(XString& path);
  static void get_Version(XString& out);

  bool get_LastMethodSuccess() const;
  void put_LastMethodSuccess(bool success);

  /// A log that holds one line. Nothing in this house calls them.
  virtual void injectStatus(const char* name, bool success);
  virtual void injectError(const char* name, const char* text);
  /// "SingleThreaded" and "MultiThreaded" switch the locks of objects made from now on.
  virtual void put_UncommonOptions(XString& options);
  virtual bool get_VerboseLogging();
  virtual void put_VerboseLogging(bool on);
  virtual void get_DebugLogFilePath(XString& path);
  virtual void put_DebugLogFilePath(XString& path);

 protected:
  ~ClsBase() override;

  _ckLogger m_log;

 private:
  void renderLog(bool (LogBase::*render)(StringBuffer&), bool crlf, XString& out);

  ValidityWord<std::uint32_t, 0x991144AA> m_validity;
  std::atomic<bool> m_lastMethodSuccess{true};
};
