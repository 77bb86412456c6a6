// Settings files as editors on other systems leave them, read the way the component reads them.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CkString.h"
#include "CkXml.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "TempFolder.h"
#include "XmlDocuments.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kUtf8 = 65001;

/// Two scales, the second with a host in Cyrillic letters.
std::string settings(std::string_view declaration) {
  return std::string(declaration) +
         "\r\n<НАСТРОЙКИ>\r\n"
         "  <SCALES0 fNum=\"7\" fHost=\"10.0.0.1\" fCoeff=\"1.000\"/>\r\n"
         "  <SCALES2 fNum=\"8\" fHost=\"весы &quot;2&quot;\" fCoeff=\"0,5\"/>\r\n"
         "</НАСТРОЙКИ>\r\n";
}

std::string converted(std::string_view utf8, int codePage) {
  LogNull log;
  DataBuffer out;
  EXPECT_TRUE(EncodingConvert().EncConvertWithPreamble(kUtf8, codePage, utf8.data(), utf8.size(),
                                                       out, log));
  return {reinterpret_cast<const char*>(out.getData2()), out.getSize()};
}

/// The scales of a file with these bytes, as "number host coefficient".
std::vector<std::string> scalesIn(std::string_view bytes) {
  const fixture::TempFolder folder;
  CkXml xml;
  xml.put_Utf8(true);
  std::vector<std::string> scales;
  if (!xml.LoadXmlFile(folder.write("settings.xml", bytes).c_str())) return {"no document"};
  for (int i = 0; i < 100; ++i) {
    xml.GetRoot2();
    if (!xml.FindChild2(("SCALES" + std::to_string(i)).c_str())) continue;
    CkString host;
    CkString coefficient;
    xml.GetAttrValue("fHost", host);
    xml.GetAttrValue("fCoeff", coefficient);
    scales.push_back(std::to_string(xml.GetAttrValueInt("fNum")) + " " + host.getUtf8() + " " +
                     coefficient.getUtf8());
  }
  return scales;
}

const auto kBothScales = ElementsAre("7 10.0.0.1 1.000", "8 весы \"2\" 0,5");

TEST(SettingsFile, IsReadInTheEncodingsOfEditors) {
  const std::string utf8 = settings("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_THAT(scalesIn(utf8), kBothScales);
  EXPECT_THAT(scalesIn("\xEF\xBB\xBF" + utf8), kBothScales);
  EXPECT_THAT(scalesIn(settings("")), kBothScales);
  const std::string utf16 = settings("<?xml version=\"1.0\" encoding=\"UTF-16\"?>");
  EXPECT_THAT(scalesIn(utf16), kBothScales);
  EXPECT_THAT(scalesIn(converted(utf16, 1200)), kBothScales);
  EXPECT_THAT(scalesIn(converted(utf16, 1201)), kBothScales);
  for (const int codePage : {1251, 866, 20866}) {
    const char* const name = codePage == 1251  ? "windows-1251"
                             : codePage == 866 ? "cp866"
                                               : "koi8-r";
    const std::string declaration = std::string("<?xml version='1.0' encoding='") + name + "'?>";
    EXPECT_THAT(scalesIn(converted(settings(declaration), codePage)), kBothScales) << name;
  }
}

}  // namespace
