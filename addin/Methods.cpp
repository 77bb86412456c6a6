#include "Methods.h"

#include <array>
#include <cwchar>

#include "Cancellation.h"
#include "DriverFacts.h"
#include "ParameterPage.h"
#include "Variants.h"

namespace {

constexpr const char* kIdCharset = "windows-1251";

/// Room of the buffer that the platform's form shows a test result from.
constexpr std::size_t kTestTextSize = 249;

}  // namespace

std::span<const CAddInNative::Method> CAddInNative::methods() {
  using Self = CAddInNative;
  static constexpr std::array<Method, 16> kMethods = {{
      {L"GetVersion", L"ПолучитьНомерВерсии", 0, &Self::GetVersion},
      {L"GetDescription", L"ПолучитьОписание", 7, &Self::GetDescription},
      {L"GetLastError", L"ПолучитьОшибку", 1, &Self::GetLastError},
      {L"GetParameters", L"ПолучитьПараметры", 1, &Self::GetParameters},
      {L"SetParameter", L"УстановитьПараметр", 2, &Self::SetParameter},
      {L"Open", L"Подключить", 1, &Self::Open},
      {L"Close", L"Отключить", 1, &Self::Close},
      {L"DeviceTest", L"ТестУстройства", 2, &Self::DeviceTest},
      {L"GetAdditionalActions", L"ПолучитьДополнительныеДействия", 1, &Self::NoAction},
      {L"DoAdditionalAction", L"ВыполнитьДополнительноеДействие", 1, &Self::NoAction},
      {L"Calibrate", L"УстановитьВесТары", 2, &Self::Calibrate},
      {L"GetWeight", L"ПолучитьВес", 2, &Self::GetWeight},
      {L"SetPrice", L"УстановитьЦену", 2, &Self::SetPrice},
      {L"GetWeightPriceCost", L"ПолучитьВесЦенуСтоимость", 5, &Self::GetWeightPriceCost},
      {L"GetInterfaceRevision", L"ПолучитьРевизиюИнтерфейса", 0, &Self::GetInterfaceRevision},
      {L"SetPathDllFolder", L"УказатьПутьКПапкеКомпоненты", 1, &Self::SetPathDllFolder},
  }};
  return kMethods;
}

bool CAddInNative::textFrom(tVariant* in, CkString& out) {
  if (!GetStrFromParam(in, out)) return false;
  if (out.isWhole()) return true;
  scales.refuse();
  return false;
}

const char* CAddInNative::idFrom(const Params& params, CkString& text) {
  if (!textFrom(params.at(0), text)) return nullptr;
  const char* const id = text.getEnc(kIdCharset);
  if (text.isWhole()) return id;
  scales.refuse();
  return nullptr;
}

bool CAddInNative::answer(const wchar_t* text, tVariant* result, tVariant* out) {
  if (!wstring_to_p(text, out)) return false;
  setBool(result, true);
  return true;
}

bool CAddInNative::GetVersion(tVariant* result, const Params& /*params*/) {
  wstring_to_p(CScalesWrapper::GetVersion(), result);
  return true;
}

bool CAddInNative::GetDescription(tVariant* result, const Params& params) {
  wstring_to_p(kDriverName, params.at(0));
  wstring_to_p(kDriverDescription, params.at(1));
  wstring_to_p(kEquipmentType, params.at(2));
  setUint32(params.at(3), static_cast<std::uint32_t>(kInterfaceRevision));
  // The platform's equipment interface: this is no integration library, and the main driver is
  // installed; there is no address to fetch it from.
  setBool(params.at(4), false);
  setBool(params.at(5), true);
  wstring_to_p(L"", params.at(6));
  setBool(result, true);
  return true;
}

bool CAddInNative::GetLastError(tVariant* result, const Params& params) {
  if (!wstring_to_p(scales.GetLastTextError(), params.at(0))) return false;
  setUint32(result, static_cast<std::uint32_t>(scales.GetLastError()));
  return true;
}

bool CAddInNative::GetParameters(tVariant* result, const Params& params) {
  CkString page;
  page.setStringUtf8(parameterPage().c_str());
  const wchar_t* const text = page.getUnicode();
  return page.isWhole() && answer(text, result, params.at(0));
}

bool CAddInNative::SetParameter(tVariant* result, const Params& params) {
  struct IntParameter {
    const char* name;
    int (CScalesWrapper::*set)(int value);
  };
  struct TextParameter {
    const char* name;
    int (CScalesWrapper::*set)(CkString value);
  };
  static constexpr std::array<IntParameter, 4> kInts = {
      {{"model", &CScalesWrapper::Set_param_mp_model},
       {"conntype", &CScalesWrapper::Set_param_mp_conntypel},
       {"cbaudrate", &CScalesWrapper::Set_param_mp_cbaudrate},
       {"eport", &CScalesWrapper::Set_param_mp_eport}}};
  static constexpr const char* kFlag = "conleave";
  static constexpr std::array<TextParameter, 3> kTexts = {
      {{"coeff", &CScalesWrapper::Set_param_mp_coeff},
       {"cport", &CScalesWrapper::Set_param_mp_cport},
       {"ehost", &CScalesWrapper::Set_param_mp_ehost}}};

  CkString name;
  if (!textFrom(params.at(0), name)) return false;
  const auto is = [&](const char* known) { return name.equalsAscii(known); };
  tVariant* value = params.at(1);

  // The platform's numbers come under several types; only their bytes are looked at.
  for (const IntParameter& parameter : kInts) {
    if (!is(parameter.name)) continue;
    if (value == nullptr) return false;
    (scales.*parameter.set)(value->value.lVal);
  }
  if (is(kFlag)) {
    if (value == nullptr) return false;
    scales.Set_param_mp_conleave(value->value.ui8Val);
  }
  for (const TextParameter& parameter : kTexts) {
    if (!is(parameter.name)) continue;
    CkString text;
    if (!textFrom(value, text) || (scales.*parameter.set)(text) != kSuccess) return false;
  }
  // A parameter that this driver doesn't know is one that a newer page may bring.
  setBool(result, true);
  return true;
}

bool CAddInNative::Open(tVariant* result, const Params& params) {
  CkString id;
  scales.CreateScalesObject(id);
  tVariant* const out = params.at(0);
  if (id.getNumChars() == 0) return false;
  const bool told = unlessThrown(
      [&] {
        return wstring_to_p(id.getUnicode(), out) &&
               (out == nullptr || out->value.wide.pwstrVal != nullptr);
      },
      [] { return false; });
  if (!told) {
    // Under an id that the platform never learned the scale would keep its place for ever.
    scales.CloseComPort(id.getAnsi());
    scales.refuse();
    return false;
  }
  setBool(result, true);
  return true;
}

bool CAddInNative::Close(tVariant* result, const Params& params) {
  CkString text;
  const char* id = idFrom(params, text);
  if (id == nullptr) return false;
  scales.CloseComPort(id);
  setBool(result, true);
  return true;
}

bool CAddInNative::DeviceTest(tVariant* result, const Params& params) {
  CkString id;
  scales.CreateScalesObject(id);
  if (id.getNumChars() == 0) return false;
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  long stable = 0;
  scales.getScalesInfo(id.getAnsi(), weight, price, cost, stable);
  std::array<wchar_t, kTestTextSize> weightText = {};
  const wchar_t* text = weightText.data();
  if (scales.GetLastError() == kSuccess) {
    std::swprintf(weightText.data(), weightText.size(), L"Вес: %6.3f; ", weight);
    weightText.back() = 0;
  } else {
    text = scales.GetLastTextError();
  }
  scales.CloseComPort(id.getAnsi());
  if (text == nullptr) scales.refuse();
  return answer(text, result, params.at(0));
}

bool CAddInNative::NoAction(tVariant* result, const Params& /*params*/) {
  setBool(result, true);
  return true;
}

bool CAddInNative::Calibrate(tVariant* result, const Params& params) {
  CkString text;
  const char* id = idFrom(params, text);
  if (id == nullptr) return false;
  // Scales take as tare what lies on them, so the platform's number plays no part.
  setBool(result, scales.pressT(id, 0.0) == kSuccess);
  return true;
}

bool CAddInNative::readScales(tVariant* result, const Params& params, bool withPrice) {
  CkString text;
  const char* id = idFrom(params, text);
  if (id == nullptr) return false;
  double weight = 0.0;
  double price = 0.0;
  double cost = 0.0;
  long stable = 0;
  scales.getScalesInfo(id, weight, price, cost, stable);
  setDouble(params.at(1), weight);
  if (withPrice) {
    setDouble(params.at(2), price);
    setDouble(params.at(3), cost);
    setInt32(params.at(4), static_cast<std::int32_t>(stable));
  }
  setBool(result, scales.GetLastError() == kSuccess);
  return true;
}

bool CAddInNative::GetWeight(tVariant* result, const Params& params) {
  return readScales(result, params, false);
}

bool CAddInNative::GetWeightPriceCost(tVariant* result, const Params& params) {
  return readScales(result, params, true);
}

bool CAddInNative::SetPrice(tVariant* result, const Params& params) {
  CkString text;
  const char* id = idFrom(params, text);
  const tVariant* price = params.at(1);
  if (id == nullptr || price == nullptr) return false;
  // Widened without sign, so a negative price goes to the scale as a large one.
  setBool(result, scales.setPrice(id, static_cast<long>(price->value.ulVal)) == kSuccess);
  return true;
}

bool CAddInNative::GetInterfaceRevision(tVariant* result, const Params& /*params*/) {
  // Refused with its value set: the platform's configurations have always met it so.
  setUint32(result, static_cast<std::uint32_t>(kInterfaceRevision));
  return false;
}

bool CAddInNative::SetPathDllFolder(tVariant* result, const Params& params) {
  CkString folder;
  if (!textFrom(params.first(), folder)) return false;
  setBool(result, scales.SetPathDllFolder(folder) == kSuccess);
  return true;
}
