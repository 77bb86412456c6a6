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
#include "DataBuffer.h"
#include "Iso2022.h"
#include "LogBase.h"
#include "MacArabic.h"
#include "Psdk.h"

namespace {

constexpr int kUtf16Le = 1200;
constexpr int kUtf16Be = 1201;
constexpr int kUtf32Le = 12000;
constexpr int kUtf7 = 65000;
constexpr int kUtf8 = 65001;
constexpr int kShiftJis = 932;
constexpr int kKorean = 949;
constexpr int kMacArabic = 10004;
constexpr int kUsAscii = 20127;
constexpr int kIso2022Kr = 50225;
constexpr int kGsm = 55000;
/// Numbers up to here are binary encodings, but for one EBCDIC page.
constexpr int kLastBinaryEncoding = 99;
constexpr int kEbcdicUs = 37;

bool isUtf16(int codePage) { return codePage == kUtf16Le || codePage == kUtf16Be; }
bool isUtf32Be(int codePage) { return codePage == 12001 || codePage == 65006; }
bool isUtf32(int codePage) {
  return codePage == kUtf32Le || codePage == 65005 || isUtf32Be(codePage);
}
bool isIso2022Jp(int codePage) { return codePage >= 50220 && codePage <= 50222; }
bool isConvertible(int codePage) { return codePage > kLastBinaryEncoding || codePage == kEbcdicUs; }

/// Targets that take the bytes of ASCII as they are.
bool extendsAscii(int codePage) {
  return (codePage >= 1250 && codePage <= 1258) || (codePage >= 28591 && codePage <= 28605);
}

}  // namespace

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
  if (!isConvertible(from) || !isConvertible(to)) return false;

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
    if (!whole) m_hadError = true;
    return whole && converted;
  }
  const Source text = prepared.empty() ? source : Source{prepared.getData2(), prepared.getSize()};

  m_fromCodePage = from;
  m_toCodePage = to;
  if (isUtf32(to)) return convertToUtf32(from, isUtf32Be(to), text, out, log);
  DataBuffer stage;
  stage.setSecure(out.getSecure());
  const auto firstStage = [&](int codePage) {
    const bool converted = convert_a(from, codePage, text, stage, log);
    if (!converted) m_hadError = true;
    return converted;
  };
  if (to == kUtf7) {
    const bool converted = firstStage(kUtf16Le);
    return _ckUtf::Utf16XEToUtf7(stage.getData2(), stage.getSize(), out) && converted;
  }
  if (to == kUtf16Be) {
    const bool converted = firstStage(kUtf16Le);
    stage.byteSwap21();
    return out.append(stage) && converted;
  }
  if (isIso2022Jp(to)) {
    const bool converted = firstStage(kShiftJis);
    return Japanese::ShiftJisToIso2022(to, stage.getData2(), stage.getSize(), out) && converted;
  }
  if (to == kIso2022Kr) {
    const bool converted = firstStage(kKorean);
    return Korean::KscToIso2022(stage.getData2(), stage.getSize(), out) && converted;
  }
  return convert_a(from, to, text, out, log);
}

bool EncodingConvert::convertToUtf32(int from, bool bigEndian, Source source, DataBuffer& out,
                                     LogBase& log) {
  UnicodeLookup table;
  if (!bigEndian && m_errorAction == Drop && singleByteToUnicode(from, table)) {
    return singleByteToUtf32(table, source, out);
  }
  DataBuffer utf8;
  utf8.setSecure(out.getSecure());
  bool converted = true;
  if (from != kUtf8) {
    converted = convert_a(from, kUtf8, source, utf8, log);
    source = {utf8.getData2(), utf8.getSize()};
  } else if (_ckUtf::hasUtf8Preamble(source.p, source.n)) {
    source = {source.p + 3, source.n - 3};
  }
  const bool legal = _ckUtf::utf8toUtf32(bigEndian, source.p, source.n, out);
  if (!legal || !converted) m_hadError = true;
  return legal && converted;
}

namespace {

/// Moves behind a byte order mark, which overrides the code page's byte order.
template <typename Source>
void skipMark(int& codePage, Source& source) {
  using namespace std::string_view_literals;
  const std::string_view text(reinterpret_cast<const char*>(source.p), source.n);
  const auto skip = [&](std::size_t n) {
    source.p += n;
    source.n -= n;
  };
  if (codePage == kUtf8) {
    if (text.starts_with("\xEF\xBB\xBF"sv)) skip(3);
  } else if (isUtf16(codePage)) {
    if (text.starts_with("\xFE\xFF"sv)) {
      codePage = kUtf16Be;
      skip(2);
    } else if (text.starts_with("\xFF\xFE"sv)) {
      codePage = kUtf16Le;
      skip(2);
    }
  } else if (isUtf32(codePage)) {
    if (text.starts_with("\xFF\xFE\0\0"sv)) {
      codePage = kUtf32Le;
      skip(4);
    } else if (text.starts_with("\0\0\xFE\xFF"sv)) {
      codePage = 12001;
      skip(4);
    }
  }
}

}  // namespace

bool EncodingConvert::convert_a(int from, int to, Source source, DataBuffer& out, LogBase& log) {
  if (source.n == 0) return true;
  skipMark(from, source);
  if (source.n == 0) return true;
  if (from == to) return out.append(source.p, source.n);

  DataBuffer stage;
  stage.setSecure(out.getSecure());
  if (from == kGsm) {
    const bool whole = _ckUtf::gsm_to_utf8(source.p, source.n, to == kUtf8 ? out : stage);
    if (to == kUtf8) return whole;
    return convert_a(kUtf8, to, {stage.getData2(), stage.getSize()}, out, log) && whole;
  }
  if (to == kGsm) {
    bool whole = true;
    if (from != kUtf8) {
      whole = convert_a(from, kUtf8, source, stage, log);
      source = {stage.getData2(), stage.getSize()};
    }
    return _ckUtf::utf8_to_gsm(source.p, source.n, out) && whole;
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
    if (!stage.append(source.p, source.n)) return false;
    stage.byteSwap21();
    from = kUtf16Le;
  } else if (isUtf32(from)) {
    whole = _ckUtf::Utf32ToUtf8(isUtf32Be(from), source.p, source.n, stage);
    from = kUtf8;
  } else if (from == kUtf7) {
    whole = _ckUtf::Utf7ToUtf16_xe(source.p, source.n, stage);
    from = kUtf16Le;
  } else {
    return convertNormalised(from, to, source, out, log);
  }
  if (!whole) m_hadError = true;
  return convertNormalised(from, to, {stage.getData2(), stage.getSize()}, out, log) && whole;
}

bool EncodingConvert::convertNormalised(int from, int to, Source source, DataBuffer& out,
                                        LogBase& log) {
  if (source.n == 0) return true;
  if (from == to) return out.append(source.p, source.n);
  if (from == kUtf16Le) {
    return to == kUtf8 ? cv_utf16_to_utf8(source, out) : convertFromUnicodeHC(to, source, out, log);
  }
  if (from == kUtf8) {
    if (to == kUtf16Le) return cv_utf8_to_utf16(source, out, log);
    if (to == kUtf32Le) return _ckUtf::utf8toUtf32(false, source.p, source.n, out);
  } else if (to == kUtf16Le) {
    return convertToUnicodeHC(from, source, out, log);
  }

  if (m_errorAction == Drop) {
    UnicodeLookup bytes;
    if (to == kUtf8 && singleByteToUnicode(from, bytes)) {
      return singleByteToUtf8(bytes, source, out);
    }
    if (from == kUtf8) {
      const HashConvert* const table = ensureHashFromUnicode(to);
      if (table == nullptr) return false;
      bool converted = true;
      if (utf8ToTable(*table, source, out, converted)) return converted;
    }
  }
  return pivot(from, to, source, out, log);
}

bool EncodingConvert::pivot(int from, int to, Source source, DataBuffer& out, LogBase& log) {
  DataBuffer utf16;
  utf16.setSecure(out.getSecure());
  const std::uint64_t estimate = std::uint64_t{source.n} * 2 + 4;
  if (ck64_TooBigForUnsigned32(estimate) ||
      !utf16.ensureBuffer(static_cast<std::uint32_t>(estimate))) {
    return false;
  }
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
  using namespace std::string_view_literals;
  std::string_view mark;
  if (to == kUtf8) mark = "\xEF\xBB\xBF"sv;
  if (to == kUtf16Le) mark = "\xFF\xFE"sv;
  if (to == kUtf16Be) mark = "\xFE\xFF"sv;
  return out.append(mark.data(), mark.size()) && EncConvert(from, to, p, n, out, log);
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
