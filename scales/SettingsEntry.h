#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// settings.xml in the component's folder lists scales under fixed device ids: under a root of any
// tag one element for each scale, SCALES0 to SCALES99, with the attributes below. The component
// only reads it; programs that deal with such files do it by these functions too, so that all see
// the same in a file.

inline constexpr const char* kSettingsFile = "settings.xml";
inline constexpr std::size_t kMostSettingsEntries = 100;

/// One scale of a settings file: its nine attributes, texts in UTF-8.
struct SettingsEntry {
  /// `fNum`; its decimal text is the device id.
  std::int32_t number = 0;
  /// `fType`
  std::int32_t model = 0;
  /// `fIsComPort`, 0 for a network scale.
  std::int32_t isComPort = 0;
  /// `fComBaudRate` and `fComPortName`, of a serial scale.
  std::int32_t baudRate = 0;
  std::string comPortName = {};
  /// `fTCPPort` and `fHost`, of a network scale.
  std::int32_t tcpPort = 0;
  std::string host = {};
  /// `fLeaveConnect`, not 0 to keep the connection between calls.
  std::int32_t leaveConnection = 0;
  /// `fCoeff`, as somebody typed it.
  std::string coefficient = {};

  std::string id() const { return std::to_string(number); }
  bool isSerial() const { return isComPort != 0; }
  /// Device path of a serial scale, host of a network scale.
  const std::string& port() const { return isSerial() ? comPortName : host; }
  /// Line speed of a serial scale, TCP port of a network scale.
  std::int32_t rate() const { return isSerial() ? baudRate : tcpPort; }
};

/// Reads a settings file by ascending element number; an attribute that isn't there is 0 or empty.
/// Nothing where there is no file to load, or an empty one. Throws std::bad_alloc if memory is too
/// short for what the file holds, or if the file was replaced while it was read.
///
///     const auto entries = readSettings("/opt/orbelo/settings.xml");
std::optional<std::vector<SettingsEntry>> readSettings(const std::string& path);

/// The document that reads back as `entries`, at most 100, with the root `root`.
std::string settingsDocument(std::string_view root, std::span<const SettingsEntry> entries);
