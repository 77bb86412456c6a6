#pragma once

#include <cstddef>
#include <string>

/// Documents for measuring the parser.
namespace documents {

/// A settings file of `scales` scales, as the file in the component's folder looks.
inline std::string settings(int scales) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SETTINGS>\n";
  for (int i = 0; i < scales; ++i) {
    const std::string n = std::to_string(i);
    text += "  <SCALES" + n + " fNum=\"" + n + "\" fType=\"20\" fIsComPort=\"" +
            (i % 2 == 0 ? "1" : "0") +
            "\" fComBaudRate=\"9600\" fTCPPort=\"20108\" fLeaveConnect=\"1\" "
            "fComPortName=\"/dev/ttyS" +
            n + "\" fHost=\"192.168.1." + n + "\" fCoeff=\"1.000\"/>\n";
  }
  return text + "</SETTINGS>\n";
}

/// A catalogue of at least `size` bytes: records with attributes, texts, entities, comments.
inline std::string catalogue(std::size_t size) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<catalogue>\n";
  for (int i = 0; text.size() < size; ++i) {
    const std::string n = std::to_string(i);
    text += "  <article id=\"" + n + "\" group=\"" + std::to_string(i % 97) +
            "\" unit=\"kg\">\n    <name>Apples &amp; pears, box number " + n +
            "</name>\n    <price currency=\"UAH\">" + std::to_string(i % 1000) +
            ".50</price>\n    <!-- weighed -->\n    <note>Яблука, перший сорт</note>\n"
            "    <stock/>\n  </article>\n";
  }
  return text + "</catalogue>\n";
}

/// `depth` elements, each inside the one before.
inline std::string nested(std::size_t depth) {
  std::string text;
  text.reserve(depth * 7);
  for (std::size_t i = 0; i < depth; ++i) text += "<a>";
  for (std::size_t i = 0; i < depth; ++i) text += "</a>";
  return text;
}

}  // namespace documents
