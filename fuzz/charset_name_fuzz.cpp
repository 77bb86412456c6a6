// Names of character sets and of locales.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "CharsetNaming.h"
#include "CkCharset.h"
#include "Psdk.h"
#include "StringBuffer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  Psdk::ansiCodePageOfLocale(name.c_str());
  _ckCharset charset;
  const bool known = charset.setByName(name.c_str());
  if (!known && charset.getCodePage() != 0) std::abort();

  StringBuffer normalised;
  normalised.append(name);
  const int codePage = CharsetNaming::GetCodePage(normalised);
  // A canonical name, if there is one, can be asked again.
  StringBuffer canonical;
  if (codePage != 0) CharsetNaming::GetCharsetName(codePage, canonical);
  CharsetNaming::GetCodePage(canonical);
  return 0;
}
