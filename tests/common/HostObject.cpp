#include "HostObject.h"

#include "Variant.h"

namespace fixture {

bool HostObject::AddError(unsigned short code, const WCHAR_T* source, const WCHAR_T* description,
                          long scode) {
  errors_.push_back({code, utf16(source), utf16(description), scode});
  return true;
}

}  // namespace fixture
