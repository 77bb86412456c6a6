#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ValidityWord.h"

class ClsBase;
class StringBuffer;
class XString;

/// A switch whose earlier settings lie on a stack.
class LogSwitch {
 public:
  LogSwitch() = default;
  /// One that nobody can turn.
  explicit LogSwitch(bool on) : m_on(on), m_isFixed(true) {}

  operator bool() const { return m_on.load(std::memory_order_relaxed); }
  LogSwitch& operator=(bool on) {
    if (!m_isFixed) m_on.store(on, std::memory_order_relaxed);
    return *this;
  }

  /// Sets the switch and keeps the setting before. The stack is 64 deep; beyond that nothing
  /// happens, nor does it when there is nothing to go back to.
  void push(bool on);
  void pop();

 private:
  static constexpr std::size_t kDeepest = 64;

  std::atomic<bool> m_on{false};
  const bool m_isFixed = false;
  std::size_t m_depth = 0;
  std::array<bool, kDeepest> m_saved;
};

/// The log that inner operations take: lines and tagged data in nested contexts. This base throws
/// everything away. Texts are UTF-8; a null pointer is an empty text. The operations return
/// whether the message was taken, and nobody has to care. What the layers here don't call yet are
/// LogDataBool(), LogHex(), LogStringMax(), LogElapsedMs(), the DbgLog and the push family.
class LogBase {
 public:
  LogBase() = default;
  LogBase(const LogBase&) = delete;
  LogBase& operator=(const LogBase&) = delete;
  virtual ~LogBase() = default;

  // Rendering: replaces the target --------------------------------------------------------------

  virtual bool getXml(StringBuffer& /*out*/) { return true; }
  virtual bool getHtml(StringBuffer& /*out*/) { return true; }
  virtual bool getText(StringBuffer& /*out*/) { return true; }
  /// Writes the XML rendering to a file, behind what is there if `append`.
  virtual bool SaveXML(bool /*append*/, const char* /*path*/) { return true; }

  // Adding ----------------------------------------------------------------------------------------

  virtual bool LogError(const char* /*message*/) { return true; }
  virtual bool LogInfo(const char* /*message*/) { return true; }
  /// A piece of XML that its rendering shall show as it is.
  virtual bool LogXml(const char* /*xml*/) { return true; }
  virtual void ClearLog() {}
  /// `timed` is a wish that no log heeds: VerboseLogging decides about times.
  virtual bool EnterContext(const char* /*name*/, bool /*timed*/) { return true; }
  virtual bool LeaveContext() { return true; }
  virtual bool LogData(const char* /*tag*/, const char* /*value*/) { return true; }

  // For the debug file alone ----------------------------------------------------------------------

  virtual bool DbgLogInfo(const char* /*message*/) { return true; }
  virtual bool DbgLogData(const char* /*tag*/, const char* /*value*/) { return true; }
  virtual bool DbgLogInt(const char* /*tag*/, int /*value*/) { return true; }

  // Tagged data of other types --------------------------------------------------------------------

  /// "True" or "False".
  bool LogDataBool(const char* tag, bool value);
  bool LogDataLong(const char* tag, long value);
  bool LogDataUint32(const char* tag, std::uint32_t value);
  bool LogDataInt64(const char* tag, std::int64_t value);
  /// "0x1f".
  bool LogHex(const char* tag, std::uint32_t value);
  bool LogDataX(const char* tag, XString& value);
  bool LogDataSb(const char* tag, const StringBuffer& value);
  /// The first `max` bytes of the UTF-8 text and "..." if there are more.
  bool LogStringMax(const char* tag, XString& value, std::uint32_t max);

  // Time, the system, memory ----------------------------------------------------------------------

  /// "Elapsed time: 12 millisec" since a tick count; nothing if the counter wrapped meanwhile.
  bool LogElapsedMs(const char* tag, std::uint32_t startTick);
  /// The calling thread's errno with its text.
  void LogLastErrorOS();
  void MemoryAllocFailed(int failurePoint, std::uint32_t numBytes);

  // Switches --------------------------------------------------------------------------------------

  void pushVerboseLogging(bool on) { m_verbose.push(on); }
  void popVerboseLogging() { m_verbose.pop(); }
  void pushNullLogging(bool on) { m_nullLogging.push(on); }
  void popNullLogging() { m_nullLogging.pop(); }

  /// While on, nothing is logged.
  LogSwitch m_nullLogging;
  /// Extra lines, and times of contexts.
  LogSwitch m_verbose;
  /// Character set conversions tell what they do.
  LogSwitch m_verboseEncoding;

  /// Locks made while this is set do nothing. To be set before anything else.
  static std::atomic<bool> m_singleThreaded;

 protected:
  enum class Fixed { NothingIsLogged };
  explicit LogBase(Fixed) : m_nullLogging(true), m_verbose(false), m_verboseEncoding(false) {}
};

/// Takes every message and keeps none, without even formatting it. It has no state: its switches
/// can't be turned, so that any number of threads may share one.
class LogNull : public LogBase {
 public:
  LogNull() : LogBase(Fixed::NothingIsLogged) {}
};

/// Opens a context of the log for the length of a scope. With `active` false it does nothing.
class LogContextExitor {
 public:
  LogContextExitor(LogBase& log, const char* name, bool active = true);
  /// Starts a new call of a public operation: ClsBase::enterContextBase().
  LogContextExitor(ClsBase& object, const char* name);
  LogContextExitor(const LogContextExitor&) = delete;
  LogContextExitor& operator=(const LogContextExitor&) = delete;
  ~LogContextExitor();

 private:
  ValidityWord<std::uint32_t, 0xCC38A8B8> m_validity;
  LogBase* m_log = nullptr;
};
