#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <type_traits>

// The platform's native add-in interface on Linux x86-64: Itanium C++ ABI, UTF-16 texts. The
// order of the virtual operations is the contract, and a host calls them by slot.

/// One unit of a UTF-16 text.
using WCHAR_T = std::uint16_t;

/// What a variant holds.
enum VariantType : std::uint16_t {
  kVariantEmpty = 0,
  kVariantNull = 1,
  kVariantInt16 = 2,
  kVariantInt32 = 3,
  kVariantFloat = 4,
  kVariantDouble = 5,
  kVariantDate = 6,
  kVariantTm = 7,
  kVariantNarrowString = 8,
  kVariantInterface = 9,
  kVariantError = 10,
  kVariantBool = 11,
  kVariantVariant = 12,
  kVariantInt8 = 13,
  kVariantUint8 = 14,
  kVariantUint16 = 15,
  kVariantUint32 = 16,
  kVariantInt64 = 17,
  kVariantUint64 = 18,
  kVariantInt = 19,
  kVariantUint = 20,
  kVariantHresult = 21,
  kVariantWideString = 22,
  kVariantBlob = 23,
  kVariantUuid = 24,
  kVariantVectorFlag = 0x1000,
  kVariantArrayFlag = 0x2000,
  kVariantByReferenceFlag = 0x4000,
};

struct PlatformUuid {
  std::uint8_t bytes[16];
};

/// A value of the platform. Strings belong to the platform and come from its memory manager;
/// their lengths don't count the NUL.
struct _tVariant {
  struct Interface {
    void* pInterfaceVal;
    PlatformUuid InterfaceID;
  };
  struct NarrowString {
    char* pstrVal;
    std::uint32_t strLen;
  };
  struct WideString {
    WCHAR_T* pwstrVal;
    std::uint32_t wstrLen;
  };
  union Value {
    std::int8_t i8Val;
    std::int16_t shortVal;
    std::int32_t lVal;
    int intVal;
    unsigned int uintVal;
    std::int64_t llVal;
    std::uint8_t ui8Val;
    std::uint16_t ushortVal;
    std::uint32_t ulVal;
    std::uint64_t ullVal;
    std::int32_t errCode;
    long hRes;
    float fltVal;
    double dblVal;
    bool bVal;
    char chVal;
    wchar_t wchVal;
    double date;
    PlatformUuid IDVal;
    _tVariant* pvarVal;
    std::tm tmVal;
    Interface interfaceVal;
    NarrowString narrow;
    WideString wide;
  } value;
  /// Length of an array.
  std::uint32_t cbElements;
  /// A VariantType. Only these 16 bits count: a host may leave anything in the padding behind.
  std::uint16_t vt;
};
using tVariant = _tVariant;

static_assert(sizeof(tVariant) == 64 && alignof(tVariant) == 8);
static_assert(sizeof(std::tm) == 56, "the largest member sets the size of the union");
static_assert(offsetof(tVariant, value) == 0);
static_assert(offsetof(tVariant, cbElements) == 56);
static_assert(offsetof(tVariant, vt) == 60);
static_assert(offsetof(tVariant::NarrowString, strLen) == 8);
static_assert(offsetof(tVariant::WideString, wstrLen) == 8);
static_assert(offsetof(tVariant::Interface, InterfaceID) == 8);
static_assert(std::is_standard_layout_v<tVariant> && std::is_trivial_v<tVariant>);

/// What the platform says it can do.
enum AppCapabilities : int {
  kCapabilitiesInvalid = -1,
  kCapabilities1 = 1,
  kCapabilitiesLast = kCapabilities1,
};
static_assert(sizeof(AppCapabilities) == sizeof(int));

class IInitDoneBase {
 public:
  virtual ~IInitDoneBase() = default;
  virtual bool Init(void* disp) = 0;
  virtual bool setMemManager(void* mem) = 0;
  virtual long GetInfo() = 0;
  virtual void Done() = 0;
};

class ILanguageExtenderBase {
 public:
  virtual ~ILanguageExtenderBase() = default;
  virtual bool RegisterExtensionAs(WCHAR_T** name) = 0;
  virtual long GetNProps() = 0;
  virtual long FindProp(const WCHAR_T* name) = 0;
  virtual const WCHAR_T* GetPropName(long num, long alias) = 0;
  virtual bool GetPropVal(const long num, tVariant* value) = 0;
  virtual bool SetPropVal(const long num, tVariant* value) = 0;
  virtual bool IsPropReadable(const long num) = 0;
  virtual bool IsPropWritable(const long num) = 0;
  virtual long GetNMethods() = 0;
  virtual long FindMethod(const WCHAR_T* name) = 0;
  virtual const WCHAR_T* GetMethodName(const long num, const long alias) = 0;
  virtual long GetNParams(const long num) = 0;
  virtual bool GetParamDefValue(const long method, const long param, tVariant* value) = 0;
  virtual bool HasRetVal(const long num) = 0;
  virtual bool CallAsProc(const long num, tVariant* params, const long count) = 0;
  virtual bool CallAsFunc(const long num, tVariant* result, tVariant* params, const long count) = 0;
};

class LocaleBase {
 public:
  virtual ~LocaleBase() = default;
  virtual void SetLocale(const WCHAR_T* locale) = 0;
};

/// What the platform gets from the component. The bases lie at offsets 0, 8 and 16.
class IComponentBase : public IInitDoneBase, public ILanguageExtenderBase, public LocaleBase {
 public:
  ~IComponentBase() override = default;
};
static_assert(sizeof(IComponentBase) == 24);

/// The platform's memory: all that is handed to the platform comes from here, one block a string.
class IMemoryManager {
 public:
  virtual ~IMemoryManager() = default;
  virtual bool AllocMemory(void** memory, unsigned long bytes) = 0;
  virtual void FreeMemory(void** memory) = 0;
};

/// What the component gets from the platform.
class IAddInDefBase {
 public:
  virtual ~IAddInDefBase() = default;
  virtual bool AddError(unsigned short code, const WCHAR_T* source, const WCHAR_T* description,
                        long scode) = 0;
  virtual bool Read(WCHAR_T* name, tVariant* value, long* errorCode, WCHAR_T** errorText) = 0;
  virtual bool Write(WCHAR_T* name, tVariant* value) = 0;
  virtual bool RegisterProfileAs(WCHAR_T* name) = 0;
  virtual bool SetEventBufferDepth(long depth) = 0;
  virtual long GetEventBufferDepth() = 0;
  virtual bool ExternalEvent(WCHAR_T* source, WCHAR_T* message, WCHAR_T* data) = 0;
  virtual void CleanEventBuffer() = 0;
  virtual bool SetStatusLine(WCHAR_T* text) = 0;
  virtual void ResetStatusLine() = 0;
};

/// The four exports, for hosts that look them up.
extern "C" {
using GetClassObjectFn = long (*)(const WCHAR_T* name, IComponentBase** object);
using DestroyObjectFn = long (*)(IComponentBase** object);
using GetClassNamesFn = const WCHAR_T* (*)();
using SetPlatformCapabilitiesFn = AppCapabilities (*)(AppCapabilities capabilities);
}
