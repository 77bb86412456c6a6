// The component in the hands of a hostile host: any operation in any order, on several objects,
// with any numbers, any variants, and null pointers wherever the interface takes a pointer. What
// the host owes the component it does give: texts end in NUL, and no call has fewer parameters
// than it says.

#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "MemoryManager.h"
#include "Platform.h"
#include "PlatformObject.h"

extern "C" long GetClassObject(const WCHAR_T* name, IComponentBase** object);
extern "C" long DestroyObject(IComponentBase** object);
extern "C" const WCHAR_T* GetClassNames();
extern "C" AppCapabilities SetPlatformCapabilities(AppCapabilities capabilities);

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

/// A text up to its NUL; empty for a null pointer.
std::u16string utf16(const WCHAR_T* text) {
  std::u16string result;
  for (; text != nullptr && *text != 0; ++text) result += static_cast<char16_t>(*text);
  return result;
}

/// A text for the component, NUL included.
std::vector<WCHAR_T> units(std::u16string_view text) {
  std::vector<WCHAR_T> result(text.begin(), text.end());
  result.push_back(0);
  return result;
}

/// A component's folder with emulators, scales without a line, and entries that are no scales.
const std::u16string& folder() {
  static const std::u16string path = [] {
    const auto made =
        std::filesystem::temp_directory_path() / ("boundary_fuzz_" + std::to_string(::getpid()));
    std::filesystem::create_directories(made);
    std::ofstream(made / "settings.xml") << R"(<?xml version="1.0" encoding="UTF-8"?>
<SETTINGS>
  <SCALES0 fNum="1" fIsComPort="1" fComPortName="/none" fComBaudRate="9600" fType="20" fCoeff="2"/>
  <SCALES1 fNum="2" fIsComPort="1" fComPortName="/none/line" fComBaudRate="56000" fType="13"/>
  <SCALES2 fNum="3" fIsComPort="0" fHost="127.0.0.1" fTCPPort="1" fType="7" fLeaveConnect="1"/>
  <SCALES3 fNum="x" fIsComPort="0" fHost="" fTCPPort="-1" fType="5"/>
</SETTINGS>)";
    return made.u16string();
  }();
  return path;
}

class Host {
 public:
  Host(const std::uint8_t* data, std::size_t size) : data_(data, size) {}

  void run() {
    constexpr int kMostCalls = 40;
    for (int i = 0; i < kMostCalls && data_.remaining_bytes() > 0; ++i) {
      IComponentBase*& object = objects_[data_.ConsumeIntegral<std::uint8_t>() % objects_.size()];
      if (object == nullptr) {
        create(object);
      } else {
        act(object);
      }
      texts_.clear();
    }
    for (IComponentBase*& object : objects_) DestroyObject(&object);
    for (const WCHAR_T* text : received_) {
      void* block = const_cast<WCHAR_T*>(text);
      memory_.FreeMemory(&block);
    }
    check(memory_.live() == 0);
    check(memory_.foreignFrees() == 0);
  }

 private:
  void create(IComponentBase*& object) {
    GetClassObject(text(), &object);
    check(object != nullptr);
    // Either, both or none, in either order.
    if (data_.ConsumeBool()) object->Init(data_.ConsumeBool() ? &host_ : nullptr);
    if (data_.ConsumeIntegral<std::uint8_t>() > 16) object->setMemManager(&memory_);
    if (data_.ConsumeBool()) object->Init(&host_);
  }

  void act(IComponentBase*& object) {
    constexpr int kFirstCall = 21;
    constexpr int kLast = 40;
    const int action = data_.ConsumeIntegralInRange(0, kLast);
    if (action >= kFirstCall) return call(*object);
    switch (action) {
      case 0: DestroyObject(&object); return;
      case 1: object->Init(data_.ConsumeBool() ? &host_ : nullptr); return;
      case 2: object->setMemManager(data_.ConsumeBool() ? &memory_ : nullptr); return;
      case 3: object->GetInfo(); return;
      case 4: object->Done(); return;
      case 5: {
        WCHAR_T* name = nullptr;
        object->RegisterExtensionAs(data_.ConsumeBool() ? &name : nullptr);
        take(name);
        return;
      }
      case 6: object->GetNProps(); return;
      case 7: object->FindProp(text()); return;
      case 8: take(object->GetPropName(number(), number())); return;
      case 9: withVariant([&](tVariant* value) { object->GetPropVal(number(), value); }); return;
      case 10: withVariant([&](tVariant* value) { object->SetPropVal(number(), value); }); return;
      case 11: object->IsPropReadable(number()); return;
      case 12: object->IsPropWritable(number()); return;
      case 13: check(object->FindMethod(text()) < object->GetNMethods()); return;
      case 14: take(object->GetMethodName(number(), number())); return;
      case 15: object->GetNParams(number()); return;
      case 16:
        withVariant([&](tVariant* value) { object->GetParamDefValue(number(), number(), value); });
        return;
      case 17: object->HasRetVal(number()); return;
      case 18: object->SetLocale(text()); return;
      case 19: memory_.failAt(data_.ConsumeIntegralInRange(0, 8)); return;
      case 20:
        GetClassNames();
        SetPlatformCapabilities(static_cast<AppCapabilities>(data_.ConsumeIntegral<int>()));
        return;
      default: return;
    }
  }

  void call(IComponentBase& object) {
    constexpr int kMostParameters = 8;
    const long method = number();
    std::vector<tVariant> params(
        static_cast<std::size_t>(data_.ConsumeIntegralInRange(1, kMostParameters)));
    for (tVariant& param : params) param = variant();
    const std::vector<tVariant> before = params;
    const bool none = data_.ConsumeIntegral<std::uint8_t>() < 8;
    const long count = data_.ConsumeIntegralInRange(-1L, static_cast<long>(params.size()));
    tVariant result = variant();
    const tVariant resultBefore = result;
    const bool noResult = data_.ConsumeIntegral<std::uint8_t>() < 8;
    if (data_.ConsumeIntegral<std::uint8_t>() < 4) {
      object.CallAsProc(method, none ? nullptr : params.data(), count);
    } else {
      object.CallAsFunc(method, noResult ? nullptr : &result, none ? nullptr : params.data(),
                        count);
    }
    for (std::size_t i = 0; i < params.size(); ++i) takeChange(before[i], params[i]);
    takeChange(resultBefore, result);
  }

  void withVariant(auto operation) {
    tVariant value = variant();
    const tVariant before = value;
    operation(data_.ConsumeBool() ? &value : nullptr);
    takeChange(before, value);
  }

  /// Takes over a text that a call put into a variant.
  void takeChange(const tVariant& before, const tVariant& after) {
    if (after.vt != kVariantWideString) return;
    const auto& wide = after.value.wide;
    if (before.vt == kVariantWideString && before.value.wide.pwstrVal == wide.pwstrVal) return;
    take(wide.pwstrVal);
    if (wide.pwstrVal == nullptr) {
      check(wide.wstrLen == 0);
      return;
    }
    check(memory_.sizeOf(wide.pwstrVal) == (wide.wstrLen + std::size_t{1}) * sizeof(WCHAR_T));
    check(wide.pwstrVal[wide.wstrLen] == 0);
    // A device id to call with later.
    ids_.push_back(units(utf16(wide.pwstrVal)));
    if (ids_.size() > kMostIds) ids_.erase(ids_.begin());
  }

  void take(const WCHAR_T* text) {
    if (text != nullptr) received_.push_back(text);
  }

  /// A small number, which may mean something, or any.
  long number() {
    constexpr long kSmall = 20;
    return data_.ConsumeIntegral<std::uint8_t>() < 230 ? data_.ConsumeIntegralInRange(-1L, kSmall)
                                                       : data_.ConsumeIntegral<long>();
  }

  std::vector<WCHAR_T> anyText() {
    static const std::array<std::u16string, 26> kTexts = {
        u"",      u"GetWeight",    u"ПолучитьВес", u"CAddInNative",
        u"model", u"conntype",     u"conleave",    u"coeff",
        u"cport", u"cbaudrate",    u"ehost",       u"eport",
        u"1,5",   u"/none/line",   u"127.0.0.1",   u"localhost",
        u"[::1]", u"http://a/",    u"1",           u"2",
        u"3",     u"/none",        folder(),       folder() + u"/",
        u"/",     u"\xD800x\xDC00"};
    const auto choice = data_.ConsumeIntegral<std::uint8_t>();
    if (choice < kTexts.size()) return units(kTexts[choice]);
    constexpr std::uint8_t kFirstId = 64;
    if (choice >= kFirstId && !ids_.empty()) return ids_[choice % ids_.size()];
    constexpr std::size_t kLongest = 2000;
    // A byte each, with a high half now and then, repeated for texts longer than the input.
    const auto times = static_cast<std::size_t>(choice % 4 == 0 ? 50 : 1);
    const std::string bytes = data_.ConsumeRandomLengthString(kLongest / 50);
    const bool high = data_.ConsumeBool();
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size() * times; ++i) {
      const auto low = static_cast<unsigned char>(bytes[i % bytes.size()]);
      // No path of this machine is to be opened as if it were a line.
      if (low == '/' || low == 0) continue;
      text += static_cast<char16_t>(high ? low * 0x101 : low);
    }
    return units(text);
  }

  /// A text that lives until the next action, or null.
  const WCHAR_T* text() {
    if (data_.ConsumeIntegral<std::uint8_t>() < 8) return nullptr;
    return texts_.emplace_back(std::make_unique<std::vector<WCHAR_T>>(anyText()))->data();
  }

  tVariant variant() {
    tVariant value = {};
    value.value.llVal = data_.ConsumeIntegral<std::int64_t>();
    value.cbElements = data_.ConsumeIntegral<std::uint32_t>();
    switch (data_.ConsumeIntegralInRange(0, 5)) {
      case 0:
        value.vt = kVariantInt32;
        value.value.lVal = static_cast<int>(number());
        break;
      case 1: narrow(value); break;
      case 2: value.vt = anyTypeButText(); break;
      default:
        value.vt = kVariantWideString;
        value.value.wide = {const_cast<WCHAR_T*>(text()), data_.ConsumeIntegral<std::uint32_t>()};
        break;
    }
    return value;
  }

  /// A text in bytes: the low halves of a wide one.
  void narrow(tVariant& value) {
    value.vt = kVariantNarrowString;
    value.value.narrow = {nullptr, data_.ConsumeIntegral<std::uint32_t>()};
    const WCHAR_T* wide = text();
    if (wide == nullptr) return;
    auto& bytes = texts_.emplace_back(std::make_unique<std::vector<WCHAR_T>>());
    const std::u16string wideText = utf16(wide);
    bytes->resize(wideText.size() / sizeof(WCHAR_T) + 1);
    char* target = static_cast<char*>(static_cast<void*>(bytes->data()));
    std::transform(wideText.begin(), wideText.end(), target, [](char16_t unit) {
      const auto low = static_cast<char>(unit & 0xFF);
      return low == 0 ? '?' : low;
    });
    target[wideText.size()] = 0;
    value.value.narrow.pstrVal = target;
  }

  /// Junk with the type of a text would be a pointer into nowhere, which no host gives.
  std::uint16_t anyTypeButText() {
    const auto type = data_.ConsumeIntegral<std::uint16_t>();
    return type == kVariantNarrowString || type == kVariantWideString
               ? static_cast<std::uint16_t>(kVariantByReferenceFlag | type)
               : type;
  }

  static constexpr std::size_t kMostIds = 8;

  FuzzedDataProvider data_;
  fixture::MemoryManager memory_;
  host::PlatformObject host_;
  std::array<IComponentBase*, 3> objects_ = {};
  std::vector<std::unique_ptr<std::vector<WCHAR_T>>> texts_;
  std::vector<std::vector<WCHAR_T>> ids_;
  std::vector<const WCHAR_T*> received_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Host(data, size).run();
  return 0;
}
