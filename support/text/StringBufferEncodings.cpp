// A StringBuffer and the encodings of its bytes.

#include "ContentCoding.h"
#include "DataBuffer.h"
#include "EncodingConvert.h"
#include "LogBase.h"
#include "StringBuffer.h"

bool StringBuffer::hexStringToBinary(DataBuffer& out) const {
  return ContentCoding::decodeHex(m_data, m_length, out);
}

bool StringBuffer::convertEncoding(int fromCodePage, int toCodePage) {
  LogNull log;
  EncodingConvert converter;
  DataBuffer converted;
  converted.setSecure(m_secure);
  const bool whole =
      converter.EncConvert(fromCodePage, toCodePage, m_data, m_length, converted, log);
  return takeFromDb(converted) && whole;
}

bool StringBuffer::jsonEscape() {
  StringBuffer escaped;
  escaped.setSecureBuf(m_secure);
  if (!ContentCoding::encodeJson(m_data, m_length, escaped)) return false;
  takeSb(escaped);
  return true;
}
