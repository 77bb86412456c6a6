// The delivered archive, unpacked and attached as the platform does it.

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Component.h"
#include "Program.h"
#include "TempFolder.h"

namespace {

constexpr const char* kLibrary = "OrbeloScalesLin64.so";
constexpr const char* kManifest = "MANIFEST.XML";

class Bundle : public testing::Test {
 protected:
  void SetUp() override {
    fixture::Program unpack({ORBELO_CMAKE, "-E", "chdir", folder_.path(), ORBELO_CMAKE, "-E", "tar",
                             "xf", ORBELO_BUNDLE},
                            fixture::Program::Errors::WithOutput);
    EXPECT_EQ(unpack.rest(), "");
    ASSERT_EQ(unpack.end(), 0);
  }

  fixture::TempFolder folder_;
};

TEST_F(Bundle, HoldsTheStrippedLibraryAndItsManifest) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
    names.push_back(std::filesystem::relative(entry.path(), folder_.path()));
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre(kLibrary, kManifest));
  EXPECT_EQ(folder_.read(kLibrary).find(".symtab"), std::string::npos);
}

TEST_F(Bundle, NamesTheLibraryInItsManifest) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(folder_.file(kManifest).c_str()));
  const pugi::xml_node bundle = document.document_element();
  EXPECT_STREQ(bundle.name(), "bundle");
  EXPECT_STREQ(bundle.attribute("xmlns").value(), "http://v8.1c.ru/8.2/addin/bundle");
  EXPECT_STREQ(bundle.attribute("name").value(), "OrbeloScales");
  const pugi::xml_node component = bundle.first_child();
  EXPECT_STREQ(component.name(), "component");
  EXPECT_STREQ(component.attribute("os").value(), "Linux");
  EXPECT_STREQ(component.attribute("arch").value(), "x86_64");
  EXPECT_STREQ(component.attribute("type").value(), "native");
  EXPECT_STREQ(component.attribute("path").value(), kLibrary);
  EXPECT_FALSE(component.next_sibling());
}

TEST_F(Bundle, WeighsFromACleanFolder) {
  const fixture::TempFolder clean;
  std::filesystem::rename(folder_.file(kLibrary), clean.file(kLibrary));
  host::Component component(clean.file(kLibrary));
  component.call("SetParameter", {"model", 20});
  const host::CallResult weighing =
      component.call("ПолучитьВес", {component.call("Open").params.at(0)});
  EXPECT_TRUE(weighing.executed);
  EXPECT_GE(std::get<double>(weighing.params.at(1)), 0.08);
  EXPECT_THAT(component.lastError().code, testing::AnyOf(0U, 3U));
}

}  // namespace
