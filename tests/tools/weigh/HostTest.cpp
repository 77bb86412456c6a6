// The host library: nothing of a component that it loads stays behind, and texts pass whole.

#include <gtest/gtest.h>

#include "Component.h"
#include "Utf16.h"

namespace {

using host::Component;

TEST(Host, FreesEveryTextOnce) {
  Component component(WEIGH_COMPONENT);
  component.registeredName();
  component.methods();
  component.call("GetDescription");
  component.call("GetParameters");
  component.call("GetVersion");
  // Texts of the caller are replaced, kept or refused.
  component.call("Open", {"old text"});
  component.call("GetLastError", {host::NarrowText{"old text"}});
  component.call("Close", {"kept"});
  component.call("Close", {std::string(65536, 'x')});
  component.call("SetParameter", {host::NarrowText{"coeff"}, 5});
  EXPECT_EQ(component.memory().live(), 0U);
  EXPECT_EQ(component.memory().foreignFrees(), 0U);
  EXPECT_TRUE(component.platform().errors().empty());
}

TEST(Host, ConvertsTextBothWaysAndStepsOverWhatIsNone) {
  using Utf16 = std::basic_string<WCHAR_T>;
  const std::pair<std::string, Utf16> texts[] = {
      {"", {}}, {"Вес", {0x0412, 0x0435, 0x0441}}, {"a\xF0\x9F\x8D\x8E", {'a', 0xD83C, 0xDF4E}}};
  for (const auto& [utf8, utf16] : texts) {
    EXPECT_EQ(host::toUtf16(utf8), utf16);
    EXPECT_EQ(host::toUtf8(utf16.c_str(), utf16.size()), utf8);
    EXPECT_EQ(host::toUtf8(utf16.c_str()), utf8);
  }
  EXPECT_EQ(host::toUtf8(nullptr), "");
  EXPECT_EQ(host::toUtf16("a\xC0z"), (Utf16{'a', 0xFFFD, 'z'}));
  EXPECT_EQ(host::toUtf16("a\xD0"), (Utf16{'a', 0xFFFD}));
  const Utf16 halves = {'a', 0xDF4E, 'z', 0xD83C};
  EXPECT_EQ(host::toUtf8(halves.c_str(), halves.size()), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
}

}  // namespace
