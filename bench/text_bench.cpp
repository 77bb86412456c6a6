// The text layer beside what others take: glibc's iconv and ICU for character sets, OpenSSL and
// libb64 for base64, std::string for buffers. Each case is named operation/who/size, and
// scripts/bench makes ratios of them.

// The library's headers don't say that it is C.
extern "C" {
#include <b64/cdecode.h>
#include <b64/cencode.h>
}
#include <iconv.h>
#include <openssl/evp.h>
#include <unicode/ucnv.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "CkLogger.h"
#include "CkString.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "Psdk.h"
#include "RussianText.h"
#include "StringBuffer.h"

namespace {

// Character sets

struct Encoding {
  int codePage;
  const char* iconvName;
  const char* icuName;
};

constexpr Encoding kUtf8 = {65001, "UTF-8", "UTF-8"};
constexpr Encoding kUtf16 = {1200, "UTF-16LE", "UTF-16LE"};
constexpr Encoding kUtf32 = {12000, "UTF-32LE", "UTF-32LE"};
constexpr Encoding kWindows1251 = {1251, "CP1251", "windows-1251"};

std::string inEncoding(const std::string& utf8, const Encoding& encoding) {
  DataBuffer out;
  LogNull log;
  EncodingConvert().EncConvert(kUtf8.codePage, encoding.codePage, utf8.data(), utf8.size(), out,
                               log);
  return {reinterpret_cast<const char*>(out.getDataSafe4()), out.getSize()};
}

using Convert = void (*)(benchmark::State&, const Encoding&, const Encoding&, const std::string&);

void ours(benchmark::State& state, const Encoding& from, const Encoding& to,
          const std::string& text) {
  DataBuffer out;
  LogNull log;
  for (auto _ : state) {
    out.clear();
    EncodingConvert converter;
    benchmark::DoNotOptimize(
        converter.EncConvert(from.codePage, to.codePage, text.data(), text.size(), out, log));
    benchmark::ClobberMemory();
  }
}

void byIconv(benchmark::State& state, const Encoding& from, const Encoding& to,
             const std::string& text) {
  const iconv_t converter = iconv_open(to.iconvName, from.iconvName);
  if (reinterpret_cast<std::intptr_t>(converter) == -1) std::abort();
  std::vector<char> out(text.size() * 4 + 16);
  for (auto _ : state) {
    char* in = const_cast<char*>(text.data());
    std::size_t inLeft = text.size();
    char* to_ = out.data();
    std::size_t outLeft = out.size();
    if (iconv(converter, &in, &inLeft, &to_, &outLeft) == static_cast<std::size_t>(-1)) {
      state.SkipWithError("iconv failed");
    }
    benchmark::ClobberMemory();
  }
  iconv_close(converter);
}

void byIcu(benchmark::State& state, const Encoding& from, const Encoding& to,
           const std::string& text) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const source = ucnv_open(from.icuName, &error);
  UConverter* const target = ucnv_open(to.icuName, &error);
  std::vector<char> out(text.size() * 4 + 16);
  std::vector<UChar> pivot(1024);
  for (auto _ : state) {
    char* to_ = out.data();
    const char* in = text.data();
    UChar* pivotSource = pivot.data();
    UChar* pivotTarget = pivot.data();
    ucnv_convertEx(target, source, &to_, out.data() + out.size(), &in, text.data() + text.size(),
                   pivot.data(), &pivotSource, &pivotTarget, pivot.data() + pivot.size(), true,
                   true, &error);
    benchmark::ClobberMemory();
  }
  if (U_FAILURE(error)) state.SkipWithError("ICU failed");
  ucnv_close(source);
  ucnv_close(target);
}

void registerConversions() {
  struct Pair {
    const char* name;
    const Encoding* from;
    const Encoding* to;
  };
  static constexpr Pair kPairs[] = {{"utf8_to_1251", &kUtf8, &kWindows1251},
                                    {"1251_to_utf8", &kWindows1251, &kUtf8},
                                    {"utf8_to_utf16", &kUtf8, &kUtf16},
                                    {"utf16_to_utf8", &kUtf16, &kUtf8},
                                    {"1251_to_utf32", &kWindows1251, &kUtf32}};
  struct Contender {
    const char* name;
    Convert run;
  };
  static constexpr Contender kContenders[] = {{"ours", ours}, {"iconv", byIconv}, {"icu", byIcu}};
  for (const Pair& pair : kPairs) {
    for (const std::size_t size : {std::size_t{64}, std::size_t{4096}, std::size_t{1} << 20}) {
      for (const Contender& contender : kContenders) {
        const std::string name =
            std::string(pair.name) + "/" + contender.name + "/" + std::to_string(size);
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
          const std::string text = inEncoding(russianText(size), *pair.from);
          contender.run(state, *pair.from, *pair.to, text);
          state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
        });
      }
    }
  }
}

// Base64 and hexadecimal

std::string someBytes(benchmark::State& state) {
  std::string bytes(static_cast<std::size_t>(state.range(0)), '\0');
  unsigned seed = 1;
  for (char& byte : bytes) byte = static_cast<char>((seed = seed * 1103515245U + 12345U) >> 16);
  return bytes;
}

std::string base64Of(const std::string& bytes) {
  StringBuffer text;
  ContentCoding::encodeBase64_noCrLf(bytes.data(), bytes.size(), text);
  return text.getString();
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void encodeOurs(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  StringBuffer out;
  for (auto _ : state) {
    out.weakClear();
    ContentCoding::encodeBase64_noCrLf(bytes.data(), bytes.size(), out);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void encodeOpenSsl(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  std::vector<unsigned char> out(bytes.size() * 2 + 16);
  for (auto _ : state) {
    EVP_EncodeBlock(out.data(), reinterpret_cast<const unsigned char*>(bytes.data()),
                    static_cast<int>(bytes.size()));
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void encodeLibb64(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  std::vector<char> out(bytes.size() * 2 + 16);
  for (auto _ : state) {
    base64_encodestate coder;
    base64_init_encodestate(&coder);
    const int n =
        base64_encode_block(bytes.data(), static_cast<int>(bytes.size()), out.data(), &coder);
    base64_encode_blockend(out.data() + n, &coder);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void decodeOurs(benchmark::State& state) {
  const std::string text = base64Of(someBytes(state));
  DataBuffer out;
  for (auto _ : state) {
    ContentCoding::decodeBase64ToDb(text.data(), text.size(), out);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void decodeOpenSsl(benchmark::State& state) {
  const std::string text = base64Of(someBytes(state));
  std::vector<unsigned char> out(text.size() + 16);
  for (auto _ : state) {
    EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void decodeLibb64(benchmark::State& state) {
  const std::string text = base64Of(someBytes(state));
  std::vector<char> out(text.size() + 16);
  for (auto _ : state) {
    base64_decodestate coder;
    base64_init_decodestate(&coder);
    base64_decode_block(text.data(), static_cast<int>(text.size()), out.data(), &coder);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void hexEncodeOurs(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  StringBuffer out;
  for (auto _ : state) {
    out.weakClear();
    ContentCoding::encodeHex(bytes.data(), bytes.size(), HexStyle::Upper, out);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void hexEncodeOpenSsl(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  std::vector<char> out(bytes.size() * 2 + 1);
  for (auto _ : state) {
    std::size_t n = 0;
    OPENSSL_buf2hexstr_ex(out.data(), out.size(), &n,
                          reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), '\0');
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

std::string hexOf(const std::string& bytes) {
  StringBuffer text;
  ContentCoding::encodeHex(bytes.data(), bytes.size(), HexStyle::Upper, text);
  return text.getString();
}

void hexDecodeOurs(benchmark::State& state) {
  const std::string text = hexOf(someBytes(state));
  DataBuffer out;
  for (auto _ : state) {
    out.clear();
    ContentCoding::decodeHex(text.data(), text.size(), out);
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

void hexDecodeOpenSsl(benchmark::State& state) {
  const std::string text = hexOf(someBytes(state));
  std::vector<unsigned char> out(text.size());
  for (auto _ : state) {
    std::size_t n = 0;
    OPENSSL_hexstr2buf_ex(out.data(), out.size(), &n, text.c_str(), '\0');
    benchmark::ClobberMemory();
  }
  countBytes(state);
}

#define CODING(name, function) BENCHMARK(function)->Name(name)->Arg(64)->Arg(4096)->Arg(1 << 20)

CODING("base64_encode/ours", encodeOurs);
CODING("base64_encode/openssl", encodeOpenSsl);
CODING("base64_encode/libb64", encodeLibb64);
CODING("base64_decode/ours", decodeOurs);
CODING("base64_decode/openssl", decodeOpenSsl);
CODING("base64_decode/libb64", decodeLibb64);
CODING("hex_encode/ours", hexEncodeOurs);
CODING("hex_encode/openssl", hexEncodeOpenSsl);
CODING("hex_decode/ours", hexDecodeOurs);
CODING("hex_decode/openssl", hexDecodeOpenSsl);

// Buffers

constexpr int kAppends = 1000;

void appendOurs(benchmark::State& state) {
  const std::string piece(static_cast<std::size_t>(state.range(0)), 'x');
  for (auto _ : state) {
    StringBuffer text;
    for (int i = 0; i < kAppends; ++i) text.appendN(piece.data(), piece.size());
    benchmark::DoNotOptimize(text.getString());
  }
}

void appendStd(benchmark::State& state) {
  const std::string piece(static_cast<std::size_t>(state.range(0)), 'x');
  for (auto _ : state) {
    std::string text;
    for (int i = 0; i < kAppends; ++i) text.append(piece.data(), piece.size());
    benchmark::DoNotOptimize(text.data());
  }
}

BENCHMARK(appendOurs)->Name("append/ours")->Arg(8)->Arg(100)->Arg(10'000);
BENCHMARK(appendStd)->Name("append/std_string")->Arg(8)->Arg(100)->Arg(10'000);

void replaceOurs(benchmark::State& state) {
  const std::string source = russianText(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    StringBuffer text;
    text.append(std::string_view(source));
    benchmark::DoNotOptimize(text.replaceAllOccurances("кг", "килограмм"));
  }
}

void replaceStd(benchmark::State& state) {
  const std::string source = russianText(static_cast<std::size_t>(state.range(0)));
  const std::string_view from = "кг";
  const std::string_view to = "килограмм";
  for (auto _ : state) {
    std::string text = source;
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
      text.replace(at, from.size(), to);
    }
    benchmark::DoNotOptimize(text.data());
  }
}

BENCHMARK(replaceOurs)->Name("replace_all/ours")->Arg(64)->Arg(4096)->Arg(1 << 16);
BENCHMARK(replaceStd)->Name("replace_all/std_string")->Arg(64)->Arg(4096)->Arg(1 << 16);

// What must take time by the length of the text

/// "ours" works on 2 MB, "two_halves" on 1 MB twice: the table's ratio is 1 where the time is by
/// the length, 0.5 where it is by its square.
struct Linear {
  const char* name;
  std::string (*text)(std::size_t n);
  void (*run)(const std::string& text);
};

std::string repeated(std::string_view piece, std::size_t n) {
  std::string text;
  while (text.size() < n) text += piece;
  return text;
}

template <bool (*decode)(const char*, std::size_t, DataBuffer&)>
void decodeText(const std::string& text) {
  DataBuffer out;
  benchmark::DoNotOptimize(decode(text.data(), text.size(), out));
}

template <int from, int to, int action = EncodingConvert::Drop>
void convertText(const std::string& text) {
  DataBuffer out;
  LogNull log;
  EncodingConvert converter;
  converter.setErrorAction(action);
  converter.setDefBytes("?", 1);
  benchmark::DoNotOptimize(converter.EncConvert(from, to, text.data(), text.size(), out, log));
}

void replaceNoCase(const std::string& text) {
  StringBuffer out;
  out.append(std::string_view(text));
  benchmark::DoNotOptimize(out.replaceAllOccurancesNoCase("KG", "kilo"));
}

void findAtEnd(const std::string& text) {
  DataBuffer bytes;
  bytes.append(text.data(), text.size());
  const std::string wanted = std::string(text.size() / 4, 'a') + "b";
  benchmark::DoNotOptimize(
      bytes.findBytes2(wanted.data(), static_cast<std::uint32_t>(wanted.size())));
}

void logAsHtml(const std::string& text) {
  _ckLogger log;
  log.LogData("text", text.c_str());
  StringBuffer out;
  benchmark::DoNotOptimize(log.getHtml(out));
}

void registerLinear() {
  constexpr auto blanks = [](std::size_t n) { return std::string(n, ' ') + 'x'; };
  constexpr auto ascii = [](std::size_t n) { return repeated("Gross 12,5 kg ", n); };
  constexpr auto russian = [](std::size_t n) { return russianText(n); };
  constexpr auto letters = [](std::size_t n) { return std::string(n, 'a'); };
  static constexpr Linear kCases[] = {
      {"qp_decode_blanks", blanks, decodeText<ContentCoding::decodeQuotedPrintable>},
      {"q_decode_blanks", blanks, decodeText<ContentCoding::QB_Decode>},
      {"q_decode_openings", [](std::size_t n) { return repeated("=?u?q?a", n); },
       decodeText<ContentCoding::QB_Decode>},
      {"url_decode", ascii, decodeText<ContentCoding::decodeUrl>},
      {"base32_decode", letters, decodeText<ContentCoding::decodeBase32>},
      {"iso_2022_jp_to_utf8", [](std::size_t n) { return repeated("\x1B$BF|K\\\x1B(B ", n); },
       convertText<50220, 65001>},
      {"utf8_to_iso_2022_jp", [](std::size_t n) { return repeated("日本 ", n); },
       convertText<65001, 50220>},
      {"iso_2022_kr_to_utf8",
       [](std::size_t n) {
         return "\x1B$)C" + repeated(
                                "\x0E"
                                "0!\x0F ",
                                n);
       },
       convertText<50225, 65001>},
      {"utf8_to_gsm", ascii, convertText<65001, 55000>},
      {"gsm_to_utf8", ascii, convertText<55000, 65001>},
      {"utf8_to_utf7", russian, convertText<65001, 65000>},
      {"replaced_errors", [](std::size_t n) { return repeated("日", n); },
       convertText<65001, 1251, EncodingConvert::Replace>},
      {"replace_no_case", ascii, replaceNoCase},
      {"find_bytes", letters, findAtEnd},
      {"log_as_html", ascii, logAsHtml},
  };
  constexpr std::size_t kHalf = std::size_t{1} << 20;
  for (const Linear& test : kCases) {
    for (const int parts : {1, 2}) {
      const std::string name = "linear_" + std::string(test.name) +
                               (parts == 1 ? "/ours/" : "/two_halves/") + std::to_string(2 * kHalf);
      benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = test.text(2 * kHalf / static_cast<std::size_t>(parts));
        for (auto _ : state) {
          for (int i = 0; i < parts; ++i) test.run(text);
        }
      });
    }
  }
}

/// Numbers take time by the square of their length, a limb at a time.
template <bool (*encode)(const void*, std::size_t, StringBuffer&)>
void encodeNumber(benchmark::State& state) {
  const std::string bytes = someBytes(state);
  for (auto _ : state) {
    StringBuffer out;
    benchmark::DoNotOptimize(encode(bytes.data(), bytes.size(), out));
  }
}

BENCHMARK(encodeNumber<ContentCoding::encodeDecimal>)->Name("decimal_encode/ours")->Arg(1 << 14);
BENCHMARK(encodeNumber<ContentCoding::encodeBase58>)->Name("base58_encode/ours")->Arg(1 << 14);

// The road of each call from the platform

void deviceId(benchmark::State& state) {
  Psdk::setAnsiCodePage(1251);
  for (auto _ : state) {
    CkString id;
    id.setStringUtf16(reinterpret_cast<const unsigned short*>(u"Весы кассы 12345 №78"));
    benchmark::DoNotOptimize(id.getAnsi());
  }
}

BENCHMARK(deviceId)->Name("device_id/ours")->Arg(20);

}  // namespace

int main(int argc, char** argv) {
  registerConversions();
  registerLinear();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
