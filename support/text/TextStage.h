#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "StringBuffer.h"

/// Collects the characters that an encoder writes and hands them to a StringBuffer in blocks.
class TextStage {
 public:
  explicit TextStage(StringBuffer& out) : out_(out) {}

  void put(char c) {
    if (used_ == block_.size()) flush();
    block_[used_++] = c;
  }

  void put(std::string_view text) {
    for (const char c : text) put(c);
  }

  /// A place for up to `n` characters, to be kept by wrote(). `n` is less than the block.
  char* place(std::size_t n) {
    if (block_.size() - used_ < n) flush();
    return block_.data() + used_;
  }

  void wrote(std::size_t n) { used_ += n; }

  /// Hands over the rest. False if there was no memory for some of the text.
  bool finish() {
    flush();
    return ok_;
  }

 private:
  void flush() {
    ok_ = out_.appendN(block_.data(), used_) && ok_;
    used_ = 0;
  }

  StringBuffer& out_;
  std::array<char, 1024> block_;
  std::size_t used_ = 0;
  bool ok_ = true;
};
