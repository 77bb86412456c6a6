// Random sequences of operations on one StringBuffer, DataBuffer or XString against a plain model:
// lengths around those at which blocks grow, pieces of the object itself as arguments, borrowed
// blocks, and steps that run out of memory. An operation that fails must have found no memory and
// leaves everything as it was; a secure object frees no block with a secret in it.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "CkString.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "MemoryWatch.h"
#include "Psdk.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

constexpr std::string_view kSecret = "PIN 4711";
constexpr std::size_t kLongest = 70'000;

void require(bool condition, int line = __builtin_LINE()) {
  if (condition) return;
  std::fprintf(stderr, "%s:%d: not as it must be\n", __FILE__, line);
  std::abort();
}

/// What the input says to do next. Zeros follow its end.
class Script {
 public:
  Script(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

  bool isOver() const { return left_.empty(); }

  unsigned byte() {
    if (left_.empty()) return 0;
    const unsigned value = left_.front();
    left_ = left_.subspan(1);
    return value;
  }

  /// A length around those that matter; a long one now and then, since they take their time.
  std::size_t length() {
    constexpr std::size_t kShort[] = {0, 4, 40, 82, 202, 285, 488, 1'024};
    constexpr std::size_t kLong[] = {10'000, 20'000, 32'768, 65'535};
    const unsigned choice = byte();
    const std::size_t around = choice % 64 == 63 ? kLong[choice / 64] : kShort[choice % 8];
    return around + choice / 8 % 4;
  }

  std::size_t below(std::size_t limit) {
    const std::size_t value = byte() * std::size_t{257} + byte();
    return limit == 0 ? 0 : value % limit;
  }

  /// Bytes of the input itself.
  std::span<const std::uint8_t> raw(std::size_t n) {
    const std::span<const std::uint8_t> bytes = left_.first(std::min(n, left_.size()));
    left_ = left_.subspan(bytes.size());
    return bytes;
  }

 private:
  std::span<const std::uint8_t> left_;
};

/// An argument outside of the heap, which is looked at for secrets. One at a time.
std::array<char, kLongest + 1> g_argument;

/// Blanks, letters and the secret, no NUL.
std::string_view pieceOf(std::size_t n, unsigned start) {
  constexpr std::string_view kPattern = "PIN 4711\t aAbB\r\n ab,PIN 4711, xX\r.y\n";
  n = std::min(n, kLongest);
  for (std::size_t i = 0; i < n; ++i) g_argument[i] = kPattern[(start + i) % kPattern.size()];
  g_argument[n] = '\0';
  return {g_argument.data(), n};
}

std::string withoutNuls(std::string text) {
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

/// Up to the first NUL, as a C string is read.
std::string upToNul(std::string text) { return text.substr(0, text.find('\0')); }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; }

/// Replaces matches in the text up to its first NUL.
std::string replaced(const std::string& text, std::string_view from, std::string_view to,
                     bool noCase, std::size_t most) {
  const auto same = [&](char a, char b) { return noCase ? lower(a) == lower(b) : a == b; };
  const std::string searched = upToNul(text);
  std::string result;
  std::size_t at = 0;
  for (; most != 0 && !from.empty(); --most) {
    const auto begin = searched.begin() + static_cast<std::ptrdiff_t>(at);
    const auto match = std::search(begin, searched.end(), from.begin(), from.end(), same);
    if (match == searched.end()) break;
    result.append(begin, match).append(to);
    at += static_cast<std::size_t>(match - begin) + from.size();
  }
  return at == 0 ? text : withoutNuls(result + text.substr(at));
}

std::string trimmed(const std::string& text, const char* blanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  return first == text.npos ? "" : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// An object beside its model.
template <typename Object, typename Text>
class Pair {
 public:
  explicit Pair(Script& script, std::string_view secret = kSecret)
      : secure_(script.byte() % 2 == 0), secret_(secret), script_(script) {}

  bool isSecure() const { return secure_; }
  const Text& model() const { return model_; }
  bool isFull() const { return model_.size() > kLongest; }

  /// Runs an operation, perhaps with little memory. One that fails must have been short of it and
  /// leaves the text as it was; one that succeeds makes it what is expected.
  template <typename Operation>
  bool run(Text expected, Operation operation) {
    const unsigned memory = script_.byte();
    fixture::MemoryWatch& watch = fixture::memoryWatch();
    watch.secretsFreed = 0;
    if (secure_) watch.secret = secret_;
    bool done = false;
    bool wasShort = false;
    {
      const fixture::MemoryShortage shortage(
          memory % 4 == 0 ? static_cast<int>(memory / 4 % 8) : -1, memory / 32 % 2 == 0);
      done = operation();
      wasShort = shortage.isHit();
    }
    watch.secret = {};
    require(watch.secretsFreed == 0);
    require(done || wasShort);
    if (done) model_ = std::move(expected);
    return done;
  }

  /// For what ends an object's use of a block.
  template <typename Operation>
  void empty(Operation operation) {
    run({}, [&] { return operation(), true; });
  }

 private:
  bool secure_;
  std::string_view secret_;
  Script& script_;
  Text model_;
};

// StringBuffer ---------------------------------------------------------------------------------

constexpr const char* kWanted[] = {"ab", "PIN", "a", "4711", "\t", " ", "none", ""};

void stringBuffer(Script& script) {
  Pair<StringBuffer, std::string> pair(script);
  StringBuffer text;
  text.setSecureBuf(pair.isSecure());
  while (!script.isOver() && !pair.isFull()) {
    const unsigned operation = script.byte();
    const std::string& model = pair.model();
    const std::string_view piece = pieceOf(script.length(), operation);
    const std::size_t at = script.below(model.size() + 1);
    const std::size_t n = script.below(model.size() - at + 1);
    const std::uint32_t pos = static_cast<std::uint32_t>(at);
    const char* const own = text.getString() + at;
    const std::string ownText = upToNul(model.substr(at));
    const std::string appended = piece.empty() ? model : withoutNuls(model + std::string(piece));
    const char* const from = kWanted[n % std::size(kWanted)];
    const bool flag = operation % 2 == 0;
    const auto replaceAll = [&](const char* to, std::string result) {
      const bool none = result == model;
      pair.run(std::move(result), [&] {
        return (flag ? text.replaceAllOccurancesNoCase(from, to)
                     : text.replaceAllOccurances(from, to)) != 0 ||
               none;
      });
    };
    const auto clearing = [&](auto clear) { pair.empty(clear); };
    switch (operation / 2 % 20) {
      case 0: pair.run(appended, [&] { return text.append(piece.data()); }); break;
      case 1: pair.run(appended, [&] { return text.append(piece); }); break;
      case 2:
        pair.run(n == 0 ? model : withoutNuls(model + model.substr(at, n)),
                 [&] { return text.appendN(own, n); });
        break;
      case 3:
        pair.run(flag ? model + 'x' : model + "xy",
                 [&] { return flag ? text.appendChar('x') : text.appendChar2('x', 'y'); });
        break;
      case 4:
        pair.run(model + std::string(n % 9, '\0'),
                 [&] { return text.appendCharN('\0', static_cast<std::uint32_t>(n % 9)); });
        break;
      case 5: pair.run(std::string(piece), [&] { return text.setString(piece.data()); }); break;
      case 6: pair.run(ownText, [&] { return text.setString(own); }); break;
      case 7:
        pair.run(std::string(piece), [&] {
          StringBuffer other;
          other.setSecureBuf(pair.isSecure());
          if (!other.append(piece)) return false;
          if (flag) return text.setString(other);
          text.takeSb(other);
          return true;
        });
        break;
      case 8: {
        pair.run(std::string(model).insert(at, ownText), [&] { return text.insertAt(pos, own); });
        break;
      }
      case 9:
        pair.run(model,
                 [&] { return text.expectNumBytes(static_cast<std::uint32_t>(piece.size())); });
        break;
      case 10: pair.run(model, [&] { return text.minimizeMemoryUsage(), true; }); break;
      case 11: clearing([&] { flag ? text.weakClear() : text.strongClear(); }); break;
      case 12:
        pair.run(std::string(piece), [&] {
          DataBuffer bytes;
          bytes.setSecure(pair.isSecure());
          if (flag) {
            bytes.borrowData(g_argument.data(), static_cast<std::uint32_t>(piece.size()));
          } else if (!bytes.append(piece.data(), piece.size())) {
            return false;
          }
          return text.takeFromDb(bytes);
        });
        break;
      case 13: {
        // What an encoder makes of the text itself.
        StringBuffer encoded;
        const auto encode = [&](StringBuffer& out) {
          return flag ? ContentCoding::encodeBase64_noCrLf(text.getString(), text.getSize(), out)
                      : ContentCoding::encodeHex(text.getString(), text.getSize(), HexStyle::Upper,
                                                 out);
        };
        require(encode(encoded));
        pair.run(encoded.empty() ? model : model + std::string(encoded.view()),
                 [&] { return encode(text); });
        break;
      }
      case 14:
        pair.run(std::string(model).erase(at, n),
                 [&] { return text.removeChunk(pos, static_cast<std::uint32_t>(n)), true; });
        break;
      case 15:
        pair.run(model.substr(0, at),
                 [&] { return flag ? text.chopAt(pos) : text.rollback(pos), true; });
        break;
      case 16: {
        const std::string expected = trimmed(model, flag ? "\t " : "\t \r\n");
        const std::size_t blanks = model.size() - expected.size();
        pair.run(expected, [&] { return (flag ? text.trim() : text.trim2()) == blanks; });
        break;
      }
      case 17: {
        // A short end of the text itself, or of the argument.
        const std::string_view all = at % 2 == 0 ? text.view() : piece;
        const char* const to = all.data() + all.size() - std::min<std::size_t>(all.size(), n % 50);
        replaceAll(to, replaced(model, from, std::string(to), flag, model.size()));
        break;
      }
      case 18: {
        const std::string expected = replaced(model, from, piece, flag, 1);
        pair.run(expected, [&] {
          return text.replaceFirstOccurance(from, piece.data(), flag) != 0 || expected == model;
        });
        break;
      }
      default:
        pair.run({}, [&] {
          DataBuffer bytes;
          if (flag) return bytes.takeString(text);
          std::uint32_t capacity = 0;
          CkBlock block = text.extractString2(capacity);
          const bool done = block != nullptr;
          ckFreeBlock(std::move(block), capacity, true);
          return done;
        });
    }
    require(text.view() == pair.model() && !text.isNonTerminated());
  }
  pair.empty([&] { text.strongClear(); });
}

// DataBuffer -----------------------------------------------------------------------------------

void dataBuffer(Script& script) {
  Pair<DataBuffer, std::string> pair(script);
  static std::array<char, kLongest> lent;
  DataBuffer bytes;
  bytes.setSecure(pair.isSecure());
  while (!script.isOver() && !pair.isFull()) {
    const unsigned operation = script.byte();
    const std::string& model = pair.model();
    const std::string_view piece = pieceOf(script.length(), operation);
    const std::uint32_t size = static_cast<std::uint32_t>(piece.size());
    const std::size_t at = script.below(model.size() + 1);
    const std::size_t n = script.below(model.size() - at + 1);
    const std::uint32_t pos = static_cast<std::uint32_t>(at);
    const std::uint32_t count = static_cast<std::uint32_t>(n);
    unsigned char* const own = bytes.getData2() == nullptr ? nullptr : bytes.getData2() + at;
    const std::string ownText = model.substr(at, n);
    const bool flag = operation % 2 == 0;
    switch (operation / 2 % 20) {
      case 0:
        pair.run(model + std::string(piece), [&] { return bytes.append(piece.data(), size); });
        break;
      case 1: pair.run(model + ownText, [&] { return bytes.append(own, n); }); break;
      case 2:
        pair.run(model + (flag ? "x" : "xy"),
                 [&] { return flag ? bytes.appendChar('x') : bytes.appendChar2('x', 'y'); });
        break;
      case 3:
        pair.run(model + std::string(size, 'z'), [&] { return bytes.appendCharN('z', size); });
        break;
      case 4:
        pair.run(model + std::string(piece), [&] {
          unsigned char* const end = bytes.getAppendPtr(size);
          if (end == nullptr) return false;
          std::memcpy(end, piece.data(), size);
          bytes.addToSize(size);
          return true;
        });
        break;
      case 5:
        pair.run(std::string(model).insert(at, ownText),
                 [&] { return bytes.insertAt(pos, own, count); });
        break;
      case 6: pair.run(model, [&] { return bytes.ensureBuffer(size); }); break;
      case 7: {
        std::string expected = model;
        expected.resize(size);
        pair.run(expected, [&] { return bytes.resize(size); });
        break;
      }
      case 8:
        pair.run(model.substr(0, model.size() - n), [&] { return bytes.shorten(count), true; });
        break;
      case 9:
        pair.run(std::string(model).erase(at, n),
                 [&] { return bytes.removeChunk(static_cast<int>(at), static_cast<int>(n)); });
        break;
      case 10:
        pair.run(model.substr(at),
                 [&] { return flag ? bytes.removeHead(pos) : bytes.slideTailToFront(pos), true; });
        break;
      case 11:
        pair.empty([&] {
          switch (n % 4) {
            case 0: bytes.clear(); break;
            case 1: bytes.clearWithDeallocate(); break;
            case 2: bytes.secureClear(); break;
            default: bytes.secureClearWithDeallocate();
          }
        });
        break;
      case 12: pair.run(model, [&] { return bytes.minimizeMemoryUsage2(size); }); break;
      case 13:
        std::copy(piece.begin(), piece.end(), lent.begin());
        pair.run(std::string(piece), [&] { return bytes.borrowData(lent.data(), size), true; });
        break;
      case 14: pair.run(ownText, [&] { return bytes.borrowData(own, count), true; }); break;
      case 15: {
        // From a buffer that borrows from this one, or one that owns.
        bool lost = false;
        pair.run(flag ? ownText : std::string(piece), [&] {
          DataBuffer other;
          other.setSecure(pair.isSecure());
          if (flag) {
            other.borrowData(own, count);
          } else if (!other.append(piece.data(), size)) {
            return false;
          }
          if (at % 3 == 0) {
            bytes.takeData(other);
            return true;
          }
          lost = !(at % 3 == 1 ? bytes.copy(other)
                               : bytes.copyData(other.getData2(), other.getSize()));
          return !lost;
        });
        // A copy that fails leaves an empty buffer.
        if (lost) pair.empty([&] { require(bytes.empty()); });
        break;
      }
      case 16:
        pair.run(std::string(piece), [&] {
          StringBuffer text;
          text.setSecureBuf(pair.isSecure());
          return text.append(piece) && bytes.takeString(text);
        });
        break;
      case 17: {
        std::string expected = withoutNuls(model);
        expected += '\0';
        pair.run(expected, [&] { return bytes.prepForSbTake(); });
        break;
      }
      case 18:
        pair.run({}, [&] {
          const std::uint32_t capacity = bytes.getBufSize();
          CkBlock block = bytes.removeData();
          const bool done = block != nullptr || model.empty();
          ckFreeBlock(std::move(block), capacity, true);
          if (done) bytes.clear();
          return done;
        });
        break;
      default: {
        const std::size_t found = model.find(ownText, n / 2);
        require(bytes.findBytes2(own, count, count / 2) ==
                (ownText.empty() || found == model.npos ? DataBuffer::kNotFound : found));
      }
    }
    require(std::string_view(reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize()) ==
            pair.model());
  }
  pair.empty([&] { bytes.clearWithDeallocate(); });
}

// XString --------------------------------------------------------------------------------------

/// A text of ASCII and Russian letters, which every form holds, in all of them.
struct Forms {
  explicit Forms(const std::u32string& characters) : utf32(characters) {
    for (const char32_t c : characters) {
      utf16 += static_cast<char16_t>(c);
      if (c < 0x80) {
        ansi += static_cast<char>(c);
        utf8 += static_cast<char>(c);
      } else {
        ansi += static_cast<char>(c - 0x410 + 0xC0);
        utf8 += static_cast<char>(0xC0 | (c >> 6));
        utf8 += static_cast<char>(0x80 | (c & 0x3F));
      }
    }
  }

  const std::uint16_t* units() const {
    return reinterpret_cast<const std::uint16_t*>(utf16.c_str());
  }

  std::u32string utf32;
  std::u16string utf16;
  std::string ansi;
  std::string utf8;
};

std::u32string russian(std::string_view text) {
  std::u32string characters;
  for (const char c : text)
    characters += c >= 'a' ? static_cast<char32_t>(c - 'a' + 0x430) : static_cast<char32_t>(c);
  return characters;
}

/// Reads one form: what is expected, or nothing for want of memory.
bool reads(XString& x, unsigned form, const Forms& expected) {
  const auto same = [](auto text, const auto& wanted) {
    return require(text == wanted || text.empty()), text == wanted;
  };
  switch (form % 4) {
    case 0: return same(std::string_view(x.getAnsi()), expected.ansi);
    case 1: return same(std::string_view(x.getUtf8()), expected.utf8);
    case 2:
      return same(std::u16string_view(reinterpret_cast<const char16_t*>(x.getUtf16_xe())),
                  expected.utf16);
    default: return same(std::u32string_view(x.getUtf32_xe()), expected.utf32);
  }
}

void xstring(Script& script) {
  using namespace std::string_view_literals;
  constexpr std::string_view kSecrets[] = {kSecret, "4\0007\0001\0001\0"sv,
                                           "4\0\0\0007\0\0\0001\0\0\0"sv};
  constexpr const char* kCharsets[] = {"utf-8", "windows-1251", "utf-16", "koi8-r", "utf-32"};
  Pair<XString, std::u32string> pair(script, kSecrets[script.byte() % std::size(kSecrets)]);
  XString x;
  x.setSecureX(pair.isSecure());
  Forms whole({});
  while (!script.isOver() && !pair.isFull()) {
    const unsigned operation = script.byte();
    const std::u32string& model = pair.model();
    const Forms piece(russian(pieceOf(script.length(), operation)));
    const std::size_t at = script.below(model.size() + 1);
    const unsigned form = script.byte();
    const std::u32string ownText = model.substr(at);
    const std::u32string more = model + piece.utf32;
    const char* const charset = kCharsets[at % std::size(kCharsets)];
    bool done = true;
    switch (operation % 16) {
      case 0:
        done = pair.run(piece.utf32, [&] {
          switch (form % 4) {
            case 0: return x.setFromAnsi(piece.ansi.c_str());
            case 1: return x.setFromUtf8(piece.utf8.c_str());
            case 2: return x.setFromUtf16_xe(piece.units());
            default: return x.setFromUtf32_xe(piece.utf32.c_str());
          }
        });
        break;
      case 1:
      case 2:
        done = pair.run(more, [&] {
          switch (form % 4) {
            case 0: return x.appendAnsi(piece.ansi.c_str());
            case 1: return x.appendUtf8(piece.utf8.c_str());
            case 2: return x.appendUtf16_xe(piece.units());
            default: return x.appendUtf32_xe(piece.utf32.c_str());
          }
        });
        break;
      case 3: {
        const char* const ansi = x.getAnsi() + at;
        const char32_t* const wide = x.getUtf32_xe() + at;
        done = pair.run(
            ownText, [&] { return form % 2 == 0 ? x.setFromAnsi(ansi) : x.setFromUtf32_xe(wide); });
        break;
      }
      case 4: {
        const char* const ansi = x.getAnsi() + at;
        const char* const utf8 = x.getUtf8();
        const std::uint16_t* const wide = x.getUtf16_xe() + at;
        done = pair.run(model + (form % 3 == 1 ? model : ownText), [&] {
          return form % 3 == 0   ? x.appendAnsi(ansi)
                 : form % 3 == 1 ? x.appendUtf8(utf8)
                                 : x.appendUtf16_xe(wide);
        });
        break;
      }
      case 5:
        done = pair.run(form % 2 == 0 ? model + model : model, [&] {
          return form % 2 == 0 ? x.appendX(x) : form % 4 == 1 ? x.assignX(x) : x.copyFromX(x);
        });
        break;
      case 6:
        done = pair.run(form % 3 == 0 ? more : piece.utf32, [&] {
          XString other;
          other.setSecureX(pair.isSecure());
          if (!other.setFromUtf16_xe(piece.units())) return x.noteShortage();
          reads(other, form / 3, piece);
          const bool taken = form % 3 == 0   ? x.appendX(other)
                             : form % 3 == 1 ? x.assignX(other)
                                             : x.copyFromX(other);
          // The doubt about a text goes with it.
          require(other.isWhole() || !x.isWhole());
          return taken;
        });
        break;
      case 7:
        done = pair.run(model + (form % 2 == 0 ? U"-12" : U"AB"),
                        [&] { return form % 2 == 0 ? x.appendInt(-12) : x.appendUsAscii("AB"); });
        break;
      case 8: pair.run(model, [&] { return x.minimizeMemory(), true; }); break;
      case 9: pair.empty([&] { form % 2 == 0 ? x.clear() : x.weakClear(); }); break;
      case 10:
      case 11: done = pair.run(model, [&] { return reads(x, form, whole); }); break;
      case 12: {
        const std::string text = trimmed(whole.ansi, form % 2 == 0 ? "\t " : "\t \r\n");
        std::u32string expected;
        for (const char c : text)
          expected += static_cast<unsigned char>(c) < 0x80
                          ? static_cast<char32_t>(c)
                          : static_cast<char32_t>(static_cast<unsigned char>(c) - 0xC0 + 0x410);
        pair.run(expected, [&] {
          form % 2 == 0 ? x.trim() : x.trim2();
          return x.isWhole();
        });
        break;
      }
      case 13: {
        // Round trips of a copy, which may fail half way.
        done = pair.run(model, [&] {
          XString copy;
          copy.setSecureX(pair.isSecure());
          constexpr int kEncodings[] = {1, 2, 3, 4};
          const int encoding = kEncodings[form % 4];
          return copy.assignX(x) && copy.encodeBinaryText(charset, encoding) &&
                         copy.decodeBinaryText(charset, encoding) && x.assignX(copy) && x.isWhole()
                     ? true
                     : x.noteShortage();
        });
        break;
      }
      case 14:
        done = pair.run(model, [&] {
          DataBuffer bytes;
          bytes.setSecure(pair.isSecure());
          return x.getConverted(charset, bytes) && x.setFromDb(charset, bytes);
        });
        break;
      default: {
        if (whole.ansi == whole.utf8) require(x.equalsAscii(whole.ansi.c_str()));
        require(!x.equalsAscii((whole.ansi + 'x').c_str()));
      }
    }
    require(done || !x.isWhole());
    whole = Forms(model);
    require(reads(x, form / 4, whole));
    if (!x.isWhole()) x.setFromUtf8(whole.utf8.c_str());
  }
  pair.empty([&] { x.clear(); });
}

// CkString, without a model: bytes that mean nothing in any encoding ---------------------------

template <typename Unit>
std::vector<Unit> unitsOf(std::span<const std::uint8_t> bytes) {
  std::vector<Unit> units(bytes.size() / sizeof(Unit) + 1);
  std::memcpy(units.data(), bytes.data(), (units.size() - 1) * sizeof(Unit));
  return units;
}

void edit(CkString& text, unsigned operation, std::span<const std::uint8_t> argument) {
  constexpr const char* kCharsets[] = {"utf-8",     "windows-1251", "utf-16", "utf-32be",
                                       "shift_jis", "base64",       "hex",    "no such charset"};
  const char* const charset = kCharsets[argument.size() % std::size(kCharsets)];
  const std::vector<char> bytes = unitsOf<char>(argument);
  const std::vector<unsigned short> utf16 = unitsOf<unsigned short>(argument);
  const std::vector<wchar_t> utf32 = unitsOf<wchar_t>(argument);
  CkString other(bytes.data());
  DataBuffer block;
  block.append(argument.data(), argument.size());
  XString& x = *text.getImpl();
  const unsigned memory = operation / 32;
  const fixture::MemoryShortage shortage(memory < 4 ? static_cast<int>(memory) : -1,
                                         argument.size() % 2 == 0);
  switch (operation % 19) {
    case 0: text.setStringAnsi(bytes.data()); break;
    case 1: text.setStringUtf8(bytes.data()); break;
    case 2: text.setStringUtf16(utf16.data()); break;
    case 3: text.setStringU(utf32.data()); break;
    case 4: text.appendAnsi(bytes.data()); break;
    case 5: text.appendUtf8(bytes.data()); break;
    case 6: text.appendU(utf32.data()); break;
    case 7: x.appendUtf8N(bytes.data(), argument.size()); break;
    case 8: x.appendAnsiN(bytes.data(), argument.size()); break;
    case 9: text.append(text); break;
    case 10: text.hexEncode(charset); break;
    case 11: text.base64Decode(charset); break;
    case 12: text.qpEncode(charset); break;
    case 13: text.getEnc(charset); break;
    case 14: text.endsWith(bytes.data()); break;
    case 15: text.replaceAll(other, text); break;
    case 16: x.setFromDb(charset, block); break;
    case 17: text = other; break;
    default: text.compareStr(other);
  }
}

/// Each form ends in its terminator, and the sizes tell where. The size first: a form that lost
/// characters is made anew at each call.
void lookAt(CkString& text) {
  const int ansi = text.getSizeAnsi();
  require(text.getAnsi()[ansi] == 0);
  const int utf8 = text.getSizeUtf8();
  require(text.getUtf8()[utf8] == 0);
  const int utf32 = text.getSizeUnicode();
  require(text.getUnicode()[utf32 / 4] == 0);
  const std::u16string_view utf16(reinterpret_cast<const char16_t*>(text.getUtf16()));
  require(utf16.size() <= static_cast<std::size_t>(utf32) / 2);
}

void wildText(Script& script) {
  CkString text;
  constexpr int kLongText = 1 << 16;
  while (!script.isOver() && text.getSizeUtf8() < kLongText) {
    const unsigned operation = script.byte();
    edit(text, operation, script.raw(script.byte()));
    if (operation % 2 == 0) lookAt(text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Psdk::setAnsiCodePage(1251);
  Script script(data, size);
  switch (script.byte() % 4) {
    case 0: stringBuffer(script); break;
    case 1: dataBuffer(script); break;
    case 2: wildText(script); break;
    default: xstring(script);
  }
  return 0;
}
