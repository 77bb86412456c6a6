// Text of any encoding into any other. The first four bytes choose the two code pages, the error
// action and whether 4-byte UTF-8 is allowed; the rest is the text, which lies at the end of its
// own block.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "CkUtf.h"
#include "CodePageTables.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"

namespace {

constexpr int kWithoutTable[] = {0,     3,     37,    1200,  1201,  12000, 12001, 20932, 50220,
                                 50221, 50222, 50225, 52936, 55000, 65000, 65001, 65005, 65006};

std::vector<int> codePages() {
  std::vector<int> pages(std::begin(kWithoutTable), std::end(kWithoutTable));
  for (const CodePageTable& table : codePageTables()) pages.push_back(table.codePage);
  return pages;
}

DataBuffer& convert(int from, int to, int action, const unsigned char* p, std::size_t n,
                    DataBuffer& out) {
  LogNull log;
  EncodingConvert converter;
  converter.setErrorAction(action);
  converter.setDefBytes("??", 2);
  converter.EncConvert(from, to, p, n, out, log);
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<int> pages = codePages();
  constexpr std::size_t kHead = 4;
  if (size < kHead) return 0;
  const int from = pages[data[0] % pages.size()];
  const int to = pages[data[1] % pages.size()];
  const int action = data[2] % 9;
  g_allow_4byte_utf8 = (data[3] & 1) == 0;
  const std::size_t n = size - kHead;
  const auto text = std::make_unique<unsigned char[]>(n);
  if (n != 0) std::memcpy(text.get(), data + kHead, n);

  DataBuffer there;
  convert(from, to, action, text.get(), n, there);
  DataBuffer back;
  convert(to, from, action, there.getData2(), there.getSize(), back);

  // Legal UTF-8 survives the other forms of Unicode.
  DataBuffer utf32;
  if (g_allow_4byte_utf8 && _ckUtf::utf8toUtf32(false, text.get(), n, utf32)) {
    DataBuffer utf8;
    if (!_ckUtf::Utf32ToUtf8(false, utf32.getData2(), utf32.getSize(), utf8)) std::abort();
    if (!utf8.equals2(text.get(), static_cast<std::uint32_t>(n))) std::abort();
  }
  return 0;
}
