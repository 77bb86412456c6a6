#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "LogEntry2.h"

/// One of the three renderings: what begins a context, what ends it, and what any other entry is.
struct LogEntry2::Form {
  using Piece = void (*)(const LogEntry2& entry, std::size_t depth, std::string& out);
  Piece opening;
  Piece line;
  Piece closing;
};

bool LogEntry2::render(const Form& form, std::size_t depth, StringBuffer& out) const {
  struct Open {
    const LogEntry2* context;
    int next;
  };
  try {
    std::string text;
    // Not by recursion: contexts may lie in one another as deep as memory goes.
    std::vector<Open> open;
    const auto take = [&](const LogEntry2& entry) {
      const auto piece = entry.isContext() ? form.opening : form.line;
      piece(entry, depth + open.size(), text);
      if (entry.isContext()) open.push_back({&entry, 0});
    };
    take(*this);
    while (!open.empty()) {
      const auto [context, next] = open.back();
      if (next < context->numChildren()) {
        ++open.back().next;
        if (const LogEntry2* const entry = context->child(next)) take(*entry);
      } else {
        open.pop_back();
        form.closing(*context, depth + open.size(), text);
      }
    }
    return out.append(text);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

namespace {

constexpr std::size_t kSpacesPerLevel = 2;

void indent(std::string& out, std::size_t depth) { out.append(depth * kSpacesPerLevel, ' '); }

std::string_view viewOf(const std::unique_ptr<StringBuffer>& text) {
  return text ? text->view() : std::string_view();
}

void appendHtml(std::string& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&': out.append("&amp;"); break;
      case '<': out.append("&lt;"); break;
      case '>': out.append("&gt;"); break;
      case '"': out.append("&quot;"); break;
      default: out.push_back(c);
    }
  }
}

bool needsCData(std::string_view value) {
  const bool wrapped = value.find("<![CDATA[") != value.npos && value.find("]]>") != value.npos;
  return !wrapped && value.find_first_of("\n\t&><") != value.npos;
}

void appendElement(std::string& out, std::string_view tag, std::string_view value) {
  const bool cdata = needsCData(value);
  out.append("<").append(tag).append(cdata ? "><![CDATA[" : ">").append(value);
  out.append(cdata ? "]]></" : "</").append(tag).append(">\r\n");
}

void appendTime(std::string& out, std::string_view before, std::uint32_t ms,
                std::string_view behind) {
  if (ms != 0) out.append(before).append(std::to_string(ms)).append(behind);
}

}  // namespace

bool LogEntry2::GetText(StringBuffer& out, int depth) const {
  static constexpr Form kText = {
      [](const LogEntry2& context, std::size_t level, std::string& text) {
        indent(text, level);
        text.append(viewOf(context.m_tag));
        appendTime(text, "(", context.m_elapsedValid ? context.m_elapsed : 0, "ms)");
        text.append(":\r\n");
      },
      [](const LogEntry2& entry, std::size_t level, std::string& text) {
        indent(text, level);
        if (entry.m_tag) text.append(viewOf(entry.m_tag)).append(": ");
        text.append(viewOf(entry.m_value)).append("\r\n");
      },
      [](const LogEntry2& context, std::size_t level, std::string& text) {
        indent(text, level);
        text.append("--").append(viewOf(context.m_tag)).append("\r\n");
      }};
  return render(kText, static_cast<std::size_t>(depth), out);
}

// Here and in GetXml() a context that is still open shows its start tick.
bool LogEntry2::GetHtml(StringBuffer& out) const {
  static constexpr Form kHtml = {
      [](const LogEntry2& context, std::size_t, std::string& text) {
        text.append(viewOf(context.m_tag));
        appendTime(text, "(", context.m_elapsed, "ms)");
        text.append(":<blockquote>\r\n");
      },
      [](const LogEntry2& entry, std::size_t, std::string& text) {
        appendHtml(text, viewOf(entry.m_tag));
        if (entry.m_tag) text.append(": ");
        appendHtml(text, viewOf(entry.m_value));
        text.append("<br>\r\n");
      },
      [](const LogEntry2&, std::size_t, std::string& text) { text.append("</blockquote>\r\n"); }};
  return render(kHtml, 0, out);
}

bool LogEntry2::GetXml(StringBuffer& out, int depth) const {
  static constexpr Form kXml = {[](const LogEntry2& context, std::size_t level, std::string& text) {
                                  indent(text, level);
                                  text.append("<").append(viewOf(context.m_tag));
                                  appendTime(text, " ms=\"", context.m_elapsed, "\"");
                                  text.append(">\r\n");
                                },
                                [](const LogEntry2& entry, std::size_t level, std::string& text) {
                                  indent(text, level);
                                  const std::string_view value = viewOf(entry.m_value);
                                  switch (entry.m_kind) {
                                    case 'E': appendElement(text, "error", value); break;
                                    case 'I': appendElement(text, "info", value); break;
                                    case 'X': text.append(value).append("\r\n"); break;
                                    default: appendElement(text, viewOf(entry.m_tag), value); break;
                                  }
                                },
                                [](const LogEntry2& context, std::size_t level, std::string& text) {
                                  indent(text, level);
                                  text.append("</").append(viewOf(context.m_tag)).append(">\r\n");
                                }};
  return render(kXml, static_cast<std::size_t>(depth), out);
}
