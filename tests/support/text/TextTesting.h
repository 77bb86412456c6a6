#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "Psdk.h"
#include "StringBuffer.h"

inline std::string toString(const DataBuffer& bytes) {
  return bytes.empty()
             ? std::string()
             : std::string(reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize());
}

struct Conversion {
  std::string text;
  bool whole;  ///< what EncConvert() returned
  bool hadError;

  friend bool operator==(const Conversion&, const Conversion&) = default;
};

inline void PrintTo(const Conversion& c, std::ostream* os) {
  *os << testing::PrintToString(std::tuple(c.text, c.whole, c.hadError));
}

/// The text lies at the end of a block of its own, so that a sanitizer sees a read behind it.
inline Conversion convert(int from, int to, std::string_view text, EncodingConvert converter = {}) {
  const std::vector<char> input(text.begin(), text.end());
  DataBuffer out;
  LogNull log;
  const bool whole = converter.EncConvert(from, to, input.data(), input.size(), out, log);
  return {toString(out), whole, converter.hadError()};
}

inline std::string asUtf16(std::u16string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}

inline std::string asUtf32(std::u32string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * 4};
}

/// The ANSI code page for the length of a test.
class AnsiIs {
 public:
  explicit AnsiIs(int codePage) : before_(Psdk::getAnsiCodePage()) {
    Psdk::setAnsiCodePage(codePage);
  }
  ~AnsiIs() { Psdk::setAnsiCodePage(before_); }
  AnsiIs(const AnsiIs&) = delete;
  AnsiIs& operator=(const AnsiIs&) = delete;

 private:
  int before_;
};
