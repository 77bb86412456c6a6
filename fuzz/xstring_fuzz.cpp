// A script for one text: each step is a byte for the operation and a byte for the length of its
// argument, which follows.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "CkString.h"
#include "DataBuffer.h"
#include "Psdk.h"
#include "XString.h"

namespace {

template <typename Unit>
std::vector<Unit> unitsOf(const std::string& bytes) {
  std::vector<Unit> units(bytes.size() / sizeof(Unit) + 1);
  std::memcpy(units.data(), bytes.data(), bytes.size() / sizeof(Unit) * sizeof(Unit));
  return units;
}

constexpr const char* kCharsets[] = {"utf-8",     "windows-1251", "utf-16", "utf-32be",
                                     "shift_jis", "base64",       "hex",    "no such charset"};

void step(CkString& text, unsigned operation, const std::string& argument) {
  const char* const charset = kCharsets[argument.size() % std::size(kCharsets)];
  XString& x = *text.getImpl();
  switch (operation % 24) {
    case 0: text.setStringAnsi(argument.c_str()); break;
    case 1: text.setStringUtf8(argument.c_str()); break;
    case 2: text.setStringUtf16(unitsOf<unsigned short>(argument).data()); break;
    case 3: text.setStringU(unitsOf<wchar_t>(argument).data()); break;
    case 4: text.appendAnsi(argument.c_str()); break;
    case 5: text.appendUtf8(argument.c_str()); break;
    case 6: text.appendU(unitsOf<wchar_t>(argument).data()); break;
    case 7: x.appendUtf8N(argument.data(), argument.size()); break;
    case 8: x.appendAnsiN(argument.data(), argument.size()); break;
    case 9: text.append(text); break;
    case 10: text.trim2(); break;
    case 11: text.hexEncode(charset); break;
    case 12: text.base64Decode(charset); break;
    case 13: text.getEnc(charset); break;
    case 14: text.minimizeMemory(); break;
    case 15: text.put_SecureClear(argument.size() % 2 == 0); break;
    case 16: text.endsWith(argument.c_str()); break;
    case 17: x.appendUtf16_xe(x.getUtf16_xe()); break;
    case 18: x.setFromUtf8(x.getAnsi()); break;
    case 19: x.appendUtf8(x.getUtf8()); break;
    case 20: {
      CkString from(argument.substr(0, argument.size() / 2).c_str());
      CkString to(argument.substr(argument.size() / 2).c_str());
      text.replaceAll(from, to);
      break;
    }
    case 21: {
      DataBuffer bytes;
      bytes.append(argument.data(), argument.size());
      x.setFromDb(charset, bytes);
      break;
    }
    case 22: text = CkString(text); break;
    default: text.qpEncode(charset); break;
  }
}

/// Each form ends in its terminator, and the sizes tell where.
void check(CkString& text, unsigned which) {
  const auto fail = [](bool bad) {
    if (bad) std::abort();
  };
  // The size first: a form that lost characters is made anew at each call.
  switch (which % 4) {
    case 0: {
      const auto size = text.getSizeAnsi();
      fail(text.getAnsi()[size] != 0);
      break;
    }
    case 1: {
      const auto size = text.getSizeUtf8();
      fail(text.getUtf8()[size] != 0);
      break;
    }
    case 2: {
      const auto size = text.getSizeUnicode();
      fail(text.getUnicode()[size / 4] != 0);
      break;
    }
    default: {
      std::size_t n = 0;
      for (const unsigned short* p = text.getUtf16(); p[n] != 0;) ++n;
      text.getNumChars();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Psdk::setAnsiCodePage(1251);
  CkString text;
  constexpr int kLongText = 1 << 16;
  for (std::size_t i = 0; i + 2 <= size && text.getSizeUtf8() < kLongText;) {
    const unsigned operation = data[i];
    const std::size_t length = std::min<std::size_t>(data[i + 1], size - i - 2);
    step(text, operation, std::string(reinterpret_cast<const char*>(data + i + 2), length));
    check(text, operation / 24);
    i += 2 + length;
  }
  return 0;
}
