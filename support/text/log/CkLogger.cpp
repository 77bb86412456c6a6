#include "CkLogger.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "AsciiText.h"
#include "TickCount.h"

namespace {

constexpr int kSpacesPerLevel = 4;
// Contexts that were entered but never left shall not blow up the file.
constexpr int kDeepestIndent = 100;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Tick 0 is how an untimed context is told from a timed one.
constexpr std::uint32_t kUntimed = 0;

std::uint32_t startTick() {
  const std::uint32_t now = ckTickCount();
  return now == kUntimed ? kUntimed + 1 : now;
}

}  // namespace

_ckLogger::_ckLogger() { m_rootName.setFromUtf8("KestrumLog"); }

_ckLogger::~_ckLogger() = default;

bool _ckLogger::ensureErrLog() {
  if (m_tree) return true;
  try {
    m_tree = std::make_unique<_ckErrorLog>(m_rootName.getUtf8());
  } catch (...) {
    return false;  // no memory, no log
  }
  m_draft.handOver([this](const LogDraft::Line& line) { addToTree(line); });
  return true;
}

// Opened anew for each line: whoever reads the file after a crash finds the last one too.
void _ckLogger::debugLine(Indent indent, std::initializer_list<const char*> parts) {
  if (!m_debugPath) return;
  const File file(std::fopen(m_debugPath->getUtf8(), "abe"));
  if (!file) return;
  const int spaces = indent == Indent::ByDepth ? std::min(m_depth, kDeepestIndent) : 0;
  std::fprintf(file.get(), "%*s", spaces * kSpacesPerLevel, "");
  for (const char* part : parts) std::fputs(part == nullptr ? "" : part, file.get());
}

bool _ckLogger::add(const LogDraft::Line& line) {
  if (!m_tree && m_draft.add(line)) return true;
  return ensureErrLog() && addToTree(line);
}

bool _ckLogger::addToTree(const LogDraft::Line& line) {
  using Kind = LogDraft::Kind;
  if (line.kind == Kind::Enter) return m_tree->enter(line.tag, kUntimed);
  if (line.kind == Kind::Leave) {
    m_tree->leave(false, kUntimed);
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
  return set && m_tree->append(std::move(entry));
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
  ++m_depth;
  // What measures time is meant to be read: straight into the tree.
  if (m_verbose) return ensureErrLog() && m_tree->enter(name, startTick());
  return add({LogDraft::Kind::Enter, name, nullptr});
}

bool _ckLogger::LeaveContext() {
  if (m_nullLogging) return true;
  const CritSecExitor lock(this);
  _ckErrorLog::Left left = {false, 0};
  if (!m_verbose) {
    if (!add({LogDraft::Kind::Leave, nullptr, nullptr})) return false;
  } else {
    if (!ensureErrLog()) return false;
    left = m_tree->leave(true, ckTickCount());
  }
  if (left.isTimed) {
    debugLine(Indent::ByDepth,
              {"(leaveContext ", std::to_string(left.elapsed_ms).c_str(), "ms)\n"});
  } else {
    debugLine(Indent::ByDepth, {"(leaveContext)\n"});
  }
  m_depth = std::max(m_depth - 1, 0);
  return true;
}

bool _ckLogger::DbgLogInfo(const char* message) {
  const CritSecExitor lock(this);
  debugLine(Indent::None, {message, "\n"});
  return true;
}

bool _ckLogger::DbgLogData(const char* tag, const char* value) {
  const CritSecExitor lock(this);
  debugLine(Indent::None, {tag, ": ", value, "\n"});
  return true;
}

bool _ckLogger::DbgLogInt(const char* tag, int value) {
  return DbgLogData(tag, std::to_string(value).c_str());
}

bool _ckLogger::render(void (*how)(const LogEntry2&, StringBuffer&), StringBuffer& out) {
  const CritSecExitor lock(this);
  out.weakClear();
  if (!ensureErrLog()) return false;
  how(m_tree->root(), out);
  return true;
}

bool _ckLogger::getText(StringBuffer& out) {
  return render([](const LogEntry2& root, StringBuffer& to) { root.GetText(to, 0); }, out) &&
         out.toLF();
}

bool _ckLogger::getHtml(StringBuffer& out) {
  return render([](const LogEntry2& root, StringBuffer& to) { root.GetHtml(to); }, out);
}

bool _ckLogger::getXml(StringBuffer& out) {
  return render([](const LogEntry2& root, StringBuffer& to) { root.GetXml(to, 0); }, out);
}

bool _ckLogger::SaveXML(bool append, const char* path) {
  if (path == nullptr || *path == 0) return false;
  StringBuffer xml;
  if (!getXml(xml)) return false;
  File file(std::fopen(path, append ? "abe" : "wbe"));
  if (!file) return false;
  const bool written = std::fwrite(xml.getString(), 1, xml.getSize(), file.get()) == xml.getSize();
  return std::fclose(file.release()) == 0 && written;
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
