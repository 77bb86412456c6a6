#include "KestrumObject.h"

#include "Psdk.h"

KestrumObject::~KestrumObject() noexcept = default;

int KestrumObject::heapUsage() { return 0; }

void KestrumObject::deleteObject(KestrumObject* object) noexcept {
  if (object == nullptr) return;
  if (!object->isKestrumObject()) {
    Psdk::badObjectFound();
    return;
  }
  delete object;
}
