#include "CkCharset.h"

#include <array>
#include <string_view>

#include "AsciiText.h"
#include "CharsetNaming.h"
#include "Psdk.h"

void _ckCharset::clear() {
  m_name.strongClear();
  m_codePage = 0;
  m_mark = Mark::Unset;
}

void _ckCharset::copy(const _ckCharset& other) {
  m_name.setString(other.m_name);
  m_codePage = other.m_codePage;
  m_mark = other.m_mark;
}

bool _ckCharset::setByCodePage(int codePage) {
  m_codePage = codePage;
  return CharsetNaming::GetCharsetName(codePage, m_name);
}

bool _ckCharset::setByName(const char* name) {
  std::string_view wanted = name == nullptr || *name == '\0' ? "ansi" : name;
  struct Prefix {
    std::string_view text;
    Mark mark;
  };
  static constexpr std::array<Prefix, 4> kPrefixes = {{{"bom-", Mark::Wanted},
                                                       {"bom:", Mark::Wanted},
                                                       {"no-bom-", Mark::NotWanted},
                                                       {"no-bom:", Mark::NotWanted}}};
  for (const Prefix& prefix : kPrefixes) {
    if (!wanted.starts_with(prefix.text)) continue;
    m_mark = prefix.mark;
    wanted.remove_prefix(prefix.text.size());
    break;
  }
  if (wanted == "default" || wanted == "x-user-defined") {
    clear();
    return true;
  }
  if (equalsNoCase(wanted, "ansi")) return setByCodePage(Psdk::getAnsiCodePage());
  if (equalsNoCase(wanted, "oem")) return setByCodePage(Psdk::getOemCodePage());

  StringBuffer normalised;
  normalised.append(wanted);
  m_codePage = CharsetNaming::GetCodePage(normalised);
  m_name.weakClear();
  if (m_codePage == 0) return false;
  CharsetNaming::GetCharsetName(m_codePage, m_name);
  return true;
}
