#include "FrameText.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string>

FrameBytes frameBytes(std::string_view text) {
  FrameBytes bytes;
  while (!text.empty()) {
    const auto refuse = [&] { throw std::invalid_argument("no frame text: " + std::string(text)); };
    if (text.front() == '\'') {
      const std::size_t end = text.find('\'', 1);
      if (end == std::string_view::npos) refuse();
      const std::string_view characters = text.substr(1, end - 1);
      bytes.insert(bytes.end(), characters.begin(), characters.end());
      text.remove_prefix(end + 1);
    } else if (text.front() == ' ' || text.front() == '|') {
      text.remove_prefix(1);
    } else {
      std::uint8_t byte = 0;
      const char* const digits = text.data();
      const auto [end, error] =
          std::from_chars(digits, digits + std::min<std::size_t>(2, text.size()), byte, 16);
      if (error != std::errc{} || end != digits + 2) refuse();
      bytes.push_back(byte);
      text.remove_prefix(2);
    }
  }
  return bytes;
}

TightFrame::TightFrame(Frame bytes) : size_(bytes.size()), block_(new std::uint8_t[bytes.size()]) {
  std::copy(bytes.begin(), bytes.end(), block_.get());
}
