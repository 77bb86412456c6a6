#include "WideStrings.h"

#include <iconv.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <optional>

namespace {

static_assert(sizeof(wchar_t) == 4 && sizeof(unsigned short) == 2);

/// The names of an iconv conversion.
struct Pairing {
  const char* to;
  const char* from;
};

constexpr Pairing kToUtf16 = {"UTF-16LE", "UTF-32"};
constexpr Pairing kToUtf32 = {"UTF-32LE", "UTF-32"};

/// An open conversion of the system's libc.
class Iconv {
 public:
  explicit Iconv(const Pairing& pairing) : handle_(::iconv_open(pairing.to, pairing.from)) {}
  ~Iconv() {
    if (isOpen()) ::iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  /// The result of the conversion; none if it failed.
  std::optional<std::size_t> convert(const void* input, std::size_t inputSize, void* output,
                                     std::size_t outputSize) const {
    if (!isOpen()) return std::nullopt;
    // iconv doesn't write to its input, whatever its prototype says.
    char* in = static_cast<char*>(const_cast<void*>(input));
    char* out = static_cast<char*>(output);
    const std::size_t result = ::iconv(handle_, &in, &inputSize, &out, &outputSize);
    if (result == static_cast<std::size_t>(-1)) return std::nullopt;
    return result;
  }

 private:
  // iconv's own word for a conversion that can't be opened.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  iconv_t handle_;
};

/// libc unloads the modules of a conversion that nobody has open and loads them again at the next
/// opening, which costs many times the conversion itself. So one of each stays open.
void keepModulesLoaded() {
  static const Iconv toUtf16(kToUtf16);
  static const Iconv toUtf32(kToUtf32);
}

/// The shared way of both directions: by iconv, and where it can't, unit by unit, cut or widened.
template <typename Target, typename Source>
unsigned convert(Target** dest, const Source* source, unsigned len, const Pairing& pairing) {
  keepModulesLoaded();
  if (*dest == nullptr) *dest = new Target[len];
  std::fill_n(*dest, len, Target{0});
  const Iconv converter(pairing);
  const auto result = converter.convert(source, len * sizeof(Source), *dest, len * sizeof(Target));
  if (result) return static_cast<unsigned>(*result);
  std::transform(source, source + len, *dest,
                 [](Source unit) { return static_cast<Target>(unit); });
  return len;
}

}  // namespace

unsigned getLenShortWcharStr(const unsigned short* source) {
  unsigned length = 0;
  if (source == nullptr) return length;
  while (source[length] != 0) ++length;
  return length;
}

unsigned convToShortWchar(unsigned short** dest, const wchar_t* source, unsigned len) {
  if (len == 0) len = static_cast<unsigned>(std::wcslen(source)) + 1;
  return convert(dest, source, len, kToUtf16);
}

unsigned convFromShortWchar(wchar_t** dest, const unsigned short* source, unsigned len) {
  if (len == 0) len = getLenShortWcharStr(source) + 1;
  // The pairing names UTF-32 for 16-bit text: two units read as one value are in most texts no
  // code point, iconv refuses at once, and the units are widened one by one, which leaves
  // surrogates as they are. The platform's callers have always got their texts in this form.
  return convert(dest, source, len, kToUtf32);
}

WcharWrapper::WcharWrapper(const unsigned short* text) {
  if (text == nullptr) return;
  const unsigned size = getLenShortWcharStr(text) + 1;
  m_str_utf16 = std::make_unique<unsigned short[]>(size);
  std::copy_n(text, size, m_str_utf16.get());
  wchar_t* wide = nullptr;
  convFromShortWchar(&wide, m_str_utf16.get(), 0);
  m_str_wide.reset(wide);
}

WcharWrapper::WcharWrapper(const wchar_t* text) {
  if (text == nullptr) return;
  const std::size_t size = std::wcslen(text) + 1;
  m_str_wide = std::make_unique<wchar_t[]>(size);
  std::copy_n(text, size, m_str_wide.get());
  unsigned short* utf16 = nullptr;
  convToShortWchar(&utf16, m_str_wide.get(), 0);
  m_str_utf16.reset(utf16);
}
