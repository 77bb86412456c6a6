#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Library.h"
#include "MemoryManager.h"
#include "PlatformObject.h"
#include "Variant.h"

namespace fixture {

/// Path of the component of this build.
const char* builtComponent();

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
  explicit Component(const std::string& path = builtComponent());
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  IComponentBase* operator->() const { return object_; }
  IComponentBase* get() const { return object_; }

  /// Calls a method by its English or Russian name.
  std::unique_ptr<Call> call(std::u16string_view method, std::vector<Value> values = {});

  /// `SetParameter`, which must succeed.
  void set(std::u16string name, Value value);
  /// `Open` by what was set; gives the device id.
  std::u16string open();
  /// `GetLastError`: the code, and its text if `text` is given.
  unsigned lastError(std::u16string* text = nullptr);

  MemoryManager memory;
  host::PlatformObject host;

 private:
  host::Library library_;
  IComponentBase* object_ = nullptr;
};

}  // namespace fixture
