// Turns the code page tables of this folder into a C++ source with constant arrays.
//
//   generate_codepages <folder> <output.cpp> <code page>...
//
// README.md tells the format of the tables. A mistake in one ends the build with its place.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Cells = std::map<std::uint32_t, std::uint16_t>;  // byte or pair -> code point

constexpr std::uint32_t kFirstPair = 0x100;

/// Pairs are told from single bytes by their value: no pair begins with byte 0.
struct Page {
  Cells both;
  Cells decodeOnly;
  std::vector<std::pair<std::uint16_t, std::uint32_t>> encodeOnly;  // code point -> bytes
};

std::uint32_t parseNumber(std::string_view text, int base) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::runtime_error("not a number: " + std::string(text));
  }
  return value;
}

std::uint16_t parseCodePoint(std::string_view text) {
  const std::uint32_t value = parseNumber(text, 16);
  if (value > 0xFFFF || (value >= 0xD800 && value < 0xE000)) {
    throw std::runtime_error("not a code point of the first plane: " + std::string(text));
  }
  return static_cast<std::uint16_t>(value);
}

class Reader {
 public:
  explicit Reader(std::string folder) : folder_(std::move(folder)) {}

  const Page& page(int number) {
    const auto known = pages_.find(number);
    if (known != pages_.end()) return known->second;
    const std::string path = folder_ + "/" + std::to_string(number) + ".txt";
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    Page page;
    Section section = Section::Both;
    std::string line;
    for (int lineNumber = 1; std::getline(file, line); ++lineNumber) {
      try {
        readLine(line, page, section);
      } catch (const std::exception& error) {
        throw std::runtime_error(path + ":" + std::to_string(lineNumber) + ": " + error.what());
      }
    }
    return pages_.emplace(number, std::move(page)).first->second;
  }

 private:
  enum class Section { Both, DecodeOnly, EncodeOnly };

  void readLine(const std::string& line, Page& page, Section& section) {
    std::istringstream words(line);
    std::string word;
    if (!(words >> word) || word.starts_with("#")) return;
    if (word == "ascii") {
      for (std::uint16_t byte = 0; byte < 0x80; ++byte) page.both[byte] = byte;
    } else if (word == "like") {
      readLike(words, page);
    } else if (word == "decode-only") {
      section = Section::DecodeOnly;
    } else if (word == "encode-only") {
      section = Section::EncodeOnly;
    } else {
      readRow(word, words, page, section);
    }
  }

  void readLike(std::istringstream& words, Page& page) {
    std::string number;
    std::string range;
    words >> number;
    page = Page(this->page(static_cast<int>(parseNumber(number, 10))));
    if (!(words >> range)) return;
    if (range.size() != 9) throw std::runtime_error("a range looks like A1A1-FEFE");
    const std::uint32_t first = parseNumber(std::string_view(range).substr(0, 4), 16);
    const std::uint32_t last = parseNumber(std::string_view(range).substr(5), 16);
    const auto outside = [&](std::uint32_t pair) {
      return pair >= kFirstPair &&
             ((pair >> 8) < (first >> 8) || (pair >> 8) > (last >> 8) ||
              (pair & 0xFF) < (first & 0xFF) || (pair & 0xFF) > (last & 0xFF));
    };
    std::erase_if(page.both, [&](const auto& cell) { return outside(cell.first); });
    std::erase_if(page.decodeOnly, [&](const auto& cell) { return outside(cell.first); });
    std::erase_if(page.encodeOnly, [&](const auto& cell) { return outside(cell.second); });
  }

  void readRow(const std::string& start, std::istringstream& words, Page& page, Section section) {
    if (start.size() != 2 && start.size() != 4) throw std::runtime_error("not a row: " + start);
    std::uint32_t bytes = parseNumber(start, 16);
    if (start.size() == 4 && bytes < kFirstPair) throw std::runtime_error("a pair from byte 0");
    const std::uint32_t lead = bytes >> 8;
    const auto cell = [&](std::uint16_t codePoint, bool defined) {
      if (bytes >> 8 != lead) throw std::runtime_error("the row passes byte FF");
      put(page, section, bytes++, codePoint, defined);
    };
    std::string word;
    while (words >> word) {
      const auto dash = word.find('-');
      if (word[0] == '.') {
        const bool one = word.find_first_not_of('.') == std::string::npos;
        const std::uint32_t count = one ? 1 : parseNumber(std::string_view(word).substr(1), 10);
        for (std::uint32_t i = 0; i < count; ++i) cell(0, false);
      } else if ((word[0] & 0x80) != 0) {
        for (std::size_t i = 0; i < word.size(); i += 3) cell(textCharacter(word, i), true);
      } else if (dash != std::string::npos) {
        const std::uint16_t last = parseCodePoint(std::string_view(word).substr(dash + 1));
        const std::uint16_t first = parseCodePoint(std::string_view(word).substr(0, dash));
        for (std::uint32_t c = first; c <= last; ++c) cell(static_cast<std::uint16_t>(c), true);
      } else {
        cell(parseCodePoint(word), true);
      }
    }
  }

  /// Ideographs and syllables all have 3 bytes in UTF-8.
  static std::uint16_t textCharacter(const std::string& text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[i + k]); };
    if (text.size() - i < 3 || (byte(0) & 0xF0) != 0xE0) {
      throw std::runtime_error("write this character in hexadecimal: " + text.substr(i));
    }
    return static_cast<std::uint16_t>(((byte(0) & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) |
                                      (byte(2) & 0x3F));
  }

  static void put(Page& page, Section section, std::uint32_t bytes, std::uint16_t codePoint,
                  bool defined) {
    switch (section) {
      case Section::Both:
        if (defined) page.both[bytes] = codePoint;
        if (!defined) page.both.erase(bytes);
        break;
      case Section::DecodeOnly:
        if (defined) page.decodeOnly[bytes] = codePoint;
        break;
      case Section::EncodeOnly:
        if (defined) page.encodeOnly.emplace_back(codePoint, bytes);
        break;
    }
  }

  std::string folder_;
  std::map<int, Page> pages_;
};

/// What would make the tables ambiguous.
void check(const Page& page) {
  const auto fail = [](const char* why, std::uint32_t what) {
    std::ostringstream text;
    text << why << ' ' << std::hex << what;
    throw std::runtime_error(text.str());
  };
  std::set<std::uint16_t> encoded;
  for (const auto& [bytes, codePoint] : page.both) {
    if (!encoded.insert(codePoint).second) fail("two ways to encode", codePoint);
    if (page.decodeOnly.contains(bytes)) fail("two ways to decode", bytes);
    if (bytes >= kFirstPair && page.both.contains(bytes >> 8)) fail("byte and first byte", bytes);
  }
  for (const auto& [codePoint, bytes] : page.encodeOnly) {
    if (!encoded.insert(codePoint).second) fail("two ways to encode", codePoint);
  }
}

template <typename List, typename Print>
void writeArray(std::ostream& out, const std::string& type, const std::string& name,
                const List& list, Print print) {
  if (list.empty()) return;
  out << "constexpr " << type << ' ' << name << "[] = {";
  std::size_t column = 0;
  for (const auto& item : list) {
    out << (column++ % 12 == 0 ? "\n    " : " ");
    print(item);
    out << ',';
  }
  out << "\n};\n\n";
}

void writePage(std::ostream& out, int number, const Page& page) {
  Cells cells = page.both;
  cells.insert(page.decodeOnly.begin(), page.decodeOnly.end());
  const std::string suffix = std::to_string(number);
  const auto plain = [&](std::uint32_t value) { out << value; };

  std::vector<std::uint16_t> single(256);
  struct Row {
    std::uint32_t lead, first, count;
    std::size_t offset;
  };
  std::vector<Row> rows;
  std::vector<std::uint16_t> pairs;
  for (const auto& [bytes, codePoint] : cells) {
    if (bytes < kFirstPair) {
      single[bytes] = codePoint;
      continue;
    }
    if (rows.empty() || rows.back().lead != bytes >> 8) {
      rows.push_back({bytes >> 8, bytes & 0xFF, 0, pairs.size()});
    }
    Row& row = rows.back();
    row.count = (bytes & 0xFF) - row.first + 1;
    pairs.resize(row.offset + row.count);
    pairs.back() = codePoint;
  }
  std::vector<std::uint32_t> decodeOnly;
  for (const auto& cell : page.decodeOnly) decodeOnly.push_back(cell.first);

  writeArray(out, "std::uint16_t", "kSingle" + suffix, single, plain);
  writeArray(out, "CodePageRow", "kRows" + suffix, rows, [&](const Row& row) {
    out << '{' << row.lead << ", " << row.first << ", " << row.count << ", " << row.offset << '}';
  });
  writeArray(out, "std::uint16_t", "kPairs" + suffix, pairs, plain);
  writeArray(out, "std::uint16_t", "kDecodeOnly" + suffix, decodeOnly, plain);
  writeArray(out, "CodePageEncodeOnly", "kEncodeOnly" + suffix, page.encodeOnly,
             [&](const auto& pair) { out << '{' << pair.first << ", " << pair.second << '}'; });
}

bool isLowerAscii(const Page& page) {
  for (std::uint16_t byte = 0; byte < 0x80; ++byte) {
    const auto cell = page.both.find(byte);
    if (cell == page.both.end() || cell->second != byte) return false;
  }
  return true;
}

bool hasPairs(const Page& page) {
  return !page.both.empty() && page.both.rbegin()->first >= kFirstPair;
}

bool equal(const Page& a, const Page& b) {
  return a.both == b.both && a.decodeOnly == b.decodeOnly && a.encodeOnly == b.encodeOnly;
}

void generate(Reader& reader, const std::vector<int>& numbers, std::ostream& out) {
  out << "// Written by generate_codepages from the tables in support/text/codepages.\n\n"
         "#include <iterator>\n\n#include \"CodePageTables.h\"\n\nnamespace {\n\n";
  std::map<int, int> arraysOf;  // equal pages share their arrays
  for (const int number : numbers) {
    const Page& page = reader.page(number);
    check(page);
    const auto twin = std::find_if(arraysOf.begin(), arraysOf.end(), [&](const auto& other) {
      return equal(reader.page(other.first), page);
    });
    arraysOf[number] = twin == arraysOf.end() ? number : twin->second;
    if (arraysOf[number] == number) writePage(out, number, page);
  }
  out << "constexpr CodePageTable kTables[] = {\n";
  for (const int number : numbers) {
    const Page& page = reader.page(number);
    const std::string suffix = std::to_string(arraysOf[number]);
    const auto array = [&](const char* name, bool present) {
      return present ? name + suffix : std::string("{}");
    };
    out << "    {" << number << ", " << (isLowerAscii(page) ? "true" : "false") << ", kSingle"
        << suffix << ", " << array("kRows", hasPairs(page)) << ", "
        << array("kPairs", hasPairs(page)) << ", " << array("kDecodeOnly", !page.decodeOnly.empty())
        << ", " << array("kEncodeOnly", !page.encodeOnly.empty()) << "},\n";
  }
  out << "};\nstatic_assert(std::size(kTables) <= kMostCodePages);\n\n}  // namespace\n\n"
         "std::span<const CodePageTable> codePageTables() { return kTables; }\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 3) {
      std::cerr << "usage: generate_codepages <folder> <output.cpp> <code page>...\n";
      return 2;
    }
    std::vector<int> numbers;
    for (std::size_t i = 2; i < arguments.size(); ++i) {
      numbers.push_back(static_cast<int>(parseNumber(arguments[i], 10)));
    }
    std::sort(numbers.begin(), numbers.end());
    Reader reader(arguments[0]);
    std::ostringstream source;
    generate(reader, numbers, source);
    std::ofstream out(arguments[1]);
    out << source.str();
    out.close();
    if (!out) throw std::runtime_error("cannot write " + arguments[1]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "generate_codepages: " << error.what() << '\n';
    return 1;
  }
}
