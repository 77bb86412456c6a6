#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "CkMemory.h"
#include "ConversionOutput.h"
#include "DataBuffer.h"
#include "StringBuffer.h"

/// Collects what a coder writes and hands it to a buffer in blocks, so that the buffer moves a few
/// times only and each byte costs next to nothing. Bytes for a secure buffer are wiped here too.
template <typename Buffer>
class CodingStage {
 public:
  explicit CodingStage(Buffer& out) : out_(out) {}
  ~CodingStage() {
    if (isSecure(out_)) ckWipe(block_.data(), block_.size());
  }
  CodingStage(const CodingStage&) = delete;
  CodingStage& operator=(const CodingStage&) = delete;

  void put(char c) {
    if (used_ == block_.size()) flush();
    block_[used_++] = c;
  }

  void put(unsigned char c) { put(static_cast<char>(c)); }

  void put(std::string_view text) {
    while (!text.empty()) {
      if (used_ == block_.size()) flush();
      const std::size_t n = std::min(text.size(), block_.size() - used_);
      std::memcpy(block_.data() + used_, text.data(), n);
      used_ += n;
      text.remove_prefix(n);
    }
  }

  /// A place for up to `n` characters, to be kept by wrote(). `n` is less than the block.
  char* place(std::size_t n) {
    if (block_.size() - used_ < n) flush();
    return block_.data() + used_;
  }

  void wrote(std::size_t n) { used_ += n; }

  /// Hands over the rest. False if there was no memory for some of it; then the buffer holds what
  /// came before.
  bool finish() {
    flush();
    return ok_;
  }

 private:
  static bool isSecure(const StringBuffer& out) { return out.getSecureBuf(); }
  static bool isSecure(const DataBuffer& out) { return out.getSecure(); }

  static bool hand(StringBuffer& out, const char* p, std::size_t n) { return out.appendN(p, n); }
  static bool hand(DataBuffer& out, const char* p, std::size_t n) {
    return ConversionOutput::makeRoom(out, n, 0) != nullptr && out.append(p, n);
  }

  void flush() {
    ok_ = ok_ && (used_ == 0 || hand(out_, block_.data(), used_));
    used_ = 0;
  }

  Buffer& out_;
  std::array<char, 1024> block_;
  std::size_t used_ = 0;
  bool ok_ = true;
};

using TextStage = CodingStage<StringBuffer>;
using ByteStage = CodingStage<DataBuffer>;

/// Encodes bytes that lie in `out` itself, which may move as it grows: through a text apart.
template <typename Encode>
bool encodeApart(StringBuffer& out, Encode encode) {
  StringBuffer text;
  text.setSecureBuf(out.getSecureBuf());
  return encode(text) && out.append(text);
}
