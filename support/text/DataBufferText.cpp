// What a DataBuffer knows about the text in its bytes, and about files.

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

#include "ClsEncode.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "LogBase.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

/// So many NUL bytes on one side of the byte pairs settle the matter, however long the text.
constexpr std::size_t kEnoughNulBytes = 32;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File openFile(const char* path, const char* mode, LogBase* log, const char* complaint) {
  File file(path == nullptr ? nullptr : std::fopen(path, mode));
  if (file == nullptr && log != nullptr) log->LogError(complaint);
  return file;
}

}  // namespace

int DataBuffer::detectObviousCodePage() const {
  using namespace std::string_view_literals;
  const std::string_view bytes(reinterpret_cast<const char*>(m_data), m_size);
  if (bytes.empty()) return -1;
  // UTF-32 in little-endian order begins like UTF-16 and is reported as such.
  if (bytes.starts_with("\xFF\xFE"sv)) return 1200;
  if (bytes.starts_with("\xFE\xFF"sv)) return 1201;
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) return 65001;
  if (bytes.starts_with("\0\0\xFE\xFF"sv)) return 12001;

  const std::size_t share = bytes.size() > 7 ? bytes.size() / 8 : 1;
  const auto manyNulBytes = [&](std::size_t firstIndex) {
    std::size_t count = 0;
    for (std::size_t i = firstIndex; i < bytes.size(); i += 2) {
      if (bytes[i] == 0 && ++count > kEnoughNulBytes) return true;
    }
    return count >= share;
  };
  if (manyNulBytes(1)) return 1200;
  if (manyNulBytes(0)) return 1201;
  return -1;
}

void DataBuffer::toHexString(StringBuffer& out) const { toHexString2(out, false); }

void DataBuffer::toHexString2(StringBuffer& out, bool colons) const {
  ContentCoding::encodeHex(m_data, m_size, colons ? HexStyle::UpperColons : HexStyle::Upper, out);
}

bool DataBuffer::encodeDB(const char* encoding, StringBuffer& out) const {
  LogNull log;
  _clsEncode coder;
  coder.put_EncodingModeInt(_clsEncode::parseEncodingName(encoding));
  XString text;
  return coder.encodeBinary(*this, text, false, log) && out.append(text.getUtf8Sb());
}

bool DataBuffer::appendEncoded(const char* text, const char* encoding) {
  LogNull log;
  StringBuffer sb;
  if (!sb.append(text)) return false;
  return _clsEncode::decodeBinary(_clsEncode::parseEncodingName(encoding), sb, *this, true, log);
}

void DataBuffer::replaceChar(unsigned char from, unsigned char to) {
  std::replace(m_data, m_data + m_size, from, to);
}

void DataBuffer::byteSwap21() {
  for (std::uint32_t i = 0; i + 1 < m_size; i += 2) std::swap(m_data[i], m_data[i + 1]);
}

void DataBuffer::byteSwap4321() {
  for (std::uint32_t i = 0; i + 3 < m_size; i += 4) std::reverse(m_data + i, m_data + i + 4);
}

bool DataBuffer::loadFileUtf8(const char* path, LogBase* log) {
  clear();
  const File file = openFile(path, "rb", log, "Failed to open for read.");
  if (file == nullptr) return false;
  std::array<unsigned char, 16384> piece;
  for (;;) {
    const std::size_t n = std::fread(piece.data(), 1, piece.size(), file.get());
    if (!append(piece.data(), n)) return false;
    if (n < piece.size()) break;
  }
  const bool whole = std::ferror(file.get()) == 0;
  if (!whole && log != nullptr) log->LogError("Failed to read the whole file.");
  return whole;
}

bool DataBuffer::saveToFileUtf8(const char* path, LogBase* log) const {
  const File file = openFile(path, "wb", log, "Failed to open for write.");
  if (file == nullptr) return false;
  const bool written = std::fwrite(m_data, 1, m_size, file.get()) == m_size;
  return std::fflush(file.get()) == 0 && written;
}
