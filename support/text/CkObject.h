#pragma once

#include "CkMemory.h"
#include "PublicApi.h"

/// Root of the public classes.
class ORBELO_PUBLIC CkObject {
 public:
  CkObject() = default;
  CkObject(const CkObject&) = delete;
  CkObject& operator=(const CkObject&) = delete;
  virtual ~CkObject();

  /// On this platform the text itself.
  const char* objcUtf8(const char* text);
  void objcUtf8_free();

 private:
  CkBlock m_objcResult;
};
