#include "AddInNative.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>

#include "Boundary.h"
#include "DriverFacts.h"
#include "Methods.h"
#include "Models.h"
#include "Variants.h"
#include "WideStrings.h"

namespace {

constexpr long kNoName = -1;
constexpr long kEnglish = 0;
constexpr long kRussian = 1;

/// The names of the properties in both languages: there is one for form's sake, without a name.
constexpr std::array<const wchar_t*, 1> g_PropNames = {L""};

std::unique_ptr<wchar_t[]> toWide(const WCHAR_T* text) {
  static constexpr WCHAR_T kNothing = 0;
  wchar_t* wide = nullptr;
  convFromShortWchar(&wide, text == nullptr ? &kNothing : text, 0);
  return std::unique_ptr<wchar_t[]>(wide);
}

}  // namespace

CAddInNative::CAddInNative() : connection(nullptr), memoryManager(nullptr), scales(createScales) {}

CAddInNative::~CAddInNative() = default;

bool CAddInNative::Init(void* disp) {
  connection = static_cast<IAddInDefBase*>(disp);
  scales.SetEvent(connection);
  return connection != nullptr;
}

bool CAddInNative::setMemManager(void* mem) {
  memoryManager = static_cast<IMemoryManager*>(mem);
  return memoryManager != nullptr;
}

long CAddInNative::GetInfo() { return kInterfaceRevision; }

void CAddInNative::Done() {}

bool CAddInNative::RegisterExtensionAs(WCHAR_T** name) {
  return guarded(true, [&] {
    if (memoryManager == nullptr) return false;
    if (name == nullptr) return true;
    if (WCHAR_T* text = toPlatform(kDriverName)) *name = text;
    return true;
  });
}

long CAddInNative::GetNProps() { return static_cast<long>(g_PropNames.size()); }

long CAddInNative::FindProp(const WCHAR_T* name) {
  return guarded(kNoName, [&] {
    return findName(g_PropNames.data(), toWide(name).get(),
                    static_cast<unsigned>(g_PropNames.size()));
  });
}

const WCHAR_T* CAddInNative::GetPropName(long num, long /*alias*/) {
  if (num < 0 || num >= GetNProps()) return nullptr;
  const wchar_t* const name = g_PropNames[static_cast<std::size_t>(num)];
  return guarded<const WCHAR_T*>(nullptr, [&] { return toPlatform(name); });
}

bool CAddInNative::GetPropVal(const long num, tVariant* value) {
  if (num != 0) return false;
  setBool(value, false);
  return true;
}

bool CAddInNative::SetPropVal(const long num, tVariant* value) {
  return num == 0 && value != nullptr && value->vt == kVariantBool;
}

bool CAddInNative::IsPropReadable(const long num) { return num == 0; }

bool CAddInNative::IsPropWritable(const long /*num*/) { return false; }

const CAddInNative::Method* CAddInNative::methodAt(long num) {
  const auto table = methods();
  if (num < 0 || static_cast<std::size_t>(num) >= table.size()) return nullptr;
  return &table[static_cast<std::size_t>(num)];
}

long CAddInNative::GetNMethods() { return static_cast<long>(methods().size()); }

long CAddInNative::FindMethod(const WCHAR_T* name) {
  return guarded(kNoName, [&] {
    const auto wide = toWide(name);
    const auto table = methods();
    for (const auto member : {&Method::name, &Method::nameRu}) {
      const auto found = std::find_if(table.begin(), table.end(), [&](const Method& method) {
        return std::wcscmp(method.*member, wide.get()) == 0;
      });
      if (found != table.end()) return static_cast<long>(found - table.begin());
    }
    return kNoName;
  });
}

const WCHAR_T* CAddInNative::GetMethodName(const long num, const long alias) {
  return guarded<const WCHAR_T*>(nullptr, [&]() -> const WCHAR_T* {
    const Method* method = methodAt(num);
    if (method == nullptr) return nullptr;
    if (alias == kEnglish) return toPlatform(method->name);
    return alias == kRussian ? toPlatform(method->nameRu) : nullptr;
  });
}

long CAddInNative::GetNParams(const long num) {
  const Method* method = methodAt(num);
  return method == nullptr ? 0 : method->parameters;
}

bool CAddInNative::GetParamDefValue(const long /*method*/, const long /*param*/, tVariant* value) {
  if (value != nullptr) value->vt = kVariantEmpty;
  return false;
}

bool CAddInNative::HasRetVal(const long num) { return methodAt(num) != nullptr; }

bool CAddInNative::CallAsProc(const long /*num*/, tVariant* /*params*/, const long /*count*/) {
  return false;
}

bool CAddInNative::CallAsFunc(const long num, tVariant* result, tVariant* params,
                              const long count) {
  return guarded(false, [&] {
    const Method* method = methodAt(num);
    return method != nullptr && (this->*method->handler)(result, Params(params, count));
  });
}

void CAddInNative::SetLocale(const WCHAR_T* /*locale*/) {}

WCHAR_T* CAddInNative::toPlatform(const wchar_t* text) {
  if (memoryManager == nullptr) return nullptr;
  const auto units = static_cast<unsigned>(std::wcslen(text)) + 1;
  void* block = nullptr;
  if (!memoryManager->AllocMemory(&block, units * sizeof(WCHAR_T))) return nullptr;
  auto* utf16 = static_cast<WCHAR_T*>(block);
  if (utf16 != nullptr) convToShortWchar(&utf16, text, units);
  return utf16;
}

bool CAddInNative::wstring_to_p(const wchar_t* text, tVariant* out) {
  if (text == nullptr) return false;
  if (out == nullptr) return true;
  WCHAR_T* const block = toPlatform(text);  // before the variant is touched: it may throw
  out->vt = kVariantWideString;
  out->value.wide.pwstrVal = block;
  out->value.wide.wstrLen = block == nullptr ? 0 : static_cast<std::uint32_t>(std::wcslen(text));
  return true;
}

bool CAddInNative::GetStrFromParam(tVariant* in, CkString& out) {
  out.clear();
  if (in == nullptr) return false;
  switch (in->vt) {
    case kVariantNarrowString: out.appendAnsi(in->value.narrow.pstrVal); return true;
    case kVariantWideString: out.setStringUtf16(in->value.wide.pwstrVal); return true;
    default: return false;
  }
}

void CAddInNative::addError(unsigned code, const wchar_t* source, const wchar_t* description,
                            long errorCode) {
  if (connection == nullptr) return;
  guarded(false, [&] {
    const WcharWrapper sourceUtf16(source);
    const WcharWrapper descriptionUtf16(description);
    return connection->AddError(static_cast<unsigned short>(code), sourceUtf16, descriptionUtf16,
                                errorCode);
  });
}

long CAddInNative::findName(const wchar_t* const* names, const wchar_t* name, unsigned count) {
  for (unsigned i = 0; i < count; ++i) {
    if (std::wcscmp(names[i], name) == 0) return static_cast<long>(i);
  }
  return kNoName;
}
