// What a scale is made of, as text: the coefficient as a person types it, and the settings file.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "CkFileAccess.h"
#include "CkXml.h"
#include "Numbers.h"
#include "ScalesWrapper.h"

namespace {

constexpr const char* kSettingsFile = "settings.xml";
/// Elements SCALES0 to SCALES99 are read.
constexpr int kMaxEntries = 100;
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
  CkString path;
  path.appendStr(dllFolder);
  path.append(kSettingsFile);
  CkXml xml;
  xml.put_Utf8(true);
  if (!xml.LoadXmlFile(path.getUtf8())) return kCantLoad;

  for (int i = 0; i < kMaxEntries; ++i) {
    xml.GetRoot2();
    const std::string tag = "SCALES" + std::to_string(i);
    if (!xml.FindChild2(tag.c_str())) continue;
    const bool serial = xml.GetAttrValueInt("fIsComPort") != 0;
    const std::string id = std::to_string(xml.GetAttrValueInt("fNum"));
    CkString port;
    xml.GetAttrValue(serial ? "fComPortName" : "fHost", port);
    CkString coefficient;
    xml.GetAttrValue("fCoeff", coefficient);
    AddScalesObject(port.getAnsi(), xml.GetAttrValueInt(serial ? "fComBaudRate" : "fTCPPort"),
                    xml.GetAttrValueInt("fType"), serial ? 0 : 1, id.c_str(),
                    xml.GetAttrValueInt("fLeaveConnect"), iGatof(coefficient.getAnsi()));
  }
  return kSuccess;
}
