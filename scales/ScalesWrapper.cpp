#include "ScalesWrapper.h"

#include <algorithm>
#include <new>
#include <utility>

#include "Cancellation.h"
#include "DriverFacts.h"
#include "WholeText.h"

namespace {

constexpr int kIdBytes = 10;
constexpr const char* kIdEncoding = "hex";

}  // namespace

CScalesWrapper::CScalesWrapper(ScalesFactory newFactory) : factory(newFactory) {}

CScalesWrapper::~CScalesWrapper() { CloseAllComPorts(); }

IScalesObject* CScalesWrapper::GetScalesObject(const char* id) {
  const auto found = std::find_if(scaleObjects.begin(), scaleObjects.end(), [&](const auto& scale) {
    return scale && scale->isComPortCmp(id);
  });
  return found == scaleObjects.end() ? nullptr : found->get();
}

std::unique_ptr<IScalesObject> CScalesWrapper::make(const std::string& folder, int model,
                                                    const char* id, int leave, double coeff) const {
  std::unique_ptr<IScalesObject> scale = factory(model);
  if (!scale) return nullptr;
  CkString folderText;
  folderText.setStringUtf8(folder.c_str());
  scale->SetPathToDll(folderText);
  scale->SetScalesName(id);
  scale->SetCoeff(coeff);
  scale->SetLeaveConn(leave);
  return scale;
}

int CScalesWrapper::enter(std::unique_ptr<IScalesObject> scale, const char* port, int rate,
                          int conntype) {
  if (!scale) return kNotSupported;
  const auto slot = std::find(scaleObjects.begin(), scaleObjects.end(), nullptr);
  IScalesObject& added = *(*slot = std::move(scale));
  const int code = conntype == kSerialConnection ? added.SetComPort(port, rate, eventBase)
                                                 : added.SetLanPort(port, rate, eventBase);
  // Registration ends with the port closed, also when the connection is to be kept: a hundred
  // registered scales must not hold a hundred lines.
  added.CloseComPort();
  return code;
}

int CScalesWrapper::add(const char* port, int rate, int model, int conntype, const char* id,
                        int leave, double coeff) {
  if (port == nullptr) return kNoConnection;
  const char* const replaced = id == nullptr ? port : id;
  const bool full =
      std::find(scaleObjects.begin(), scaleObjects.end(), nullptr) == scaleObjects.end();
  if (full && GetScalesObject(replaced) == nullptr) return kUnknown;
  // The scale is made before the one that it replaces goes, since making needs memory. The name of
  // the port may lie in the one that goes.
  const std::string ownPort(port);
  std::unique_ptr<IScalesObject> scale = make(dllFolder, model, id, leave, coeff);
  forget(replaced);
  return enter(std::move(scale), ownPort.c_str(), rate, conntype);
}

int CScalesWrapper::AddScalesObject(const char* port, int rate, int model, int conntype,
                                    const char* id, int leave, double coeff) {
  return concluded([&] { return add(port, rate, model, conntype, id, leave, coeff); });
}

int CScalesWrapper::CreateScalesObject(CkString& id) {
  bool handedOut = false;
  concluded([&] {
    id.clear();
    id.appendRandom(kIdBytes, kIdEncoding);
    // Both forms are made before the scale is there: under half an id nobody would find it.
    const char* const ansi = id.getAnsi();
    id.getUnicode();
    if (!id.isWhole()) throw std::bad_alloc();
    const bool serial = mp_conntype == kSerialConnection;
    const int code = add((serial ? mp_cport : mp_ehost).c_str(), serial ? mp_cbaudrate : mp_eport,
                         mp_model, mp_conntype, ansi, mp_conleave, mp_coeff);
    handedOut = true;
    return code;
  });
  if (!handedOut) id.clear();
  return 0;
}

int CScalesWrapper::OpenComPort(const char* port, int rate, int model, int conntype) {
  return AddScalesObject(port, rate, model, conntype, nullptr, 0, 1.0);
}

void CScalesWrapper::forget(const char* id) {
  // `id` may lie in one of the scales that go, so they last until all are found.
  std::array<std::unique_ptr<IScalesObject>, kMaxScales> leaving;
  const CancellationHeld closing;
  for (std::size_t i = 0; i < kMaxScales; ++i) {
    if (!scaleObjects[i] || !scaleObjects[i]->isComPortCmp(id)) continue;
    scaleObjects[i]->CloseComPort();
    leaving[i] = std::move(scaleObjects[i]);
  }
}

int CScalesWrapper::CloseComPort(const char* id) {
  forget(id);
  return lastError = kSuccess;
}

void CScalesWrapper::CloseAllComPorts() {
  const CancellationHeld closing;
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
  return unlessThrown(
      [&] {
        std::string text = resultText(lastError);
        if (lastError == kWrongFolder) text += dllFolder + kWrongFolderEnd;
        lastErrorText = wideOf(text);
        return lastErrorText.c_str();
      },
      []() -> const wchar_t* { return nullptr; });
}

const wchar_t* CScalesWrapper::GetVersion() { return kDriverVersion; }

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
