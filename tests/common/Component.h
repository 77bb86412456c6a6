#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "HostObject.h"
#include "MemoryManager.h"
#include "Platform.h"
#include "Variant.h"

namespace fixture {

/// The component's library, loaded as the platform does it. Throws `std::runtime_error` with the
/// loader's message if that fails.
class Library {
 public:
  /// Path of the library of this build.
  static const char* builtPath();

  explicit Library(const std::string& path = builtPath());
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  GetClassObjectFn getClassObject;
  DestroyObjectFn destroyObject;
  GetClassNamesFn getClassNames;
  SetPlatformCapabilitiesFn setPlatformCapabilities;

 private:
  template <typename Function>
  Function find(const char* name) const;

  void* handle_;
};

/// One call of a method, with everything that it left.
struct Call {
  Call(MemoryManager& memory, std::vector<Value> values)
      : params(memory, std::move(values)), result(memory) {}

  bool executed = false;
  Arguments params;
  ReturnValue result;
  /// The call was executed and its return variant is that flag.
  bool returned(bool flag) const {
    return executed && result->vt == kVariantBool && result->value.bVal == flag;
  }
};

/// A component object in the hands of a host: loaded, created, initialised; ended with this.
class Component {
 public:
  explicit Component(const std::string& path = Library::builtPath());
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  IComponentBase* operator->() const { return object_; }
  IComponentBase* get() const { return object_; }
  Library& library() { return library_; }

  /// Calls a method by its English or Russian name.
  std::unique_ptr<Call> call(std::u16string_view method, std::vector<Value> values = {});

  /// `SetParameter`, which must succeed.
  void set(std::u16string name, Value value);
  /// `Open` by what was set; gives the device id.
  std::u16string open();
  /// `GetLastError`: the code, and its text if `text` is given.
  unsigned lastError(std::u16string* text = nullptr);

  MemoryManager memory;
  HostObject host;

 private:
  Library library_;
  IComponentBase* object_ = nullptr;
};

}  // namespace fixture
