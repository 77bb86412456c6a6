#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "CkObject.h"
#include "PublicApi.h"
#include "ValidityWord.h"

class ClsBase;
class CkString;
class XString;

/// Base of the public handles over an inner object. `const char*` arguments and results are ANSI,
/// or UTF-8 after put_Utf8(true).
///
/// Results of type `const char*` lie in a ring of ten strings of the handle: such a pointer is good
/// for the next nine calls that return one. One thread at a time. The driver itself reads no log:
/// what is here is for who calls the library's classes by name.
class ORBELO_PUBLIC CkMultiByteBase : public CkObject {
 public:
  ~CkMultiByteBase() override;

  bool get_Utf8() const;
  void put_Utf8(bool utf8);

  /// What the last call did, with its reasons.
  void LastErrorText(CkString& out);
  void LastErrorHtml(CkString& out);
  void LastErrorXml(CkString& out);
  const char* lastErrorText();
  const char* lastErrorHtml();
  const char* lastErrorXml();
  /// Writes the XML rendering to a file.
  bool SaveLastError(const char* path);

  void get_Version(CkString& out);
  const char* version();

  /// The file to which the log goes line by line while it is written; empty for none.
  void get_DebugLogFilePath(CkString& out);
  const char* debugLogFilePath();
  void put_DebugLogFilePath(const char* path);

  /// Extra lines, and how long the steps of a call took.
  bool get_VerboseLogging();
  void put_VerboseLogging(bool on);
  bool get_LastMethodSuccess();
  void put_LastMethodSuccess(bool success);
  /// For all objects of the process; 13 also switches 4-byte UTF-8 off.
  static void setLastErrorProgrammingLanguage(int language);

  /// Frees the ring of results.
  void clearResultStrings();

 protected:
  /// Takes the inner object's first share; null if there was no memory for it.
  explicit CkMultiByteBase(ClsBase* base);

  /// The inner object, null unless handle and object are both alive.
  ClsBase* aliveBase() const;
  /// An argument of the caller as a text with its UTF-8 form; false if memory is short for them.
  bool setArgument(XString& out, const char* text) const;

  int nextIdx();
  const char* rtnMbString(CkString* text) const;

 private:
  static constexpr std::size_t kRingSize = 10;

  bool isAlive() const { return m_validity.isAlive(); }
  void lastError(void (ClsBase::*render)(XString&), CkString& out);
  const char* lastError(void (ClsBase::*render)(XString&));
  template <typename Read>
  const char* ringResult(Read read);

  ClsBase* m_base;
  bool m_utf8;
  int m_ringIndex = 0;
  std::array<std::unique_ptr<CkString>, kRingSize> m_ring;
  ValidityWord<std::uint32_t, 0x81F0CA3B> m_validity;
};
