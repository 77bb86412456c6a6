// What a DataBuffer knows about the text in its bytes, and about files.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>

#include "Cancellation.h"
#include "ClsEncode.h"
#include "CodePages.h"
#include "ContentCoding.h"
#include "DataBuffer.h"
#include "LogBase.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

/// So many NUL bytes on one side of the byte pairs settle the matter, however long the text.
constexpr std::size_t kEnoughNulBytes = 32;

// Closing may be where a thread is cancelled, and a destructor may not.
struct CloseFile {
  void operator()(std::FILE* file) const {
    const CancellationHeld held;
    std::fclose(file);
  }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Reads up to `n` bytes; fewer at the end of the file or when reading fails.
std::size_t readAll(int file, unsigned char* to, std::size_t n) {
  std::size_t got = 0;
  while (got < n) {
    const ssize_t piece = ::read(file, to + got, n - got);
    if (piece < 0 && errno == EINTR) continue;
    if (piece <= 0) break;
    got += static_cast<std::size_t>(piece);
  }
  return got;
}

class Descriptor {
 public:
  explicit Descriptor(int file) : m_file(file) {}
  ~Descriptor() {
    const CancellationHeld held;
    if (m_file >= 0) ::close(m_file);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_file; }

 private:
  const int m_file;
};

}  // namespace

int DataBuffer::detectObviousCodePage() const {
  const std::string_view bytes(reinterpret_cast<const char*>(m_data), m_size);
  if (bytes.empty()) return -1;
  for (const code_page::Bom& bom : code_page::kBoms) {
    if (bytes.starts_with(bom.bytes)) return bom.codePage;
  }

  const std::size_t share = bytes.size() > 7 ? bytes.size() / 8 : 1;
  const auto manyNulBytes = [&](std::size_t firstIndex) {
    std::size_t count = 0;
    for (std::size_t i = firstIndex; i < bytes.size(); i += 2) {
      if (bytes[i] == 0 && ++count > kEnoughNulBytes) return true;
    }
    return count >= share;
  };
  if (manyNulBytes(1)) return code_page::kUtf16Le;
  if (manyNulBytes(0)) return code_page::kUtf16Be;
  return -1;
}

void DataBuffer::toHexString(StringBuffer& out) const { toHexString2(out, false); }

void DataBuffer::toHexString2(StringBuffer& out, bool colons) const {
  ContentCoding::encodeHex(m_data, m_size, colons ? HexStyle::UpperColons : HexStyle::Upper, out);
}

bool DataBuffer::encodeDB(const char* encoding, StringBuffer& out) const {
  LogNull log;
  _clsEncode coder;
  coder.put_EncodingMode(encoding);
  XString text;
  text.setSecureX(m_secure || out.getSecureBuf());
  return coder.encodeBinary(*this, text, false, log) && out.append(text.getUtf8Sb());
}

bool DataBuffer::appendEncoded(const char* text, const char* encoding) {
  LogNull log;
  StringBuffer sb;
  sb.setSecureBuf(m_secure);
  if (!sb.append(text)) return false;
  return _clsEncode::decodeBinary(_clsEncode::parseEncodingName(encoding), sb, *this, true, log);
}

void DataBuffer::replaceChar(unsigned char from, unsigned char to) {
  if (!isAlive()) return;
  std::replace(m_data, m_data + m_size, from, to);
}

void DataBuffer::byteSwap21() {
  if (!isAlive()) return;
  for (std::uint32_t i = 0; i + 1 < m_size; i += 2) std::swap(m_data[i], m_data[i + 1]);
}

void DataBuffer::byteSwap4321() {
  if (!isAlive()) return;
  for (std::uint32_t i = 0; i + 3 < m_size; i += 4) std::reverse(m_data + i, m_data + i + 4);
}

bool DataBuffer::loadFileUtf8(const char* path, LogBase* log) {
  const auto fails = [log](const char* complaint) {
    if (log != nullptr) log->LogError(complaint);
    return false;
  };
  if (!isAlive()) return false;
  // A pipe in the file's place must not make this wait for its writer.
  const Descriptor file(path == nullptr ? -1 : ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.get() < 0) return fails("Failed to open for read.");
  // What is open is asked, not the path, which may lead to another file by now. Only what has a
  // size: a device may never end.
  struct stat info = {};
  if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return fails("Failed to get the file size.");
  }
  const auto size = static_cast<std::uint64_t>(info.st_size);
  if (ck64_TooBigForUnsigned32(size + 1)) return fails("The file is too big.");
  DataBuffer content;
  content.setSecure(m_secure);
  // One more than there should be, to see whether the file has grown meanwhile.
  if (!content.ensureBuffer(static_cast<std::uint32_t>(size + 1))) {
    return fails("Failed to allocate memory.");
  }
  if (readAll(file.get(), content.m_data, size + 1) != size) {
    return fails("Failed to read the whole file.");
  }
  content.m_size = static_cast<std::uint32_t>(size);
  takeData(content);
  return true;
}

bool DataBuffer::saveToFileUtf8(const char* path, LogBase* log) const {
  const File file(path == nullptr ? nullptr : std::fopen(path, "wb"));
  if (file == nullptr) {
    if (log != nullptr) log->LogError("Failed to open for write.");
    return false;
  }
  const bool written = std::fwrite(m_data, 1, m_size, file.get()) == m_size;
  return std::fflush(file.get()) == 0 && written;
}
