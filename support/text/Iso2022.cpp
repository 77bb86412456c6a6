#include "Iso2022.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "CodePages.h"
#include "CodingStage.h"

namespace {

constexpr unsigned char kEsc = 0x1B;
constexpr unsigned char kShiftOut = 0x0E;
constexpr unsigned char kShiftIn = 0x0F;

constexpr bool isGraphic94(unsigned char c) { return c >= 0x21 && c <= 0x7E; }

// Japanese ---------------------------------------------------------------------------------------

enum class Set { Ascii, Kana, Kanji, Unknown };

struct Designation {
  std::string_view sequence;  ///< behind ESC
  Set set;
};

/// In the order of preference for writing.
constexpr std::array<Designation, 8> kDesignations = {{{"(B", Set::Ascii},
                                                       {"$B", Set::Kanji},
                                                       {"(I", Set::Kana},
                                                       {"(J", Set::Ascii},
                                                       {"(H", Set::Ascii},
                                                       {"$@", Set::Kanji},
                                                       {"$(B", Set::Kanji},
                                                       {"$(D", Set::Unknown}}};

constexpr bool isHalfKana(unsigned char c) { return c >= 0xA1 && c <= 0xDF; }
constexpr bool isShiftJisLead(unsigned char c) {
  return (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC);
}

constexpr unsigned kFirstHalfKana = 0xA1;

/// The full-width forms of A1 to DF in JIS X 0208.
constexpr std::array<std::uint16_t, 63> kFullWidth = {
    0x2123, 0x2156, 0x2157, 0x2122, 0x2126, 0x2572, 0x2521, 0x2523, 0x2525, 0x2527, 0x2529,
    0x2563, 0x2565, 0x2567, 0x2543, 0x213C, 0x2522, 0x2524, 0x2526, 0x2528, 0x252A, 0x252B,
    0x252D, 0x252F, 0x2531, 0x2533, 0x2535, 0x2537, 0x2539, 0x253B, 0x253D, 0x253F, 0x2541,
    0x2544, 0x2546, 0x2548, 0x254A, 0x254B, 0x254C, 0x254D, 0x254E, 0x254F, 0x2552, 0x2555,
    0x2558, 0x255B, 0x255E, 0x255F, 0x2560, 0x2561, 0x2562, 0x2564, 0x2566, 0x2568, 0x2569,
    0x256A, 0x256B, 0x256C, 0x256D, 0x256F, 0x2573, 0x212B, 0x212C};

constexpr unsigned char kVoiceMark = 0xDE;
constexpr unsigned char kSemiVoiceMark = 0xDF;
constexpr unsigned char kHalfU = 0xB3;
constexpr std::uint16_t kFullVu = 0x2574;

/// The full-width letter with the mark that follows it, 0 if the two don't combine.
constexpr std::uint16_t combined(unsigned char kana, unsigned char mark) {
  const std::uint16_t plain = kFullWidth[kana - kFirstHalfKana];
  const bool rowH = kana >= 0xCA && kana <= 0xCE;
  const bool rowKst = kana >= 0xB6 && kana <= 0xC4;
  if (mark == kVoiceMark && kana == kHalfU) return kFullVu;
  if (mark == kVoiceMark && (rowKst || rowH)) return static_cast<std::uint16_t>(plain + 1);
  if (mark == kSemiVoiceMark && rowH) return static_cast<std::uint16_t>(plain + 2);
  return 0;
}

std::uint16_t shiftJisOf(unsigned char row, unsigned char cell) {
  const unsigned lead = ((row - 0x21U) >> 1) + (row < 0x5F ? 0x81U : 0xC1U);
  const unsigned trail = (row & 1) != 0 ? cell + (cell < 0x60 ? 0x1FU : 0x20U) : cell + 0x7EU;
  return static_cast<std::uint16_t>((lead << 8) | trail);
}

/// 0 for the vendors' rows behind the 94 of the standard, and for illegal second bytes.
std::uint16_t jisOf(unsigned char lead, unsigned char trail) {
  if (lead > 0xEF || trail < 0x40 || trail == 0x7F || trail > 0xFC) return 0;
  unsigned row = (lead - (lead < 0xA0 ? 0x81U : 0xC1U)) * 2 + 0x21;
  unsigned cell;
  if (trail < 0x9F) {
    cell = trail - (trail < 0x80 ? 0x1FU : 0x20U);
  } else {
    ++row;
    cell = trail - 0x7EU;
  }
  return static_cast<std::uint16_t>((row << 8) | cell);
}

void putPair(ByteStage& stage, unsigned pair) {
  stage.put(static_cast<unsigned char>(pair >> 8));
  stage.put(static_cast<unsigned char>(pair & 0xFF));
}

class JapaneseWriter {
 public:
  JapaneseWriter(int codePage, DataBuffer& out) : codePage_(codePage), stage_(out) {}

  void byte(Set set, unsigned char c) {
    select(set);
    stage_.put(c);
  }

  void pair(std::uint16_t jis) {
    select(Set::Kanji);
    putPair(stage_, jis);
  }

  void halfKana(unsigned char kana) { byte(Set::Kana, static_cast<unsigned char>(kana & 0x7F)); }

  bool widensKana() const { return codePage_ == 50220; }

  bool finish() {
    select(Set::Ascii);
    return stage_.finish();
  }

 private:
  void select(Set set) {
    if (set == set_) return;
    const bool byShift = codePage_ == 50222;
    if (set_ == Set::Kana && byShift) stage_.put(kShiftIn);
    // Behind a shift the set from before still stands.
    const Set designated = set_ == Set::Kana && byShift ? designated_ : set_;
    if (set == Set::Kana && byShift) {
      designated_ = designated;
      stage_.put(kShiftOut);
    } else if (set != designated) {
      designate(set);
    }
    set_ = set;
  }

  void designate(Set set) {
    for (const Designation& designation : kDesignations) {
      if (designation.set != set) continue;
      stage_.put(kEsc);
      stage_.put(designation.sequence);
      return;
    }
  }

  int codePage_;
  ByteStage stage_;
  Set set_ = Set::Ascii;
  Set designated_ = Set::Ascii;
};

}  // namespace

bool Japanese::Iso2022ToShiftJis(const unsigned char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text(reinterpret_cast<const char*>(p), n);
  ByteStage stage(out);
  Set set = Set::Ascii;
  bool shifted = false;
  bool whole = true;
  for (std::size_t i = 0; i < n;) {
    const unsigned char c = p[i];
    if (c == kEsc) {
      std::size_t length = 0;
      for (const Designation& designation : kDesignations) {
        if (!text.substr(i + 1).starts_with(designation.sequence)) continue;
        set = designation.set;
        length = designation.sequence.size();
        break;
      }
      if (length == 0) whole = false;
      i += 1 + length;
    } else if (c == kShiftOut || c == kShiftIn) {
      shifted = c == kShiftOut;
      ++i;
    } else if (isHalfKana(c)) {
      stage.put(c);
      ++i;
    } else if (!isGraphic94(c) || (set == Set::Ascii && !shifted)) {
      if (c >= 0x80) whole = false;
      if (c < 0x80) stage.put(c);
      if (c == '\n') set = Set::Ascii;  // each line begins anew
      ++i;
    } else if (shifted || set == Set::Kana) {
      const unsigned char kana = static_cast<unsigned char>(c | 0x80);
      if (!isHalfKana(kana)) whole = false;
      if (isHalfKana(kana)) stage.put(kana);
      ++i;
    } else {
      const bool pair = i + 1 < n && isGraphic94(p[i + 1]);
      if (!pair || set == Set::Unknown) whole = false;
      if (pair && set == Set::Kanji) {
        putPair(stage, shiftJisOf(c, p[i + 1]));
      }
      i += pair ? 2 : 1;
    }
  }
  return stage.finish() && whole;
}

bool Japanese::ShiftJisToIso2022(int codePage, const unsigned char* p, std::size_t n,
                                 DataBuffer& out) {
  JapaneseWriter writer(codePage, out);
  bool whole = true;
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned char c = p[i];
    if (c < 0x80) {
      writer.byte(Set::Ascii, c);
    } else if (isHalfKana(c)) {
      const std::uint16_t joined =
          writer.widensKana() && i + 1 < n ? combined(c, p[i + 1]) : std::uint16_t{0};
      if (joined != 0) {
        writer.pair(joined);
        ++i;
      } else if (writer.widensKana()) {
        writer.pair(kFullWidth[c - kFirstHalfKana]);
      } else {
        writer.halfKana(c);
      }
    } else if (isShiftJisLead(c) && i + 1 < n) {
      const std::uint16_t jis = jisOf(c, p[++i]);
      if (jis == 0) whole = false;
      if (jis != 0) writer.pair(jis);
    } else {
      whole = false;
    }
  }
  return writer.finish() && whole;
}

// Korean -----------------------------------------------------------------------------------------

namespace {

/// Stands at the beginning of each text: KS X 1001 is what the shift leads to.
constexpr std::string_view kKoreanHeader = "\x1B$)C";

constexpr bool isKscByte(unsigned char c) { return c >= 0xA1 && c <= 0xFE; }

}  // namespace

bool Korean::Iso2022ToKsc(const unsigned char* p, std::size_t n, DataBuffer& out) {
  const std::string_view text(reinterpret_cast<const char*>(p), n);
  ByteStage stage(out);
  bool shifted = false;
  bool whole = true;
  for (std::size_t i = 0; i < n;) {
    const unsigned char c = p[i];
    if (text.substr(i).starts_with(kKoreanHeader)) {
      i += kKoreanHeader.size();
      continue;
    }
    const bool pair = shifted && isGraphic94(c) && i + 1 < n && isGraphic94(p[i + 1]);
    if (c == kShiftOut || c == kShiftIn) {
      shifted = c == kShiftOut;
    } else if (pair) {
      stage.put(static_cast<unsigned char>(c | 0x80));
      stage.put(static_cast<unsigned char>(p[++i] | 0x80));
    } else if (shifted && isGraphic94(c)) {
      whole = false;
    } else {
      stage.put(c);
    }
    ++i;
  }
  return stage.finish() && whole;
}

bool Korean::KscToIso2022(const unsigned char* p, std::size_t n, DataBuffer& out) {
  ByteStage stage(out);
  stage.put(kKoreanHeader);
  bool whole = true;
  bool shifted = false;
  const auto shift = [&](bool on) {
    if (shifted != on) stage.put(on ? kShiftOut : kShiftIn);
    shifted = on;
  };
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned char c = p[i];
    if (c < 0x80) {
      shift(false);
      stage.put(c);
    } else if (i + 1 < n) {
      const unsigned char trail = p[++i];
      if (!isKscByte(c) || !isKscByte(trail)) {  // the syllables that only code page 949 has
        whole = false;
        continue;
      }
      shift(true);
      stage.put(static_cast<unsigned char>(c & 0x7F));
      stage.put(static_cast<unsigned char>(trail & 0x7F));
    } else {
      whole = false;
    }
  }
  shift(false);
  return stage.finish() && whole;
}
