#include "CkXml.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct XmlElement {
  std::string tag;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<XmlElement> children;
};

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string unescape(std::string_view text) {
  static constexpr std::pair<std::string_view, char> kEntities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
  std::string plain;
  while (!text.empty()) {
    bool replaced = false;
    for (const auto& [entity, character] : kEntities) {
      if (!text.starts_with(entity)) continue;
      plain += character;
      text.remove_prefix(entity.size());
      replaced = true;
      break;
    }
    if (replaced) continue;
    plain += text.front();
    text.remove_prefix(1);
  }
  return plain;
}

/// One pass over the elements of two levels, which is all that a settings file has: the root and
/// its children. Deeper elements are stepped over. What can't be read is skipped.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  std::unique_ptr<XmlElement> read() {
    std::unique_ptr<XmlElement> root;
    std::size_t depth = 0;
    while (skipTo('<')) {
      if (skipAside()) continue;
      const std::size_t end = rest_.find('>');
      if (end == std::string_view::npos) break;
      std::string_view inside = rest_.substr(0, end);
      rest_.remove_prefix(end + 1);
      if (inside.starts_with('/')) {
        if (depth > 0) --depth;
        continue;
      }
      const bool closed = inside.ends_with('/');
      if (closed) inside.remove_suffix(1);
      XmlElement element = parseTag(inside);
      if (!root) {
        root = std::make_unique<XmlElement>(std::move(element));
      } else if (depth == 1) {
        root->children.push_back(std::move(element));
      }
      if (!closed) ++depth;
    }
    return root;
  }

 private:
  bool skipTo(char mark) {
    const std::size_t at = rest_.find(mark);
    if (at == std::string_view::npos) return false;
    rest_.remove_prefix(at + 1);
    return true;
  }

  /// Steps over a declaration, a comment or a document type.
  bool skipAside() {
    if (!rest_.starts_with('?') && !rest_.starts_with('!')) return false;
    const std::string_view end = rest_.starts_with("!--") ? "-->" : ">";
    const std::size_t at = rest_.find(end);
    rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at + end.size());
    return true;
  }

  static XmlElement parseTag(std::string_view inside) {
    XmlElement element;
    std::size_t pos = std::min(inside.find_first_of(kBlanks), inside.size());
    element.tag = std::string(inside.substr(0, pos));
    while ((pos = inside.find_first_not_of(kBlanks, pos)) != std::string_view::npos) {
      const std::size_t equals = inside.find('=', pos);
      if (equals == std::string_view::npos) break;
      std::string_view name = inside.substr(pos, equals - pos);
      name = name.substr(0, name.find_first_of(kBlanks));
      const std::size_t open = inside.find_first_of("\"'", equals);
      if (open == std::string_view::npos) break;
      const std::size_t close = inside.find(inside[open], open + 1);
      if (close == std::string_view::npos) break;
      element.attributes.emplace_back(name, unescape(inside.substr(open + 1, close - open - 1)));
      pos = close + 1;
    }
    return element;
  }

  std::string_view rest_;
};

}  // namespace

CkXml::CkXml() : root_(std::make_unique<XmlElement>()), cursor_(root_.get()) {}
CkXml::~CkXml() = default;

std::string CkXml::toUtf8(const char* text) const {
  CkString converted;
  if (utf8_) {
    converted.setStringUtf8(text);
  } else {
    converted.setString(text);
  }
  return converted.getUtf8();
}

bool CkXml::LoadXmlFile(const char* path) {
  std::ifstream file(toUtf8(path), std::ios::binary);
  if (!file) return false;
  std::ostringstream text;  // reads a folder as nothing, where an iterator would throw
  text << file.rdbuf();
  std::unique_ptr<XmlElement> root = Reader(text.view()).read();
  if (!root) return false;
  root_ = std::move(root);
  cursor_ = root_.get();
  return true;
}

void CkXml::GetRoot2() { cursor_ = root_.get(); }

bool CkXml::FindChild2(const char* tag) {
  const std::string wanted = toUtf8(tag);
  for (const XmlElement& child : cursor_->children) {
    if (child.tag != wanted) continue;
    cursor_ = &child;
    return true;
  }
  return false;
}

bool CkXml::GetAttrValue(const char* name, CkString& out) {
  out.clear();
  const std::string wanted = toUtf8(name);
  for (const auto& [attribute, value] : cursor_->attributes) {
    if (attribute != wanted) continue;
    out.setStringUtf8(value.c_str());
    return true;
  }
  return false;
}

int CkXml::GetAttrValueInt(const char* name) {
  CkString value;
  return GetAttrValue(name, value) ? std::atoi(value.getUtf8()) : 0;
}
