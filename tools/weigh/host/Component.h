#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Library.h"
#include "Memory.h"
#include "Platform.h"
#include "PlatformObject.h"
#include "Variants.h"

namespace host {

/// One row of the component's method table.
struct Method {
  long number;
  std::string name;
  std::string russianName;
  long parameters;
  bool returnsValue;
};

/// What came back from a call.
struct CallResult {
  /// False: the component refused the call, as for a parameter of the wrong type.
  bool executed;
  /// Nothing if the component left it unset.
  Value result;
  /// The parameters after the call.
  std::vector<Value> params;

  /// Executed, and the result isn't a plain "no".
  bool good() const { return executed && result != Value(false); }
};

struct LastError {
  std::uint32_t code;
  std::string text;
};

/// No method has that name; names are exact, also in case.
class UnknownMethod : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// One attached component object, loaded and called as the platform does it. Used by one thread.
///
///     host::Component scales(host::Library::besideProgram());
///     scales.call("SetParameter", {"model", 20});
///     const auto id = scales.call("Open").params.at(0);
///     const auto weight = scales.call("GetWeight", {id}).params.at(1);
class Component {
 public:
  /// Throws LoadError.
  explicit Component(const std::filesystem::path& file);
  /// Ends the object with its scales, then unloads the library.
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// The class that was asked for: the first name of the component's list.
  const std::string& className() const { return className_; }
  /// The name that the component registers under.
  std::string registeredName();

  std::vector<Method> methods();
  std::optional<Method> findMethod(std::string_view name);

  /// Calls a method by Russian or English name. Parameters that aren't given go over empty, so
  /// that outputs have their place. Throws UnknownMethod.
  CallResult call(std::string_view name, std::vector<Value> params = {});
  CallResult call(const Method& method, std::vector<Value> params);
  /// Code and text of the last operation on a scale.
  LastError lastError();

  Memory& memory() { return memory_; }
  const PlatformObject& platform() const { return platform_; }
  const Library& library() const { return library_; }
  /// The object itself, for calls that a well-behaved platform wouldn't make.
  IComponentBase& object() { return *object_; }

 private:
  Method methodAt(long number);
  /// Takes over a name from the component's memory.
  std::string takeText(const WCHAR_T* text);

  // The object ends before what it was given, and the library last.
  Memory memory_;
  PlatformObject platform_;
  Library library_;
  std::string className_;
  IComponentBase* object_ = nullptr;
};

}  // namespace host
