#include "ComponentFixture.h"

#include <stdexcept>
#include <utility>

namespace fixture {

const char* builtComponent() { return ORBELO_COMPONENT; }

Component::Component(const std::string& path) : library_(path) {
  if (library_.getClassObject(units(u"CAddInNative").data(), &object_) == 0) {
    throw std::runtime_error("GetClassObject made no object");
  }
  object_->setMemManager(&memory);
  object_->Init(&host);
}

Component::~Component() { library_.destroyObject(&object_); }

std::unique_ptr<Call> Component::call(std::u16string_view method, std::vector<Value> values) {
  auto call = std::make_unique<Call>(memory, std::move(values));
  const long number = object_->FindMethod(units(method).data());
  call->executed =
      object_->CallAsFunc(number, call->result.data(), call->params.data(), call->params.count());
  return call;
}

void Component::set(std::u16string name, Value value) {
  if (!call(u"SetParameter", {std::move(name), std::move(value)})->returned(true)) {
    throw std::runtime_error("SetParameter was refused");
  }
}

std::u16string Component::open() { return call(u"Open", {kNothing})->params.text(0); }

unsigned Component::lastError(std::u16string* text) {
  const auto error = call(u"GetLastError", {kNothing});
  if (text != nullptr) *text = error->params.text(0);
  return error->result->value.ulVal;
}

}  // namespace fixture
