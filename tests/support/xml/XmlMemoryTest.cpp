// Measures what a document takes, and refuses memory at every point of a load.

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "AttributeSet.h"
#include "CkString.h"
#include "CkXml.h"
#include "MemoryWatch.h"
#include "ParseEngine.h"
#include "RunningShort.h"
#include "TempFolder.h"
#include "TreeNode.h"
#include "XmlDocuments.h"

namespace {

using fixture::MemoryShortage;
using fixture::memoryWatch;

TEST(XmlMemory, IsAFewTimesTheSettingsFile) {
  const std::string text = documents::settings(100);
  const fixture::TempFolder folder;
  const std::string path = folder.write("settings.xml", text);
  const std::size_t before = memoryWatch().inUse;
  memoryWatch().peak = before;
  const UncountedTree tree = TreeNode::customParseFile(path.c_str(), nullptr, true, false, false);
  EXPECT_LE(memoryWatch().inUse - before, 3 * text.size());
  EXPECT_LE(memoryWatch().peak - before, 4 * text.size());
}

/// What was read of a document before memory ran short: nothing that it doesn't hold.
bool isPart(const TreeNode& part, const TreeNode& whole) {
  if (!whole.tagEquals(part.getTag()) || !whole.getContent().starts_with(part.getContent())) {
    return false;
  }
  for (std::size_t i = 0; part.getAttributes() && i < part.getAttributes()->getNumAttributes();
       ++i) {
    if (part.getAttributes()->getAttribute(i) != whole.getAttributes()->getAttribute(i))
      return false;
  }
  for (int i = 0; i < part.getNumChildren(); ++i) {
    if (i >= whole.getNumChildren() || !isPart(*part.getChild(i), *whole.getChild(i))) return false;
  }
  return true;
}

// Memory that runs short at the first, second ... request: the parse ends, and what it read by
// then stands.
TEST(XmlMemory, MayRunShortAnywhereInAParse) {
  const std::string text =
      "<!DOCTYPE a><?xml-stylesheet x?><?pi x?><root-with-a-long-name one='1 &amp;' two=\"2\">"
      "text &amp; text <child a='" +
      std::string(50, 'a') + "' b='" + std::string(500, 'b') + "'/> more <![CDATA[text" +
      std::string(100, 't') + "]]><child x='1'><b/></child></root>";
  const UncountedTree whole =
      TreeNode::customParseString(text.c_str(), nullptr, true, false, false);
  const std::size_t before = memoryWatch().inUse;
  bool hadFirstAttributeOnly = false;
  fixture::withMoreAndMoreMemory([&](int allocations) {
    ParseEngine engine(text);
    UncountedTree tree;
    {
      const MemoryShortage shortage(allocations);
      tree = TreeNode::customParse(engine, nullptr, true, false, false);
    }
    if (tree == nullptr) return;
    EXPECT_TRUE(tree->tagEquals("empty") || isPart(*tree, *whole)) << allocations;
    const TreeNode* const child = tree->getFirstChild();
    hadFirstAttributeOnly |= child != nullptr && child->getAttributes() != nullptr &&
                             child->getAttributes()->getNumAttributes() == 1;
    // A self-closing tag that lost something is the last one.
    if (hadFirstAttributeOnly && tree->getNumChildren() > 1) {
      EXPECT_EQ(child->getAttributes()->getNumAttributes(), 2U);
    }
    tree.reset();
    EXPECT_EQ(memoryWatch().inUse, before) << allocations;
  });
  EXPECT_TRUE(hadFirstAttributeOnly);
}

// An attribute that finds no memory is refused, and the one that it was to replace stays.
TEST(XmlMemory, MayRunShortForAnAttribute) {
  const std::string longValue(200, 'v');
  const auto valueOf = [](const AttributeSet& attributes, std::string_view name) {
    return std::string(attributes.valueOf(name).value_or("none"));
  };
  int refused = 0;
  for (bool added = false; !added && refused < 10;) {
    AttributeSet attributes(/*preventDuplicates=*/true, /*lowercaseNames=*/false);
    attributes.addAttribute("a", "1");
    attributes.addAttribute("b", "2");
    try {
      const MemoryShortage shortage(refused);
      attributes.addAttribute("a", longValue);
      added = true;
    } catch (const std::bad_alloc&) {
      ++refused;
    }
    EXPECT_EQ(attributes.getNumAttributes(), 2U);
    EXPECT_EQ(valueOf(attributes, "a"), added ? longValue : "1");
    EXPECT_EQ(valueOf(attributes, "b"), "2");
  }
  EXPECT_GE(refused, 2);
}

// A name that can't be copied is no empty name, and a handle without its text takes none.
TEST(XmlMemory, MayRunShortAnywhereInASearch) {
  const fixture::TempFolder folder;
  const std::string tag(200, 't');
  CkXml xml;
  ASSERT_TRUE(xml.LoadXmlFile(
      folder.write("a.xml", "<r =''><=/><" + tag + " " + tag + "='7" + tag + "'/></r>").c_str()));
  int found = 0;
  for (int allocations = 0; found < 3 && allocations < 100; ++allocations) {
    const MemoryShortage shortage(allocations);
    CkString value;
    xml.GetRoot2();
    found = xml.FindChild2(tag.c_str()) ? 1 : 0;
    const int number = xml.GetAttrValueInt(tag.c_str());
    const bool read = xml.GetAttrValue(tag.c_str(), value);
    EXPECT_EQ(xml.get_LastMethodSuccess(), read);
    // An attribute that is there and has no value isn't one that could not be copied.
    EXPECT_TRUE(read || found == 0 || !value.isWhole()) << allocations;
    EXPECT_TRUE(number == 0 || (number == 7 && found == 1));
    EXPECT_TRUE(!read || found == 1);
    found += (number == 7 ? 1 : 0) + (read ? 1 : 0);
  }
  EXPECT_EQ(found, 3);
}

}  // namespace
