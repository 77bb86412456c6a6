#include <string_view>

#include "LogEntry2.h"

namespace {

constexpr int kSpacesPerLevel = 2;

void indent(StringBuffer& out, int depth) {
  out.appendCharN(' ', static_cast<std::uint32_t>(depth * kSpacesPerLevel));
}

void appendHtml(StringBuffer& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&': out.append("&amp;"); break;
      case '<': out.append("&lt;"); break;
      case '>': out.append("&gt;"); break;
      case '"': out.append("&quot;"); break;
      default: out.appendChar(c);
    }
  }
}

bool needsCData(const StringBuffer& value) {
  const std::string_view text = value.view();
  const bool wrapped = text.find("<![CDATA[") != text.npos && text.find("]]>") != text.npos;
  return !wrapped && text.find_first_of("\n\t&><") != text.npos;
}

void appendElement(StringBuffer& out, const char* tag, const StringBuffer& value) {
  const bool cdata = needsCData(value);
  out.append("<");
  out.append(tag);
  out.append(cdata ? "><![CDATA[" : ">");
  out.append(value);
  out.append(cdata ? "]]></" : "</");
  out.append(tag);
  out.append(">\r\n");
}

}  // namespace

void LogEntry2::GetText(StringBuffer& out, int depth) const {
  indent(out, depth);
  if (m_tag) out.append(*m_tag);
  if (!isContext()) {
    if (m_tag) out.append(": ");
    out.append(*m_value);
    out.append("\r\n");
    return;
  }
  if (m_elapsed != 0 && m_elapsedValid) {
    out.append("(");
    out.append(m_elapsed);
    out.append("ms)");
  }
  out.append(":\r\n");
  for (int i = 0; i < numChildren(); ++i) {
    if (const LogEntry2* entry = child(i)) entry->GetText(out, depth + 1);
  }
  indent(out, depth);
  out.append("--");
  out.append(*m_tag);
  out.append("\r\n");
}

// Here and in GetXml() a context that is still open shows its start tick.
void LogEntry2::GetHtml(StringBuffer& out) const {
  if (!isContext()) {
    if (m_tag) {
      appendHtml(out, m_tag->view());
      out.append(": ");
    }
    appendHtml(out, m_value->view());
    out.append("<br>\r\n");
    return;
  }
  out.append(*m_tag);
  if (m_elapsed != 0) {
    out.append("(");
    out.append(m_elapsed);
    out.append("ms)");
  }
  out.append(":<blockquote>\r\n");
  for (int i = 0; i < numChildren(); ++i) {
    if (const LogEntry2* entry = child(i)) entry->GetHtml(out);
  }
  out.append("</blockquote>\r\n");
}

void LogEntry2::GetXml(StringBuffer& out, int depth) const {
  indent(out, depth);
  switch (m_kind) {
    case 'E': appendElement(out, "error", *m_value); return;
    case 'I': appendElement(out, "info", *m_value); return;
    case 'X':
      out.append(*m_value);
      out.append("\r\n");
      return;
    case 'T': appendElement(out, m_tag->getString(), *m_value); return;
    default: break;
  }
  out.append("<");
  out.append(*m_tag);
  if (m_elapsed != 0) {
    out.append(" ms=\"");
    out.append(m_elapsed);
    out.append("\"");
  }
  out.append(">\r\n");
  for (int i = 0; i < numChildren(); ++i) {
    if (const LogEntry2* entry = child(i)) entry->GetXml(out, depth + 1);
  }
  indent(out, depth);
  out.append("</");
  out.append(*m_tag);
  out.append(">\r\n");
}
