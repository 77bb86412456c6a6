#include "ScalesWrapper.h"

#include <algorithm>

namespace {

constexpr int kIdBytes = 10;
constexpr const char* kIdEncoding = "hex";
constexpr int kSerialConnection = 0;

}  // namespace

CScalesWrapper::CScalesWrapper(ScalesFactory newFactory) : factory(newFactory) {}

CScalesWrapper::~CScalesWrapper() { CloseAllComPorts(); }

IScalesObject* CScalesWrapper::GetScalesObject(const char* id) {
  const auto found = std::find_if(scaleObjects.begin(), scaleObjects.end(), [&](const auto& scale) {
    return scale && scale->isComPortCmp(id);
  });
  return found == scaleObjects.end() ? nullptr : found->get();
}

int CScalesWrapper::AddScalesObject(const char* port, int rate, int model, int conntype,
                                    const char* id, int leave, double coeff) {
  if (port == nullptr) return lastError = kNoConnection;
  if (id == nullptr) {
    CloseComPort(port);
  } else if (GetScalesObject(id) != nullptr) {
    CloseComPort(id);
  }

  const auto slot = std::find(scaleObjects.begin(), scaleObjects.end(), nullptr);
  if (slot == scaleObjects.end()) return lastError = kUnknown;
  *slot = factory(model);
  if (!*slot) return lastError = kNotSupported;

  IScalesObject& scale = **slot;
  scale.SetPathToDll(dllFolder);
  scale.SetScalesName(id);
  scale.SetCoeff(coeff);
  scale.SetLeaveConn(leave);
  lastError = conntype == kSerialConnection ? scale.SetComPort(port, rate, eventBase)
                                            : scale.SetLanPort(port, rate, eventBase);
  // Registration ends with the port closed, also when the connection is to be kept: a hundred
  // registered scales must not hold a hundred lines.
  scale.CloseComPort();
  return lastError;
}

int CScalesWrapper::CreateScalesObject(CkString& id) {
  id.clear();
  id.appendRandom(kIdBytes, kIdEncoding);
  const bool serial = mp_conntype == kSerialConnection;
  AddScalesObject(serial ? mp_cport.getAnsi() : mp_ehost.getAnsi(),
                  serial ? mp_cbaudrate : mp_eport, mp_model, mp_conntype, id.getAnsi(),
                  mp_conleave, mp_coeff);
  return 0;
}

int CScalesWrapper::OpenComPort(const char* port, int rate, int model, int conntype) {
  return AddScalesObject(port, rate, model, conntype, nullptr, 0, 1.0);
}

int CScalesWrapper::CloseComPort(const char* id) {
  for (auto& scale : scaleObjects) {
    if (!scale || !scale->isComPortCmp(id)) continue;
    scale->CloseComPort();
    scale.reset();
  }
  return lastError = kSuccess;
}

void CScalesWrapper::CloseAllComPorts() {
  for (auto& scale : scaleObjects) {
    if (scale) scale->CloseComPort();
    scale.reset();
  }
  lastError = kUnknown;
}

int CScalesWrapper::getScalesInfo(const char* id, double& weight, double& price, double& cost,
                                  long& stable) {
  IScalesObject* scale = GetScalesObject(id);
  if (scale == nullptr) return lastError = kDeviceIdNotFound;
  const int code = scale->getScalesInfo(&weight, &price, &cost, &stable);
  weight *= scale->GetCoeff();
  return lastError = code;
}

int CScalesWrapper::setPrice(const char* id, long price) {
  if (price < 0) return lastError = kPriceFormat;
  IScalesObject* scale = GetScalesObject(id);
  return lastError = scale == nullptr ? kDeviceIdNotFound : scale->setPrice(price);
}

int CScalesWrapper::pressT(const char* id, double tare) {
  IScalesObject* scale = GetScalesObject(id);
  return lastError = scale == nullptr ? kDeviceIdNotFound : scale->pressT(tare);
}

const wchar_t* CScalesWrapper::GetLastTextError() {
  lastErrorText.setStringUtf8(resultText(lastError));
  if (lastError == kWrongFolder) {
    lastErrorText.appendStr(dllFolder);
    CkString end;
    end.setStringUtf8(kWrongFolderEnd);
    lastErrorText.appendStr(end);
  }
  return lastErrorText.getUnicode();
}

const wchar_t* CScalesWrapper::GetVersion() { return L"4.3.25 (05.03.2020)"; }

int CScalesWrapper::SetEvent(IAddInDefBase* base) {
  eventBase = base;
  return 0;
}

int CScalesWrapper::Set_param_mp_model(int value) {
  mp_model = value;
  return 0;
}

int CScalesWrapper::Set_param_mp_conntypel(int value) {
  mp_conntype = value;
  return 0;
}

int CScalesWrapper::Set_param_mp_conleave(int value) {
  mp_conleave = value;
  return 0;
}

int CScalesWrapper::Set_param_mp_cbaudrate(int value) {
  mp_cbaudrate = value;
  return 0;
}

int CScalesWrapper::Set_param_mp_eport(int value) {
  mp_eport = value;
  return 0;
}

int CScalesWrapper::Set_param_mp_cport(CkString value) {
  mp_cport.setStr(value);
  return 0;
}

int CScalesWrapper::Set_param_mp_ehost(CkString value) {
  mp_ehost.setStr(value);
  return 0;
}
