#pragma once

/// The log that internal operations of the support layers take: messages from deep inside go
/// where the caller wants them.
class LogBase {
 public:
  virtual ~LogBase() = default;
  /// Adds a message. Returns whether it was taken.
  virtual bool LogError(const char* message) = 0;
};

/// Takes every message and keeps none.
class LogNull : public LogBase {
 public:
  bool LogError(const char* /*message*/) override { return true; }
};
