// The way of a conversion: what is special about a pair of code pages, byte order marks, and the
// dispatch to the loops of EncodingLoops.cpp.

#include "EncodingConvert.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "CharsetNaming.h"
#include "CkCharset.h"
#include "CkUtf.h"
#include "CodePageTables.h"
#include "CodePages.h"
#include "DataBuffer.h"
#include "Iso2022.h"
#include "LogBase.h"
#include "MacArabic.h"
#include "Psdk.h"

using namespace code_page;

void EncodingConvert::setDefBytes(const void* p, std::size_t n) {
  m_defBytesLen = p == nullptr ? 0 : std::min(n, m_defBytes.size());
  if (m_defBytesLen != 0) std::memcpy(m_defBytes.data(), p, m_defBytesLen);
}

void EncodingConvert::cleanupMemory() { cleanupCodePages(); }

bool EncodingConvert::EncConvert(int from, int to, const void* p, std::size_t n, DataBuffer& out,
                                 LogBase& log) {
  m_hadError = false;
  if (p == nullptr || n == 0) return true;
  const Source source{static_cast<const unsigned char*>(p), n};
  // A document that is no text passes whatever the code pages say.
  constexpr std::string_view kPdf = "%PDF-1";
  if (n > kPdf.size() && std::memcmp(p, kPdf.data(), kPdf.size()) == 0) return out.append(p, n);

  const LogContextExitor context(log, "EncConvert", log.m_verboseEncoding);
  if (log.m_verboseEncoding) {
    log.LogDataLong("fromCodePage", from);
    log.LogDataLong("toCodePage", to);
  }
  if (to == 0) to = from;
  if (from == 0 || from == to) return out.append(p, n);
  const auto isCodePage = [](int number) { return number > 0 && !isBinaryEncoding(number); };
  if (!isCodePage(from) || !isCodePage(to)) return false;

  DataBuffer prepared;
  prepared.setSecure(out.getSecure());
  if (from == kMacArabic) {
    if (!prepareMacArabic(source.p, n, prepared)) return false;
  } else if (isIso2022Jp(from) || from == kIso2022Kr) {
    const bool japanese = from != kIso2022Kr;
    const bool whole = japanese ? Japanese::Iso2022ToShiftJis(source.p, n, prepared)
                                : Korean::Iso2022ToKsc(source.p, n, prepared);
    const bool converted = EncConvert(japanese ? kShiftJis : kKorean, to, prepared.getData2(),
                                      prepared.getSize(), out, log);
    return note(whole) && converted;
  }
  const Source text = prepared.empty() ? source : Source{prepared.getData2(), prepared.getSize()};

  m_fromCodePage = from;
  m_toCodePage = to;
  if (isUtf32(to)) return convertToUtf32(from, isUtf32Be(to), text, out, log);
  DataBuffer middle;
  middle.setSecure(out.getSecure());
  const auto convertTo = [&](int codePage) {
    return note(convert_a(from, codePage, text, middle, log));
  };
  if (to == kUtf7) {
    const bool converted = convertTo(kUtf16Le);
    return note(_ckUtf::Utf16XEToUtf7(middle.getData2(), middle.getSize(), out)) && converted;
  }
  if (to == kUtf16Be) {
    const bool converted = convertTo(kUtf16Le);
    middle.byteSwap21();
    return out.append(middle) && converted;
  }
  if (isIso2022Jp(to)) {
    const bool converted = convertTo(kShiftJis);
    return note(Japanese::ShiftJisToIso2022(to, middle.getData2(), middle.getSize(), out)) &&
           converted;
  }
  if (to == kIso2022Kr) {
    const bool converted = convertTo(kKorean);
    return note(Korean::KscToIso2022(middle.getData2(), middle.getSize(), out)) && converted;
  }
  return convert_a(from, to, text, out, log);
}

/// By way of UTF-8, which drops a NUL that comes from a table; ASCII isn't converted on its way
/// there, and keeps it.
bool EncodingConvert::convertToUtf32(int from, bool bigEndian, Source source, DataBuffer& out,
                                     LogBase& log) {
  UnicodeLookup table;
  if (!bigEndian && m_errorAction == Drop && from != kUsAscii && singleByteToUnicode(from, table)) {
    return singleByteToUtf32(table, source, out);
  }
  DataBuffer utf8;
  utf8.setSecure(out.getSecure());
  bool converted = true;
  if (from != kUtf8) {
    converted = note(convert_a(from, kUtf8, source, utf8, log));
    source = {utf8.getData2(), utf8.getSize()};
  }
  return note(_ckUtf::utf8toUtf32(bigEndian, source.p, source.n, out)) && converted;
}

namespace {

/// Moves behind a byte order mark, which overrides the code page's byte order.
template <typename Source>
void skipBom(int& codePage, Source& source) {
  const std::string_view text(reinterpret_cast<const char*>(source.p), source.n);
  for (const Bom& bom : kBoms) {
    if (!sharesBom(bom.codePage, codePage) || !text.starts_with(bom.bytes)) continue;
    codePage = bom.codePage;
    source = {source.p + bom.bytes.size(), source.n - bom.bytes.size()};
    return;
  }
}

}  // namespace

bool EncodingConvert::convert_a(int from, int to, Source source, DataBuffer& out, LogBase& log) {
  if (source.n == 0) return true;
  skipBom(from, source);
  if (source.n == 0) return true;
  if (from == to) return out.append(source.p, source.n);

  DataBuffer middle;
  middle.setSecure(out.getSecure());
  if (from == kGsm) {
    const bool whole = note(_ckUtf::gsm_to_utf8(source.p, source.n, to == kUtf8 ? out : middle));
    if (to == kUtf8) return whole;
    return convert_a(kUtf8, to, {middle.getData2(), middle.getSize()}, out, log) && whole;
  }
  if (to == kGsm) {
    bool whole = true;
    if (from != kUtf8) {
      whole = convert_a(from, kUtf8, source, middle, log);
      source = {middle.getData2(), middle.getSize()};
    }
    return note(_ckUtf::utf8_to_gsm(source.p, source.n, out)) && whole;
  }
  if (from == kUsAscii && to == kUtf8) {
    const std::size_t start = out.getSize();
    if (!out.append(source.p, source.n)) return false;
    unsigned char* const begin = out.getData2() + start;
    unsigned char* const end =
        std::remove_if(begin, begin + source.n, [](unsigned char c) { return c >= 0x80; });
    out.shorten(static_cast<std::uint32_t>(begin + source.n - end));
    return true;
  }
  if (from == kUsAscii && extendsAscii(to)) return out.append(source.p, source.n);

  // Other orders and forms of Unicode become the native ones first.
  bool whole = true;
  if (from == kUtf16Be) {
    if (!middle.append(source.p, source.n)) return false;
    middle.byteSwap21();
    from = kUtf16Le;
  } else if (isUtf32(from)) {
    whole = note(_ckUtf::Utf32ToUtf8(isUtf32Be(from), source.p, source.n, middle));
    from = kUtf8;
  } else if (from == kUtf7) {
    whole = note(_ckUtf::Utf7ToUtf16_xe(source.p, source.n, middle));
    from = kUtf16Le;
  } else {
    return convertNormalised(from, to, source, out, log);
  }
  return convertNormalised(from, to, {middle.getData2(), middle.getSize()}, out, log) && whole;
}

bool EncodingConvert::convertNormalised(int from, int to, Source source, DataBuffer& out,
                                        LogBase& log) {
  if (source.n == 0) return true;
  if (from == to) return out.append(source.p, source.n);
  if (from == kUtf16Le) {
    return to == kUtf8 ? cv_utf16_to_utf8(source, out) : convertFromUnicodeHC(to, source, out, log);
  }
  if (to == kUtf16Le) {
    return from == kUtf8 ? cv_utf8_to_utf16(source, out, log)
                         : convertToUnicodeHC(from, source, out, log);
  }
  if (m_errorAction != Drop) return pivot(from, to, source, out, log);

  UnicodeLookup bytes;
  if (to == kUtf8 && singleByteToUnicode(from, bytes)) return singleByteToUtf8(bytes, source, out);
  const HashConvert* const table = from == kUtf8 ? ensureHashFromUnicode(to) : nullptr;
  const bool converted = table == nullptr || utf8ToTable(*table, source, out, log);
  return (source.n == 0 || pivot(from, to, source, out, log)) && converted;
}

bool EncodingConvert::pivot(int from, int to, Source source, DataBuffer& out, LogBase& log) {
  DataBuffer utf16;
  utf16.setSecure(out.getSecure());
  m_markErrors = true;
  const bool first = from == kUtf8 ? cv_utf8_to_utf16(source, utf16, log)
                                   : convertToUnicodeHC(from, source, utf16, log);
  m_markErrors = false;
  m_unmarkErrors = true;
  const Source middle{utf16.getData2(), utf16.getSize()};
  const bool second =
      to == kUtf8 ? cv_utf16_to_utf8(middle, out) : convertFromUnicodeHC(to, middle, out, log);
  m_unmarkErrors = false;
  return first && second;
}

// Entries by name ------------------------------------------------------------------------------

bool EncodingConvert::EncConvertWithPreamble(int from, int to, const void* p, std::size_t n,
                                             DataBuffer& out, LogBase& log) {
  const std::string_view bom = to == kUtf8 || isUtf16(to) ? bomOf(to) : std::string_view();
  return out.append(bom.data(), bom.size()) && EncConvert(from, to, p, n, out, log);
}

bool EncodingConvert::ChConvert(const char* from, const char* to, const void* p, std::size_t n,
                                DataBuffer& out, LogBase& log) {
  const int target = CharsetNaming::GetCodePage_p(to);
  return target != 0 && ChConvert2(from, target, p, n, out, log);
}

bool EncodingConvert::ChConvert2(const char* from, int to, const void* p, std::size_t n,
                                 DataBuffer& out, LogBase& log) {
  const int source = CharsetNaming::GetCodePage_p(from);
  return source != 0 && EncConvert(source, to, p, n, out, log);
}

bool EncodingConvert::ChConvert3(int from, const char* to, const void* p, std::size_t n,
                                 DataBuffer& out, LogBase& log) {
  const int target = CharsetNaming::GetCodePage_p(to);
  return EncConvert(from, target == 0 ? kUtf8 : target, p, n, out, log);
}

bool EncodingConvert::ChConvert3_withPreamble(int from, const char* to, const void* p,
                                              std::size_t n, DataBuffer& out, LogBase& log) {
  const int target = CharsetNaming::GetCodePage_p(to);
  return EncConvertWithPreamble(from, target == 0 ? kUtf8 : target, p, n, out, log);
}

bool EncodingConvert::AnsiToMultiByte(int to, const void* p, std::size_t n, DataBuffer& out,
                                      LogBase& log) {
  return EncConvert(Psdk::getAnsiCodePage(), to, p, n, out, log);
}

bool EncodingConvert::MultiByteToAnsi(int from, const void* p, std::size_t n, DataBuffer& out,
                                      LogBase& log) {
  return EncConvert(from, Psdk::getAnsiCodePage(), p, n, out, log);
}

bool EncodingConvert::OemToMultiByte(int to, const void* p, std::size_t n, DataBuffer& out,
                                     LogBase& log) {
  return EncConvert(Psdk::getOemCodePage(), to, p, n, out, log);
}

bool EncodingConvert::MultiByteToOem(int from, const void* p, std::size_t n, DataBuffer& out,
                                     LogBase& log) {
  return EncConvert(from, Psdk::getOemCodePage(), p, n, out, log);
}
