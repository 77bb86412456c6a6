#include "KestrumObject.h"

#include "CkMemory.h"
#include "Psdk.h"

KestrumObject::~KestrumObject() { ckClearValidity(m_objMagic); }

int KestrumObject::heapUsage() { return 0; }

void KestrumObject::deleteObject(KestrumObject* object) noexcept {
  if (object == nullptr) return;
  if (!object->isKestrumObject()) {
    Psdk::badObjectFound();
    return;
  }
  try {
    delete object;
  } catch (...) {
    Psdk::badObjectFound();
  }
}
