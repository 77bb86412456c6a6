// Handles and cursors under any sequence of their operations, with documents of any bytes.

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "CkString.h"
#include "CkXml.h"
#include "ClsXml.h"
#include "MemoryWatch.h"
#include "StringBuffer.h"
#include "TreeNode.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

/// A file in memory that a path leads to.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& content) : file_(::memfd_create("document", MFD_CLOEXEC)) {
    check(file_ >= 0 &&
          ::write(file_, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
  }
  ~MemoryFile() { ::close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

struct Release {
  void operator()(ClsXml* xml) const { xml->deleteSelf(); }
};
using Cursor = std::unique_ptr<ClsXml, Release>;

/// Names that documents are likely to hold.
constexpr std::array kNames = {"a", "b", "*:a", " a\t", "SCALES0", "fNum", "", "x|y"};

/// Longer sequences find nothing new and take their time.
constexpr int kMostOperations = 300;

std::string name(FuzzedDataProvider& input) {
  return input.ConsumeBool() ? input.PickValueInArray(kNames) : input.ConsumeRandomLengthString(20);
}

/// As a cursor reads a name, up to its first NUL byte.
std::string trimmed(const std::string& text) {
  constexpr const char* kBlanks = " \t\r\n";
  const std::string whole = text.c_str();
  const std::size_t from = whole.find_first_not_of(kBlanks);
  return from == std::string::npos ? ""
                                   : whole.substr(from, whole.find_last_not_of(kBlanks) + 1 - from);
}

void useHandle(CkXml& xml, FuzzedDataProvider& input) {
  const int operation = input.ConsumeIntegralInRange(0, 6);
  const std::string content =
      operation == 0 ? input.ConsumeRandomLengthString(2000) : std::string();
  const std::string wanted = name(input);
  const bool on = input.ConsumeBool();
  const MemoryFile file(content);
  const std::string path = file.path();
  const int allocations = input.ConsumeBool() ? input.ConsumeIntegralInRange(0, 40) : -1;
  const fixture::MemoryShortage shortage(allocations);
  const bool isMemoryShort = allocations >= 0;
  CkString value;
  switch (operation) {
    case 0: {
      const bool loaded = xml.LoadXmlFile(path.c_str());
      check(isMemoryShort || loaded == !content.empty());
      break;
    }
    case 1:
      xml.GetRoot2();
      check(xml.get_LastMethodSuccess());
      break;
    case 2: check(xml.FindChild2(wanted.c_str()) == xml.get_LastMethodSuccess()); break;
    case 3: {
      const bool found = xml.GetAttrValue(wanted.c_str(), value);
      check(found || isMemoryShort ||
            (value.getNumChars() == 0 && xml.GetAttrValueInt(wanted.c_str()) == 0));
      break;
    }
    case 4:
      check((xml.lastErrorText() != nullptr && xml.lastErrorXml() != nullptr) || isMemoryShort);
      break;
    case 5: xml.put_Utf8(on); break;
    default: xml.put_VerboseLogging(on); break;
  }
}

void useCursors(std::array<Cursor, 3>& cursors, FuzzedDataProvider& input) {
  Cursor& cursor = cursors[input.ConsumeIntegralInRange<std::size_t>(0, cursors.size() - 1)];
  if (cursor == nullptr) cursor.reset(ClsXml::createNewCls());
  StringBuffer value;
  LogNull log;
  switch (input.ConsumeIntegralInRange(0, 5)) {
    case 0: {
      const MemoryFile file(input.ConsumeRandomLengthString(2000));
      cursor->loadXmlFile(file.path().c_str(), input.ConsumeBool(), log);
      break;
    }
    case 1: cursor->GetRoot2(); break;
    case 2: {
      const std::string tag = name(input);
      const TreeNode* const before = cursor->getTree();
      const TreeNode* const child = before->getChild(trimmed(tag).c_str(), nullptr);
      // A search needs no memory.
      const fixture::MemoryShortage shortage(input.ConsumeIntegralInRange(-1, 4));
      check(cursor->findChild2(tag.c_str()) == (child != nullptr));
      check(cursor->getTree() == (child == nullptr ? before : child));
      break;
    }
    case 3: {
      const std::string attribute = name(input);
      const fixture::MemoryShortage shortage(input.ConsumeIntegralInRange(-1, 4));
      check(cursor->getAttrValue(attribute.c_str(), value) || value.empty());
      break;
    }
    case 4: cursor.reset(); break;
    default: {
      Cursor copy(new ClsXml(*cursor));
      cursors[input.ConsumeIntegralInRange<std::size_t>(0, cursors.size() - 1)].swap(copy);
      break;
    }
  }
  // Each cursor that stands on a tree is counted there once.
  for (const Cursor& each : cursors) {
    if (each == nullptr) continue;
    int onThisTree = 0;
    for (const Cursor& other : cursors) {
      onThisTree += other != nullptr && other->getTree()->getRoot() == each->getTree()->getRoot();
    }
    check(each->getTree()->getTreeRefCount() == onThisTree);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  CkXml xml;
  std::array<Cursor, 3> cursors;
  for (int i = 0; i < kMostOperations && input.remaining_bytes() > 0; ++i) {
    if (input.ConsumeBool()) {
      useHandle(xml, input);
    } else {
      useCursors(cursors, input);
    }
  }
  return 0;
}
