// Text of any encoding into any other. The first four bytes choose the two code pages, the error
// action and flags: whether 4-byte UTF-8 is allowed, and whether the output is secure. The last
// four choose the output's block, which is as large as they say and no larger, the bytes that are
// in it already, and how much filling comes in front of the text, so that it lies across the end of
// a piece. The rest is the text, which lies at the end of its own block.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

#include "CkUtf.h"
#include "CodePageTables.h"
#include "CodePages.h"
#include "ConversionOutput.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "UnicodeLookup.h"

namespace {

using code_page::kUtf16Le;
using code_page::kUtf32Le;
using code_page::kUtf8;

constexpr int kWithoutTable[] = {0,     3,     37,    1200,  1201,  12000, 12001, 20932, 50220,
                                 50221, 50222, 50225, 52936, 55000, 65000, 65001, 65005, 65006};

std::vector<int> codePages() {
  std::vector<int> pages(std::begin(kWithoutTable), std::end(kWithoutTable));
  for (const CodePageTable& table : codePageTables()) pages.push_back(table.codePage);
  return pages;
}

void require(bool holds) {
  if (!holds) std::abort();
}

struct Bytes {
  const unsigned char* p;
  std::size_t n;
};

struct Outcome {
  bool whole;
  bool hadError;
};

Outcome convert(int from, int to, int action, Bytes text, DataBuffer& out) {
  LogNull log;
  EncodingConvert converter;
  converter.setErrorAction(action);
  converter.setDefBytes("??", 2);
  const bool whole = converter.EncConvert(from, to, text.p, text.n, out, log);
  return {whole, converter.hadError()};
}

/// A piece of filling and the text behind it, at the end of a block.
struct Input {
  Input(const std::uint8_t* text, std::size_t n, unsigned filling)
      : size(fillingOf(filling) + n), bytes(new unsigned char[size]) {
    unsigned char* const behind =
        std::fill_n(bytes.get(), size - n, static_cast<unsigned char>('a'));
    if (n != 0) std::memcpy(behind, text, n);
  }

  static std::size_t fillingOf(unsigned filling) {
    constexpr unsigned kSteps = 64;
    return filling / kSteps == 3 ? ConversionOutput::kPiece - filling % kSteps : 0;
  }

  Bytes view() const { return {bytes.get(), size}; }

  std::size_t size;
  std::unique_ptr<unsigned char[]> bytes;
};

/// The long way of a conversion that has a short one, by way of `middle`; 0 if it has none.
int middleOf(int from, int to) {
  UnicodeLookup table;
  const bool single = from != code_page::kMacArabic && singleByteToUnicode(from, table);
  if (from == kUtf8 && ensureHashFromUnicode(to) != nullptr) return kUtf16Le;
  if (single && from != code_page::kUsAscii && to == kUtf8) return kUtf16Le;
  return single && from != code_page::kUsAscii && to == kUtf32Le ? kUtf8 : 0;
}

/// Units that the second stage of a pivot takes for an error mark.
bool looksMarked(const DataBuffer& utf16) {
  for (std::uint32_t i = 0; i + 1 < utf16.getSize(); i += 2) {
    const unsigned unit = utf16.byteAt(i) | unsigned{utf16.byteAt(i + 1)} << 8;
    if (unit == 0xEFFD || unit == 0xFDEF) return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<int> pages = codePages();
  constexpr std::size_t kHead = 4;
  constexpr std::size_t kTail = 4;
  if (size < kHead + kTail) return 0;
  const int from = pages[data[0] % pages.size()];
  const int to = pages[data[1] % pages.size()];
  const int action = data[2] % 9;
  g_allow_4byte_utf8 = (data[3] & 1) == 0;
  const std::uint8_t* const tail = data + size - kTail;
  const std::size_t n = size - kHead - kTail;
  const Input input(data + kHead, n, tail[3]);
  const Bytes text = input.view();

  DataBuffer roomy;
  const Outcome expected = convert(from, to, action, text, roomy);

  // A block of just this size, with something in it, gets the same behind it.
  DataBuffer tight;
  tight.setSecure((data[3] & 2) != 0);
  const std::uint32_t capacity = 1 + tail[0] + (std::uint32_t{tail[1]} << 10);
  const std::uint32_t before = tail[2] % capacity;
  require(tight.ensureBuffer(capacity) && tight.appendCharN('x', before));
  const Outcome outcome = convert(from, to, action, text, tight);
  require(outcome.whole == expected.whole && outcome.hadError == expected.hadError);
  require(tight.getSize() == before + roomy.getSize());
  require(roomy.empty() ||
          std::memcmp(tight.getData2() + before, roomy.getData2(), roomy.getSize()) == 0);

  DataBuffer back;
  convert(to, from, action, {roomy.getData2(), roomy.getSize()}, back);

  if (const int middle = middleOf(from, to); middle != 0 && action == EncodingConvert::Drop) {
    DataBuffer stage;
    DataBuffer byStages;
    const Outcome first = convert(from, middle, action, text, stage);
    const Outcome second =
        convert(middle, to, action, {stage.getData2(), stage.getSize()}, byStages);
    const bool begins = stage.getSize() > 1 && code_page::sharesBom(middle, kUtf16Le) &&
                        (stage.beginsWith("\xFF\xFE", 2) || stage.beginsWith("\xFE\xFF", 2));
    const bool document = stage.beginsWith("%PDF-1", 6) || (n > 5 && text.p[0] == '%');
    if (!looksMarked(stage) && !begins && !document) {
      require(expected.whole == (first.whole && second.whole));
      require(expected.hadError == (first.hadError || second.hadError));
      require(byStages.equals2(roomy.getData2(), roomy.getSize()));
    }
  }

  // Legal UTF-8 survives the other forms of Unicode.
  DataBuffer utf32;
  if (g_allow_4byte_utf8 && _ckUtf::utf8toUtf32(false, text.p, text.n, utf32)) {
    DataBuffer utf8;
    require(_ckUtf::Utf32ToUtf8(false, utf32.getData2(), utf32.getSize(), utf8));
    require(utf8.equals2(text.p, static_cast<std::uint32_t>(text.n)));
  }
  return 0;
}
