#pragma once

#include <string>

#include "LogBase.h"
#include "StringBuffer.h"

namespace fixture {

inline std::string textOf(LogBase& log) {
  StringBuffer out;
  log.getText(out);
  return std::string(out.view());
}

inline std::string htmlOf(LogBase& log) {
  StringBuffer out;
  log.getHtml(out);
  return std::string(out.view());
}

inline std::string xmlOf(LogBase& log) {
  StringBuffer out;
  log.getXml(out);
  return std::string(out.view());
}

}  // namespace fixture
