#include "Component.h"

#include "Utf16.h"

namespace host {

namespace {

constexpr long kEnglish = 0;
constexpr long kRussian = 1;
constexpr char kNameSeparator = '|';

std::string firstName(const std::string& names) {
  return names.substr(0, names.find(kNameSeparator));
}

}  // namespace

Component::Component(const std::filesystem::path& file) : library_(file) {
  library_.setPlatformCapabilities(kCapabilitiesLast);
  className_ = firstName(toUtf8(library_.getClassNames()));
  const auto name = toUtf16(className_);
  const bool made = library_.getClassObject(name.c_str(), &object_) != 0 && object_ != nullptr;
  if (!made)
    throw LoadError(LoadError::Reason::NoObject, file, "GetClassObject(" + className_ + ")");
  if (!object_->setMemManager(&memory_) || !object_->Init(&platform_)) {
    library_.destroyObject(&object_);
    throw LoadError(LoadError::Reason::NoObject, file, "Init");
  }
}

Component::~Component() {
  object_->Done();
  library_.destroyObject(&object_);
}

std::string Component::takeText(const WCHAR_T* text) {
  std::string result = toUtf8(text);
  void* block = const_cast<WCHAR_T*>(text);
  memory_.FreeMemory(&block);
  return result;
}

std::string Component::registeredName() {
  WCHAR_T* name = nullptr;
  return object_->RegisterExtensionAs(&name) ? takeText(name) : std::string();
}

Method Component::methodAt(long number) {
  return {.number = number,
          .name = takeText(object_->GetMethodName(number, kEnglish)),
          .russianName = takeText(object_->GetMethodName(number, kRussian)),
          .parameters = object_->GetNParams(number),
          .returnsValue = object_->HasRetVal(number)};
}

std::vector<Method> Component::methods() {
  std::vector<Method> methods;
  for (long number = 0; number < object_->GetNMethods(); ++number) {
    methods.push_back(methodAt(number));
  }
  return methods;
}

std::optional<Method> Component::findMethod(std::string_view name) {
  const long number = object_->FindMethod(toUtf16(name).c_str());
  if (number < 0) return std::nullopt;
  return methodAt(number);
}

CallResult Component::call(std::string_view name, std::vector<Value> params) {
  const auto method = findMethod(name);
  if (!method) throw UnknownMethod(std::string(name));
  return call(*method, std::move(params));
}

CallResult Component::call(const Method& method, std::vector<Value> params) {
  const auto wanted = static_cast<std::size_t>(method.parameters);
  if (params.size() < wanted) params.resize(wanted);
  Variants variants(params, memory_);
  const Value unset;
  Variants result(std::span(&unset, 1), memory_);
  const bool executed =
      object_->CallAsFunc(method.number, result.data(), variants.data(), variants.count());
  return {.executed = executed, .result = result.values().front(), .params = variants.values()};
}

LastError Component::lastError() {
  const CallResult answer = call("GetLastError");
  const auto* code = std::get_if<std::uint32_t>(&answer.result);
  const auto* text = std::get_if<std::string>(&answer.params.at(0));
  return {code == nullptr ? 0 : *code, text == nullptr ? std::string() : *text};
}

}  // namespace host
