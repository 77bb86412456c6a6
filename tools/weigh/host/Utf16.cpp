#include "Utf16.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <stdexcept>

namespace host {

namespace {

constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

/// An open conversion of the system's libc that steps over what it can't convert.
class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(::iconv_open(to, from)) {
    if (reinterpret_cast<std::intptr_t>(handle_) == -1) {
      throw std::runtime_error(std::string("no conversion from ") + from + " to " + to);
    }
  }
  ~Converter() { ::iconv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  /// `replacement` stands for every `unit` bytes that are no text.
  std::string convert(const void* data, std::size_t size, std::size_t unit,
                      std::string_view replacement) {
    // iconv doesn't write to its input, whatever its prototype says.
    char* in = static_cast<char*>(const_cast<void*>(data));
    std::string result;
    std::array<char, 1024> buffer;
    while (size > 0) {
      char* out = buffer.data();
      std::size_t room = buffer.size();
      const std::size_t outcome = ::iconv(handle_, &in, &size, &out, &room);
      const int error = errno;
      result.append(buffer.data(), buffer.size() - room);
      if (outcome != kFailed || error == E2BIG) continue;
      result.append(replacement);
      const std::size_t skipped = size < unit ? size : unit;
      in += skipped;
      size -= skipped;
    }
    return result;
  }

 private:
  iconv_t handle_;
};

}  // namespace

std::basic_string<WCHAR_T> toUtf16(std::string_view utf8) {
  static constexpr std::string_view kReplacement = "\xFD\xFF";
  Converter converter("UTF-16LE", "UTF-8");
  const std::string bytes = converter.convert(utf8.data(), utf8.size(), 1, kReplacement);
  std::basic_string<WCHAR_T> text(bytes.size() / sizeof(WCHAR_T), 0);
  bytes.copy(reinterpret_cast<char*>(text.data()), bytes.size());
  return text;
}

std::string toUtf8(const WCHAR_T* text, std::size_t units) {
  static constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  Converter converter("UTF-8", "UTF-16LE");
  return converter.convert(text, units * sizeof(WCHAR_T), sizeof(WCHAR_T), kReplacement);
}

std::string toUtf8(const WCHAR_T* text) {
  if (text == nullptr) return {};
  std::size_t units = 0;
  while (text[units] != 0) ++units;
  return toUtf8(text, units);
}

}  // namespace host
