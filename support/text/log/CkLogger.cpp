#include "CkLogger.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

#include "AsciiText.h"
#include "Cancellation.h"
#include "TickCount.h"

namespace {

constexpr std::uint64_t kSpacesPerLevel = 4;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// What a log is written to. A pipe that nobody reads from or that is full holds nobody up, and
/// one whose reader goes meanwhile kills nobody: it has a second one here.
class LogFile {
 public:
  LogFile(const char* path, int flags) {
    constexpr int kForAnyPath = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int descriptor = ::open(path, O_WRONLY | O_CREAT | flags | kForAnyPath, 0666);
    if (descriptor < 0) return;
    m_file.reset(::fdopen(descriptor, "wb"));
    if (!m_file) {
      ::close(descriptor);
      return;
    }
    struct stat info = {};
    if (::fstat(descriptor, &info) != 0 || !S_ISFIFO(info.st_mode)) return;
    const int reader = ::open(path, O_RDONLY | kForAnyPath);
    if (reader >= 0) m_reader.reset(::fdopen(reader, "rb"));
    if (m_reader) return;
    if (reader >= 0) ::close(reader);
    m_file.reset();
  }

  std::FILE* get() const { return m_file.get(); }
  /// True if everything has been written.
  bool close() { return std::fclose(m_file.release()) == 0; }

 private:
  CancellationHeld m_toTheEnd;  ///< closing may be where a thread ends, and a destructor may not
  File m_reader;
  File m_file;
};

/// Tick 0 is how an untimed context is told from a timed one.
constexpr std::uint32_t kUntimed = 0;

std::uint32_t startTick() {
  const std::uint32_t now = ckTickCount();
  return now == kUntimed ? kUntimed + 1 : now;
}

bool addToTree(_ckErrorLog& tree, const LogDraft::Line& line) {
  using Kind = LogDraft::Kind;
  if (line.kind == Kind::Enter) return tree.enter(line.tag, kUntimed);
  if (line.kind == Kind::Leave) {
    tree.leave(false, kUntimed);
    return true;
  }
  std::unique_ptr<LogEntry2> entry(new (std::nothrow) LogEntry2);
  if (!entry) return false;
  bool set = false;
  switch (line.kind) {
    case Kind::Error: set = entry->SetError(line.text); break;
    case Kind::Info: set = entry->SetInfo(line.text); break;
    case Kind::Xml: set = entry->SetXml(line.text); break;
    default: set = entry->SetMessage(line.tag, line.text); break;
  }
  return set && tree.append(std::move(entry));
}

}  // namespace

_ckLogger::_ckLogger() { m_rootName.setFromUtf8("KestrumLog"); }

_ckLogger::~_ckLogger() = default;

// All of the draft or nothing: while memory is short the draft stays, for a later try.
bool _ckLogger::ensureErrLog() {
  if (m_tree) return true;
  try {
    auto tree = std::make_unique<_ckErrorLog>(m_rootName.getUtf8());
    if (!m_draft.allTaken([&](const LogDraft::Line& line) { return addToTree(*tree, line); })) {
      return false;
    }
    m_tree = std::move(tree);
  } catch (const std::bad_alloc&) {
    return false;
  }
  m_draft.clear();
  return true;
}

// Opened anew for each line: whoever reads the file after a crash finds the last one too.
void _ckLogger::debugLine(Indent indent, std::initializer_list<const char*> parts) {
  if (!m_debugPath) return;
  const LogFile file(m_debugPath->getUtf8(), O_APPEND);
  if (file.get() == nullptr) return;
  const std::uint64_t spaces = indent == Indent::ByDepth ? m_depth * kSpacesPerLevel : 0;
  constexpr std::uint64_t kWidest = std::numeric_limits<int>::max();
  std::fprintf(file.get(), "%*s", static_cast<int>(std::min(spaces, kWidest)), "");
  for (const char* part : parts) std::fputs(part == nullptr ? "" : part, file.get());
}

bool _ckLogger::add(const LogDraft::Line& line) {
  if (!m_tree && m_draft.add(line)) return true;
  return ensureErrLog() && addToTree(*m_tree, line);
}

bool _ckLogger::LogError(const char* message) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  debugLine(Indent::ByDepth, {message, "\n"});
  return add({LogDraft::Kind::Error, nullptr, message});
}

bool _ckLogger::LogInfo(const char* message) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  debugLine(Indent::ByDepth, {message, "\n"});
  return add({LogDraft::Kind::Info, nullptr, message});
}

bool _ckLogger::LogXml(const char* xml) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  return add({LogDraft::Kind::Xml, nullptr, xml});
}

bool _ckLogger::LogData(const char* tag, const char* value) {
  if (m_nullLogging) return true;
  if (tag == nullptr) return false;
  StringBuffer mended;
  const std::string_view given = tag;
  if (std::any_of(given.begin(), given.end(), isAsciiSpace)) {
    mended.append(tag);
    mended.trim2();
    mended.replaceCharAnsi(' ', '_');
    tag = mended.getString();
  }
  if (*tag == 0) return false;
  if (value == nullptr) value = "(NULL)";

  const CritSecExitor lock(this);
  debugLine(Indent::ByDepth, {tag, ": ", value, "\r\n"});
  return add({LogDraft::Kind::Data, tag, value});
}

void _ckLogger::ClearLog() {
  const CritSecExitor lock(this);
  m_depth = 0;
  m_draft.clear();
  m_tree.reset();
}

bool _ckLogger::EnterContext(const char* name, bool /*timed*/) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  debugLine(Indent::ByDepth, {name, ":\n"});
  if (m_depth < std::numeric_limits<std::uint32_t>::max()) ++m_depth;
  // What measures time is meant to be read: straight into the tree.
  if (m_verbose) return ensureErrLog() && m_tree->enter(name, startTick());
  return add({LogDraft::Kind::Enter, name, nullptr});
}

bool _ckLogger::LeaveContext() {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  _ckErrorLog::Left left = {false, 0};
  if (m_tree || (m_verbose && ensureErrLog())) {
    left = m_tree->leave(m_verbose, m_verbose ? ckTickCount() : kUntimed);
  } else {
    m_draft.leave();
  }
  if (left.isTimed) {
    StringBuffer elapsed;
    elapsed.append(left.elapsed_ms);
    debugLine(Indent::ByDepth, {"(leaveContext ", elapsed.getString(), "ms)\n"});
  } else {
    debugLine(Indent::ByDepth, {"(leaveContext)\n"});
  }
  if (m_depth > 0) --m_depth;
  return true;
}

bool _ckLogger::DbgLogInfo(const char* message) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  debugLine(Indent::None, {message, "\n"});
  return true;
}

bool _ckLogger::DbgLogData(const char* tag, const char* value) {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  debugLine(Indent::None, {tag, ": ", value, "\n"});
  return true;
}

bool _ckLogger::DbgLogInt(const char* tag, int value) {
  StringBuffer digits;
  digits.append(value);
  return DbgLogData(tag, digits.getString());
}

bool _ckLogger::getText(StringBuffer& out) {
  const CritSecExitor lock(this);
  out.weakClear();
  return ensureErrLog() && m_tree->root().GetText(out, 0) && out.toLF();
}

bool _ckLogger::getHtml(StringBuffer& out) {
  const CritSecExitor lock(this);
  out.weakClear();
  return ensureErrLog() && m_tree->root().GetHtml(out);
}

bool _ckLogger::getXml(StringBuffer& out) {
  const CritSecExitor lock(this);
  out.weakClear();
  return ensureErrLog() && m_tree->root().GetXml(out, 0);
}

bool _ckLogger::SaveXML(bool append, const char* path) {
  if (path == nullptr || *path == 0) return false;
  StringBuffer xml;
  if (!getXml(xml)) return false;
  LogFile file(path, append ? O_APPEND : O_TRUNC);
  if (file.get() == nullptr) return false;
  const bool written = std::fwrite(xml.getString(), 1, xml.getSize(), file.get()) == xml.getSize();
  return file.close() && written;
}

void _ckLogger::get_DebugLogFilePath(XString& path) {
  const CritSecExitor lock(this);
  path.clear();
  if (m_debugPath) path.copyFromX(*m_debugPath);
}

void _ckLogger::put_DebugLogFilePath(XString& path) {
  const CritSecExitor lock(this);
  m_debugPath.reset();
  if (path.isEmpty()) return;
  m_debugPath = path.cloneX();
}
