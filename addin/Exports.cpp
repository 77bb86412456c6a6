// What the platform finds in the library by name.

#include "AddInNative.h"
#include "Boundary.h"
#include "WideStrings.h"

namespace {

/// The only class that the component offers.
constexpr const wchar_t* g_kClassNames = L"CAddInNative";

const WcharWrapper s_names(g_kClassNames);

/// What the platform said last; nothing depends on it yet.
AppCapabilities g_capabilities = kCapabilitiesInvalid;

}  // namespace

#define ORBELO_EXPORT extern "C" __attribute__((visibility("default")))

/// Makes a component object, whatever the class name. The object's address as a number, or 0 if
/// `*object` was set already or there is no memory.
ORBELO_EXPORT long GetClassObject(const WCHAR_T* /*name*/, IComponentBase** object) {
  if (object == nullptr || *object != nullptr) return 0;
  *object = guarded<IComponentBase*>(nullptr, [] { return new CAddInNative; });
  return reinterpret_cast<long>(*object);
}

/// Ends a component object with its scales. 0, or -1 if there is none.
ORBELO_EXPORT long DestroyObject(IComponentBase** object) {
  if (object == nullptr || *object == nullptr) return -1;
  const CancellationHeld closing;
  delete *object;
  *object = nullptr;
  return 0;
}

/// The class names, valid for the life of the library.
ORBELO_EXPORT const WCHAR_T* GetClassNames() { return s_names; }

ORBELO_EXPORT AppCapabilities SetPlatformCapabilities(AppCapabilities capabilities) {
  g_capabilities = capabilities;
  return kCapabilitiesLast;
}
