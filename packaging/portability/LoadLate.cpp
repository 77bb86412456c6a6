// load_late LIBRARY FOLDER ID POLLS PAUSE_MS - loads the component late, as a process without
// threads and without a C++ runtime, and polls a scale of the folder's settings.xml.
//
// A line for each poll: the result code and the weight. Exit code 0 if all could be called, 1 if
// not, 2 for wrong arguments.

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "Platform.h"

// No C++ runtime here: what the compiler asks of it for a class with virtual operations.
void operator delete(void* /*memory*/, std::size_t /*size*/) noexcept { std::abort(); }
void operator delete(void* /*memory*/) noexcept { std::abort(); }
extern "C" [[noreturn]] void __cxa_pure_virtual() { std::abort(); }

namespace {

class Memory final : public IMemoryManager {
 public:
  bool AllocMemory(void** memory, unsigned long bytes) override {
    *memory = std::malloc(bytes);
    return *memory != nullptr;
  }
  void FreeMemory(void** memory) override {
    std::free(*memory);
    *memory = nullptr;
  }
};

constexpr std::size_t kMostText = 256;

/// An ASCII text in UTF-16.
struct Wide {
  explicit Wide(const char* text) {
    while (size < kMostText - 1 && text[size] != 0) {
      units[size] = static_cast<unsigned char>(text[size]);
      ++size;
    }
  }
  tVariant variant() {
    tVariant value = {};
    value.vt = kVariantWideString;
    value.value.wide.pwstrVal = units;
    value.value.wide.wstrLen = size;
    return value;
  }
  WCHAR_T units[kMostText] = {};
  std::uint32_t size = 0;
};

long methodOf(IComponentBase* component, const char* name) {
  return component->FindMethod(Wide(name).units);
}

bool poll(IComponentBase* component, const char* id) {
  Wide name(id);
  tVariant params[2] = {name.variant(), {}};
  tVariant result = {};
  if (!component->CallAsFunc(methodOf(component, "GetWeight"), &result, params, 2)) return false;
  tVariant code = {};
  tVariant text = {};
  if (!component->CallAsFunc(methodOf(component, "GetLastError"), &code, &text, 1)) return false;
  std::printf("%d %.3f\n", code.value.lVal, params[1].value.dblVal);
  std::fflush(stdout);
  return true;
}

int fail(const char* what) {
  std::fprintf(stderr, "load_late: %s\n", what);
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 6) {
    std::fputs("load_late LIBRARY FOLDER ID POLLS PAUSE_MS\n", stderr);
    return 2;
  }
  void* library = ::dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return fail(::dlerror());
  const auto make = reinterpret_cast<GetClassObjectFn>(::dlsym(library, "GetClassObject"));
  const auto destroy = reinterpret_cast<DestroyObjectFn>(::dlsym(library, "DestroyObject"));
  if (make == nullptr || destroy == nullptr) return fail("not the component");
  IComponentBase* component = nullptr;
  Memory memory;
  if (make(Wide("CAddInNative").units, &component) == 0) return fail("no component object");
  if (!component->setMemManager(&memory)) return fail("setMemManager");

  Wide path(arguments[2]);
  tVariant folder = path.variant();
  tVariant result = {};
  if (!component->CallAsFunc(methodOf(component, "SetPathDllFolder"), &result, &folder, 1)) {
    return fail("SetPathDllFolder");
  }
  for (int polls = std::atoi(arguments[4]); polls > 0; --polls) {
    if (!poll(component, arguments[3])) return fail("GetWeight");
    ::usleep(static_cast<useconds_t>(std::atoi(arguments[5])) * 1000);
  }
  destroy(&component);
  ::dlclose(library);
  return component == nullptr ? 0 : fail("DestroyObject");
}
