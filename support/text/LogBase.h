#pragma once

/// The log that inner operations take: messages from deep inside go where the caller wants them.
/// The operations return whether the message was taken.
class LogBase {
 public:
  LogBase() = default;
  LogBase(const LogBase&) = delete;
  LogBase& operator=(const LogBase&) = delete;
  virtual ~LogBase() = default;

  virtual bool LogError(const char* message) = 0;
  virtual bool LogInfo(const char* message) = 0;
  virtual bool LogData(const char* tag, const char* value) = 0;
  virtual bool EnterContext(const char* name, bool timed) = 0;
  virtual bool LeaveContext() = 0;

  bool LogDataLong(const char* tag, long value);

  /// Character set conversions tell what they do.
  bool m_verboseEncoding = false;
};

/// Takes every message and keeps none.
class LogNull : public LogBase {
 public:
  bool LogError(const char* /*message*/) override { return true; }
  bool LogInfo(const char* /*message*/) override { return true; }
  bool LogData(const char* /*tag*/, const char* /*value*/) override { return true; }
  bool EnterContext(const char* /*name*/, bool /*timed*/) override { return true; }
  bool LeaveContext() override { return true; }
};

/// Opens a context of the log for the length of a scope. With `active` false it does nothing.
class LogContextExitor {
 public:
  LogContextExitor(LogBase& log, const char* name, bool active = true);
  LogContextExitor(const LogContextExitor&) = delete;
  LogContextExitor& operator=(const LogContextExitor&) = delete;
  ~LogContextExitor();

 private:
  LogBase* m_log;
};
