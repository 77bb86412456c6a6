// What a scale is made of, as text: the coefficient as a person types it, and the settings file.

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Cancellation.h"
#include "CkFileAccess.h"
#include "Numbers.h"
#include "ScalesWrapper.h"
#include "SettingsEntry.h"
#include "WholeText.h"

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

template <typename Operation>
int CScalesWrapper::taken(Operation operation) {
  return unlessThrown(
      [&] {
        operation();
        return static_cast<int>(kSuccess);
      },
      [&] { return refuse(); });
}

int CScalesWrapper::Set_param_mp_cport(CkString value) {
  return taken([&] { mp_cport = ansiOf(value); });
}

int CScalesWrapper::Set_param_mp_ehost(CkString value) {
  return taken([&] { mp_ehost = ansiOf(value); });
}

int CScalesWrapper::Set_param_mp_coeff(CkString value) {
  return taken([&] {
    value.trim();
    const auto length = static_cast<std::size_t>(std::max(0, value.getNumChars()));
    const std::string number = leadingNumber(ansiOf(value).substr(0, length));
    mp_coeff = number.empty() ? kNoCorrection : iGatof(number);
  });
}

int CScalesWrapper::SetPathDllFolder(CkString& path) {
  return concluded([&]() -> int {
    std::string folder = utf8Of(path);
    if (!folder.ends_with('/')) folder += '/';
    // Paths go down in UTF-8, so that a folder's name is right whatever the ANSI code page is.
    CkFileAccess files;
    files.put_Utf8(true);
    if (files.FileType(folder.c_str()) != kIsDirectory) {
      struct stat facts = {};
      // It found no memory to look.
      if (::stat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode)) throw std::bad_alloc();
      dllFolder = std::move(folder);
      return kWrongFolder;
    }
    load(std::move(folder));
    return kSuccess;
  });
}

int CScalesWrapper::LoadIniSettings() {
  return unlessThrown([&] { return load(dllFolder) ? static_cast<int>(kSuccess) : kCantLoad; },
                      [&] {
                        refuse();
                        return kCantLoad;
                      });
}

bool CScalesWrapper::load(std::string folder) {
  struct Planned {
    std::string id;
    std::string port;
    std::unique_ptr<IScalesObject> scale;
  };
  // All that can fail comes before the first scale goes.
  const auto entries = readSettings(folder + kSettingsFile);
  std::vector<Planned> planned;
  for (const SettingsEntry& entry : entries.value_or(std::vector<SettingsEntry>())) {
    const std::string id = entry.id();
    planned.push_back({id, ansiOf(entry.port()),
                       make(folder, entry.model, id.c_str(), entry.leaveConnection,
                            iGatof(ansiOf(entry.coefficient)))});
  }
  dllFolder = std::move(folder);
  CloseAllComPorts();
  for (std::size_t i = 0; i < planned.size(); ++i) {
    const SettingsEntry& entry = entries->at(i);
    forget(planned[i].id.c_str());
    lastError = enter(std::move(planned[i].scale), planned[i].port.c_str(), entry.rate(),
                      entry.isSerial() ? kSerialConnection : kNetworkConnection);
  }
  return entries.has_value();
}
