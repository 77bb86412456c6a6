// What encoding an XML document is in, and the way from there to UTF-8.

#include <array>
#include <cstdint>
#include <string_view>

#include "AsciiText.h"
#include "CharsetNaming.h"
#include "CodePages.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "StringBuffer.h"

namespace {

using namespace code_page;

/// A NUL byte among the first so many gives a wide encoding away.
constexpr std::size_t kLookForNulIn = 200;

std::string_view viewOf(const DataBuffer& bytes) {
  return {reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize()};
}

/// Replaces the bytes by their conversion, also if some of them didn't convert. False, with the
/// bytes as they were, if memory is short.
bool convertAll(DataBuffer& bytes, int codePage, LogBase& log) {
  DataBuffer utf8;
  utf8.setSecure(bytes.getSecure());
  const std::uint32_t shortages = ckMemoryShortages();
  if (!EncodingConvert().EncConvert(codePage, kUtf8, bytes.getData2(), bytes.getSize(), utf8,
                                    log) &&
      ckMemoryShortages() != shortages) {
    return false;
  }
  bytes.swapData(utf8);
  return true;
}

/// Replaces the bytes by the first conversion that loses nothing.
bool convertWide(DataBuffer& bytes, LogBase& log) {
  for (const int codePage : {kUtf16Le, kUtf16Be, kUtf32Le, kUtf32Be}) {
    DataBuffer utf8;
    utf8.setSecure(bytes.getSecure());
    if (EncodingConvert().EncConvert(codePage, kUtf8, bytes.getData2(), bytes.getSize(), utf8,
                                     log)) {
      bytes.swapData(utf8);
      return true;
    }
  }
  return false;
}

/// The XML declaration up to its ">"; empty if there is none.
std::string_view findDeclaration(std::string_view text) {
  constexpr std::string_view kOpening = "<?xml";
  text = text.substr(0, text.find('\0'));
  std::size_t start = text.find("<?");
  while (start != std::string_view::npos &&
         !equalsNoCase(text.substr(start, kOpening.size()), kOpening)) {
    start = text.find("<?", start + 1);
  }
  if (start == std::string_view::npos) return {};
  const std::size_t end = text.find('>', start);
  return end == std::string_view::npos ? std::string_view() : text.substr(start, end - start);
}

/// Appends the value of `encoding` in the XML declaration, in lower case and without blanks.
void findDeclaredEncoding(std::string_view text, StringBuffer& out) {
  StringBuffer declaration;
  declaration.append(findDeclaration(text));
  declaration.removeCharOccurances(' ');
  declaration.toLowerCase();

  constexpr std::array<std::string_view, 2> kNames = {"encoding=\"", "encoding='"};
  for (const std::string_view name : kNames) {
    const std::size_t at = declaration.view().find(name);
    if (at == std::string_view::npos) continue;
    const std::string_view value = declaration.view().substr(at + name.size());
    std::size_t length = value.find('"');
    if (length == std::string_view::npos) length = value.find('\'');
    if (length != std::string_view::npos) out.append(value.substr(0, length));
    return;
  }
}

}  // namespace

bool DataBuffer::convertXmlToUtf8(LogBase& log) {
  if (empty() || !isAlive()) return false;
  const std::uint32_t shortages = ckMemoryShortages();
  const std::string_view text = viewOf(*this);
  for (const int wide : {kUtf16Le, kUtf16Be}) {
    if (text.starts_with(bomOf(wide))) return convertAll(*this, wide, log);
  }
  if (text.starts_with(bomOf(kUtf8))) {
    removeHead(static_cast<std::uint32_t>(bomOf(kUtf8).size()));
    return true;
  }
  const bool hasNul = text.substr(0, kLookForNulIn).find('\0') != std::string_view::npos;
  if (hasNul && convertWide(*this, log)) return true;

  StringBuffer encoding;
  findDeclaredEncoding(viewOf(*this), encoding);
  if (ckMemoryShortages() != shortages) return false;
  if (encoding.empty() || encoding.equals("utf-8")) return true;
  // An eight-bit file can't be what it says it is: written by a tool that copies the declaration.
  if (encoding.equals("utf-16") && !hasNul) return true;
  const int codePage = CharsetNaming::GetCodePage_p(encoding.getString());
  if (codePage == 0) return true;
  return convertAll(*this, codePage, log);
}
