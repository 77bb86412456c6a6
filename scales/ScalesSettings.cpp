// What a scale is made of, as text: the coefficient as a person types it, and the settings file.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "CkFileAccess.h"
#include "Numbers.h"
#include "ScalesWrapper.h"
#include "SettingsEntry.h"

namespace {

constexpr double kNoCorrection = 1.0;
constexpr int kIsDirectory = 2;
constexpr int kCantLoad = 1;
constexpr std::size_t kMaxCoefficientLength = 1023;

/// The leading digits and separators of `text`, with "," as ".", less a separator at the end.
std::string leadingNumber(std::string_view text) {
  std::string number;
  for (const char c : text.substr(0, kMaxCoefficientLength)) {
    if (c >= '0' && c <= '9') {
      number += c;
    } else if (c == '.' || c == ',') {
      number += '.';
    } else {
      break;
    }
  }
  if (number.ends_with('.')) number.pop_back();
  return number;
}

}  // namespace

int CScalesWrapper::Set_param_mp_coeff(CkString value) {
  mp_coeff = kNoCorrection;
  value.trim();
  const auto length = static_cast<std::size_t>(std::max(0, value.getNumChars()));
  const std::string number = leadingNumber(std::string_view(value.getAnsi()).substr(0, length));
  if (!number.empty()) mp_coeff = iGatof(number);
  return 0;
}

int CScalesWrapper::SetPathDllFolder(CkString& path) {
  dllFolder.setStr(path);
  if (!dllFolder.endsWith("/")) dllFolder.append("/");
  // Paths go down in UTF-8, so that a folder's name is right whatever the ANSI code page is.
  CkFileAccess files;
  files.put_Utf8(true);
  if (files.FileType(dllFolder.getUtf8()) != kIsDirectory) return lastError = kWrongFolder;
  LoadIniSettings();
  return lastError = kSuccess;
}

int CScalesWrapper::LoadIniSettings() {
  CloseAllComPorts();
  const auto entries = readSettings(std::string(dllFolder.getUtf8()) + kSettingsFile);
  if (!entries) return kCantLoad;
  for (const SettingsEntry& entry : *entries) {
    CkString port;
    port.setStringUtf8(entry.port().c_str());
    CkString coefficient;
    coefficient.setStringUtf8(entry.coefficient.c_str());
    AddScalesObject(port.getAnsi(), entry.rate(), entry.model, entry.isSerial() ? 0 : 1,
                    entry.id().c_str(), entry.leaveConnection, iGatof(coefficient.getAnsi()));
  }
  return kSuccess;
}
