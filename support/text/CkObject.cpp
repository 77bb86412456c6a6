#include "CkObject.h"

CkObject::~CkObject() = default;

const char* CkObject::objcUtf8(const char* text) { return text; }

void CkObject::objcUtf8_free() { m_objcResult.reset(); }
