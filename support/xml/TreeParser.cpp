// The parser: one pass over UTF-8 text, without recursion and without a failure path. It is made
// to get the most out of any file that a hand or a tool has written: end tags close whatever is
// open, attributes need no quotes, and a document may stop anywhere.

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "AttributeSet.h"
#include "CkMemory.h"
#include "DataBuffer.h"
#include "LogBase.h"
#include "ParseEngine.h"
#include "StringBuffer.h"
#include "TreeInfo.h"
#include "TreeNode.h"
#include "XmlBytes.h"

namespace {

/// Tag of the root until an element is found.
constexpr std::string_view kNoElement = "empty";
constexpr std::string_view kCdataOpening = "<![CDATA[";
constexpr std::string_view kCdataClosing = "]]>";

/// Ends the parse where memory for what was read can't be had.
void need(bool had) {
  if (!had) throw std::bad_alloc();
}

class TreeParser {
 public:
  TreeParser(ParseEngine& engine, TreeNode& root, bool autoTrim, bool preventDuplicates,
             bool lowercaseNames)
      : m_engine(engine),
        m_root(root),
        m_info(*root.getTreeInfo()),
        m_autoTrim(autoTrim),
        m_attributes(std::make_unique<AttributeSet>(preventDuplicates, lowercaseNames)) {}

  /// Throws std::bad_alloc; what was read by then stands in the tree.
  void parse() {
    while (!m_done && !m_engine.atEnd()) {
      if (m_current == nullptr) {
        m_engine.captureToNextChar('<');
        m_engine.pass('<');
      } else {
        readText();
      }
      readMarkup();
    }
  }

 private:
  // Text ----------------------------------------------------------------------------------------

  /// Reads up to the next "<" that opens no CDATA section, and passes it.
  void readText() {
    const std::string_view blanks = captureWhiteSpace();
    if (!m_engine.at(kCdataOpening)) {
      addText(blanks, m_engine.captureToNextChar('<'));
    }
    while (m_engine.at(kCdataOpening)) readCdata();
    m_engine.pass('<');
  }

  std::string_view captureWhiteSpace() {
    const std::string_view before = m_engine.rest();
    m_engine.skipWhiteSpace();
    return before.substr(0, before.size() - m_engine.rest().size());
  }

  void addText(std::string_view blanks, std::string_view text) {
    if (m_autoTrim) {
      text = withoutBlanksAtEnd(text);
      if (!text.empty()) need(m_current->appendContent(" ", text));
    } else if (text.empty()) {
      // White space between child elements is layout.
      if (m_current->getNumChildren() == 0) need(m_current->appendContent({}, blanks));
    } else if (blanks.empty()) {
      need(m_current->appendContent(" ", text));
    } else {
      need(m_current->appendContent({}, blanks) && m_current->appendContent({}, text));
    }
  }

  /// Reads one section, and drops the text behind it.
  void readCdata() {
    m_engine.pass(kCdataOpening);
    const std::string_view rest = m_engine.rest();
    const std::string_view text = rest.substr(0, rest.find(kCdataClosing));
    need(m_current->appendCdata(text));
    if (!m_engine.seekAndSkipExact(kCdataClosing)) m_engine.skipToEnd();
    m_engine.captureToNextChar('<');
  }

  // Markup --------------------------------------------------------------------------------------

  /// Reads what follows a "<".
  void readMarkup() {
    const bool declaration = m_engine.at('!');
    const bool instruction = m_engine.at('?');
    const bool endTag = m_engine.at('/');
    m_engine.skipWhiteSpace();
    if (m_engine.atEnd()) return;
    if (declaration) {
      readDeclaration();
    } else if (instruction) {
      readInstruction();
    } else if (endTag) {
      readEndTag();
    } else {
      readStartTag();
    }
  }

  void readDeclaration() {
    if (m_engine.at("!--")) {
      m_done = !m_engine.seekAndSkipExact("-->");
    } else if (m_engine.atNoCase("!DOCTYPE")) {
      StringBuffer docType("<");
      if (m_engine.seekAndCopyToClosing('<', '>', 1, docType)) {
        addLine(docType, m_info.m_docType);
      }
    } else {
      m_engine.captureToNextChar('>');
      m_engine.pass('>');
    }
  }

  static void addLine(StringBuffer& line, StringBuffer& to) {
    need(line.appendChar('\n') && to.append(line));
  }

  void readInstruction() {
    m_engine.pass('?');
    if (m_engine.passNoCase("xml ")) {
      m_engine.skipWhiteSpace();
      m_engine.pass('/');
      readPrologAttributes();
    } else if (m_engine.atNoCase("xml-stylesheet ")) {
      auto sheet = std::make_unique<StringBuffer>("<?");
      need(sheet->append(m_engine.captureToNextChar('>')) && sheet->appendChar('>'));
      m_info.m_styleSheets.push_back(std::move(sheet));
    } else {
      readOtherInstruction();
    }
  }

  void readOtherInstruction() {
    // Where no end comes once, none comes later: not to be searched for at each "<?" of a broken
    // document.
    if (m_noInstructionEnds) return;
    StringBuffer instruction("<?");
    if (!m_engine.seekAndCopy("?>", instruction)) {
      m_noInstructionEnds = true;
      return;
    }
    addLine(instruction, m_info.m_prologPIs);
  }

  void readPrologAttributes() {
    m_engine.skipWhiteSpace();
    while (!m_engine.atEnd() && !m_engine.at('>')) {
      const std::string_view name = withoutDoubleQuotes(m_engine.captureToNext(kEndsPrologName));
      std::string_view value;
      m_engine.skipWhiteSpace();
      if (m_engine.pass('=')) {
        m_engine.skipWhiteSpace();
        const bool quoted = m_engine.pass('"') || m_engine.pass('\'');
        value = m_engine.captureToNext(quoted ? kEndsQuotedPrologValue : kEndsPlainPrologValue);
        if (!m_engine.pass('"')) m_engine.pass('\'');
      }
      m_info.m_docAttrs.addAttribute(name, decodeXmlEntities(value, m_valueScratch));
      m_engine.skipWhiteSpace();
      m_engine.pass('?');
    }
    m_engine.pass('>');
  }

  std::string_view withoutDoubleQuotes(std::string_view name) {
    if (name.find('"') == std::string_view::npos) return name;
    m_nameScratch = name;
    std::erase(m_nameScratch, '"');
    return m_nameScratch;
  }

  // Elements ------------------------------------------------------------------------------------

  /// Any end tag closes the innermost open element; its name is not looked at.
  void readEndTag() {
    if (m_engine.skipUntilChar2('>', '<')) m_engine.pass('>');
    if (m_current != nullptr) closeElement();
  }

  void closeElement() {
    if (!m_autoTrim && m_current->getNumChildren() > 0) m_current->trimContent();
    m_current = m_current->getParent();
    m_done = m_current == nullptr;
  }

  void readStartTag() {
    const std::string_view name = m_engine.captureToNext(kEndsTag);
    if (m_engine.atEnd()) return;
    m_engine.skipWhiteSpace();
    bool selfClosing = m_engine.pass('/');
    openElement(name);
    m_engine.skipWhiteSpace();
    selfClosing |= readAttributes();
    m_engine.pass('>');
    if (selfClosing) closeElement();
  }

  void openElement(std::string_view name) {
    if (m_current == nullptr) {
      need(m_root.setTnTag(name));
      m_current = &m_root;
    } else {
      m_current = TreeNode::createNode(m_current, name);
      need(m_current != nullptr);
    }
  }

  /// Reads what stands before the ">". True if a "/" is among it.
  bool readAttributes() {
    bool selfClosing = false;
    m_attributes->clear();
    try {
      while (!m_engine.atEnd() && !m_engine.at('>')) selfClosing |= readAttribute();
      if (!m_attributes->empty()) need(m_current->setAttributes(*m_attributes));
    } catch (const std::bad_alloc&) {
      m_current->takeAttributes(std::move(m_attributes));
      throw;
    }
    return selfClosing;
  }

  /// Reads one attribute and what stands behind it. True if that is a "/".
  bool readAttribute() {
    const std::string_view name = m_engine.captureToNext(kEndsAttributeName);
    std::string_view value;
    m_engine.skipWhiteSpace();
    if (m_engine.pass('=')) {
      m_engine.skipWhiteSpace();
      value = readAttributeValue();
    }
    m_attributes->addAttribute(cleanXmlAttributeName(name, m_nameScratch),
                               decodeXmlEntities(value, m_valueScratch));
    m_engine.skipWhiteSpace();
    if (!m_engine.pass('/')) return false;
    m_engine.skipWhiteSpace();
    return true;
  }

  /// A value that no quote opens goes on to the next quote, however far that is.
  std::string_view readAttributeValue() {
    for (const char quote : {'"', '\''}) {
      if (!m_engine.pass(quote)) continue;
      const std::string_view value = m_engine.captureToNextChar(quote);
      m_engine.pass(quote);
      return value;
    }
    const std::string_view value = m_engine.captureToNext(kXmlQuote);
    if (!m_engine.pass('"')) m_engine.pass('\'');
    return value;
  }

  ParseEngine& m_engine;
  TreeNode& m_root;
  TreeInfo& m_info;
  const bool m_autoTrim;
  TreeNode* m_current = nullptr;  ///< the innermost open element
  bool m_done = false;
  bool m_noInstructionEnds = false;
  /// Of the tag being read. A node gets a copy without slack.
  std::unique_ptr<AttributeSet> m_attributes;
  std::string m_nameScratch;
  std::string m_valueScratch;
};

std::string_view viewOf(const DataBuffer& bytes) {
  return {reinterpret_cast<const char*>(bytes.getData2()), bytes.getSize()};
}

}  // namespace

UncountedTree TreeNode::customParse(ParseEngine& engine, LogBase* /*log*/, bool autoTrim,
                                    bool preventDuplicates, bool lowercaseNames) {
  if (!engine.hasText()) return nullptr;
  UncountedTree root = createRoot(kNoElement);
  if (root == nullptr) return nullptr;
  try {
    TreeParser(engine, *root, autoTrim, preventDuplicates, lowercaseNames).parse();
  } catch (const std::bad_alloc&) {
    // What was read up to here stands; whoever needs all of the document asks for shortages.
    ckNoteMemoryShortage();
  }
  return root;
}

UncountedTree TreeNode::customParseString(const char* text, LogBase* log, bool autoTrim,
                                          bool preventDuplicates, bool lowercaseNames) {
  ParseEngine engine(text == nullptr ? std::string_view() : std::string_view(text));
  return customParse(engine, log, autoTrim, preventDuplicates, lowercaseNames);
}

UncountedTree TreeNode::customParseDb(const DataBuffer& bytes, LogBase* log, bool autoTrim,
                                      bool preventDuplicates, bool lowercaseNames) {
  // A document of which a conversion left nothing is one without an element.
  ParseEngine engine(bytes.empty() ? std::string_view("") : viewOf(bytes));
  return customParse(engine, log, autoTrim, preventDuplicates, lowercaseNames);
}

UncountedTree TreeNode::customParseFile(const char* path, LogBase* log, bool autoTrim,
                                        bool preventDuplicates, bool lowercaseNames) {
  LogNull silent;
  DataBuffer bytes;
  if (!loadToUtf8(path, bytes, log == nullptr ? silent : *log)) return nullptr;
  return customParseDb(bytes, log, autoTrim, preventDuplicates, lowercaseNames);
}

bool TreeNode::loadToUtf8(const char* path, DataBuffer& out, LogBase& log) {
  return out.loadFileUtf8(path, &log) && out.convertXmlToUtf8(log);
}
