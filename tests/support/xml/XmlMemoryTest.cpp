// Measures what a document takes, and refuses memory at every point of a load.

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "CkString.h"
#include "CkXml.h"
#include "MemoryWatch.h"
#include "ParseEngine.h"
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

// Memory that runs short at the first, second ... request: the parse ends, and what it read by
// then stands.
TEST(XmlMemory, MayRunShortAnywhereInAParse) {
  const std::string text =
      "<!DOCTYPE a><?xml-stylesheet x?><?pi x?><root-with-a-long-name one='1 &amp;' two=\"2\">"
      "text &amp; text <child/> more <![CDATA[text]]><child x='1'><b/></child></root>";
  const std::size_t before = memoryWatch().inUse;
  int allocations = 0;
  bool finished = false;
  for (; !finished && allocations < 1000; ++allocations) {
    ParseEngine engine(text);
    UncountedTree tree;
    {
      const MemoryShortage shortage(allocations);
      tree = TreeNode::customParse(engine, nullptr, true, false, false);
      finished = !shortage.isHit();
    }
    if (tree != nullptr) {
      EXPECT_EQ(tree->getRoot(), tree.get());
      EXPECT_LE(tree->getNumChildren(), 2);
    }
    tree.reset();
    EXPECT_EQ(memoryWatch().inUse, before) << allocations;
  }
  EXPECT_TRUE(finished);
  EXPECT_GT(allocations, 10);
}

TEST(XmlMemory, MayRunShortAnywhereInALoad) {
  const fixture::TempFolder folder;
  const std::string path = folder.write("settings.xml", documents::settings(2));
  bool finished = false;
  for (int allocations = 0; !finished && allocations < 1000; ++allocations) {
    const MemoryShortage shortage(allocations);
    CkXml xml;
    CkString value;
    const bool found = xml.LoadXmlFile(path.c_str()) && xml.FindChild2("SCALES1");
    xml.GetAttrValue("fHost", value);
    finished = found && xml.GetAttrValueInt("fType") == 20 && !shortage.isHit();
  }
  EXPECT_TRUE(finished);
}

}  // namespace
