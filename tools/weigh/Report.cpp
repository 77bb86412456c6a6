#include "Report.h"

#include <unistd.h>

#include <iostream>

#include "DoctorDevice.h"
#include "Models.h"
#include "ResultCode.h"
#include "Texts.h"

namespace weigh {

namespace {

std::string connectionRemedy(const Connection& connection) {
  if (connection.network) {
    return fill(text::kNetworkRemedy, {connection.host, std::to_string(connection.tcpPort)});
  }
  const char* device = connection.device.c_str();
  if (::access(device, F_OK) != 0) {
    return fill(text::kNoDevice, {connection.device, serialDevicesText()});
  }
  if (::access(device, R_OK | W_OK) != 0) return fill(text::kNoPermission, {connection.device});
  return fill(text::kSerialRemedy, {connection.device, std::to_string(connection.baud)});
}

}  // namespace

bool isEmulator(int model) {
  const ScalesModel* row = findScalesModel(model);
  return row != nullptr && row->create != nullptr && row->sheet == nullptr;
}

std::string remedyFor(std::uint32_t code, const Connection& connection) {
  switch (code) {
    case kNoConnection: return connectionRemedy(connection);
    case kNoAnswer:
      return isEmulator(connection.model)
                 ? say(text::kEmulatorRemedy)
                 : fill(text::kNoAnswerRemedy, {std::to_string(connection.model)});
    case kNotSupported: return fill(text::kNotSupportedRemedy, {std::to_string(connection.model)});
    case kOverload: return say(text::kOverloadRemedy);
    case kWrongFolder: return say(text::kFolderRemedy);
    default: return {};
  }
}

void complain(const std::string& message, const std::string& remedy) {
  std::cerr << "weigh: " << message << '\n';
  if (!remedy.empty()) std::cerr << "       " << remedy << '\n';
}

std::string errorText(const host::LastError& error) {
  return fill(text::kScaleError, {std::to_string(error.code), error.text});
}

void complain(const host::LastError& error, const Connection& connection) {
  complain(errorText(error), remedyFor(error.code, connection));
}

ExitCode judge(const host::LastError& error, const Connection& connection) {
  if (error.code == kSuccess) return kGood;
  complain(error, connection);
  return kScaleFailed;
}

}  // namespace weigh
