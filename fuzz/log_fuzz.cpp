// The log under contexts and messages in any order, as no caller would make them: leaves without
// enters, switches never set back, any bytes as tags and values, and memory that runs short.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "CkLogger.h"
#include "MemoryWatch.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

constexpr int kLongestText = 200;

void check(bool holds) {
  if (!holds) std::abort();
}

/// Two loggers get the same, and one of them is read on the way: lines become a tree when somebody
/// reads, or when there are many, and nobody shall see a difference.
class Session {
 public:
  explicit Session(FuzzedDataProvider& input)
      : input_(input), isMemoryShort_(input.ConsumeBool()) {}

  void run() {
    while (input_.remaining_bytes() > 0) step();
    for (_ckLogger* log : {&read_, &unread_}) {
      while (log->m_nullLogging) log->popNullLogging();
    }
    render(read_);
    // Where memory was short, each has lost what it has lost; times are each one's own.
    if (!isMemoryShort_ && !wasVerbose_) {
      StringBuffer text;
      StringBuffer other;
      check(read_.getXml(text) && unread_.getXml(other) && text.view() == other.view());
    }
    // Whatever came before, an empty log is its root.
    read_.ClearLog();
    StringBuffer text;
    read_.getText(text);
    check(text.view() == "KestrumLog:\n--KestrumLog\n");
  }

 private:
  std::string text() { return input_.ConsumeRandomLengthString(kLongestText); }

  /// Does it to both, with memory for a few requests only where that is what is tried.
  template <typename Operation>
  void both(Operation operation) {
    const int allocations = isMemoryShort_ ? input_.ConsumeIntegralInRange(-1, 6) : -1;
    for (_ckLogger* log : {&read_, &unread_}) {
      const fixture::MemoryShortage shortage(allocations);
      operation(*log);
    }
  }

  void step() {
    enum Step { Enter, EnterMany, Leave, Line, Xml, Data, Number, Cut, Switch, Render, Clear };
    const auto kind = input_.ConsumeIntegralInRange<int>(Enter, Clear);
    const std::string tag = text();
    const std::string value = text();
    const bool isNull = input_.ConsumeBool();
    const char* const given = isNull ? nullptr : value.c_str();
    const auto number = input_.ConsumeIntegral<std::int64_t>();
    const int times = input_.ConsumeIntegralInRange(0, 40);
    switch (kind) {
      case Enter: both([&](_ckLogger& log) { log.EnterContext(tag.c_str(), isNull); }); break;
      case EnterMany:
        for (int n = times; n > 0; --n) both([](_ckLogger& log) { log.EnterContext("c", true); });
        break;
      case Leave:
        for (int n = times; n > 0; --n) both([](_ckLogger& log) { log.LeaveContext(); });
        break;
      case Line: both([&](_ckLogger& log) { log.LogError(given); }); break;
      case Xml: both([&](_ckLogger& log) { log.LogXml(given); }); break;
      case Data: both([&](_ckLogger& log) { log.LogData(tag.c_str(), given); }); break;
      case Number:
        both([&](_ckLogger& log) {
          log.LogDataInt64(tag.c_str(), number);
          log.LogHex("h", static_cast<std::uint32_t>(number));
        });
        if (isMemoryShort_) read_.LogElapsedMs("e", static_cast<std::uint32_t>(number));
        break;
      case Cut: {
        XString whole;
        whole.setFromUtf8(value.c_str());
        both([&](_ckLogger& log) {
          log.LogStringMax("cut", whole, static_cast<std::uint32_t>(times));
        });
        break;
      }
      case Switch: turnSwitch(); break;
      case Render: render(read_); break;
      case Clear: both([](_ckLogger& log) { log.ClearLog(); }); break;
    }
  }

  void turnSwitch() {
    const int which = input_.ConsumeIntegralInRange(0, 3);
    const bool on = input_.ConsumeBool();
    wasVerbose_ |= which == 2 && on;
    both([=](_ckLogger& log) {
      switch (which) {
        case 0: log.pushNullLogging(on); break;
        case 1: log.popNullLogging(); break;
        case 2: log.pushVerboseLogging(on); break;
        default: log.popVerboseLogging();
      }
    });
  }

  void render(_ckLogger& log) {
    const int allocations = isMemoryShort_ ? input_.ConsumeIntegralInRange(-1, 20) : -1;
    struct Rendering {
      bool (_ckLogger::*render)(StringBuffer&);
      std::string_view end;
    };
    for (const auto& [render, end] : {Rendering{&_ckLogger::getText, "--KestrumLog\n"},
                                      Rendering{&_ckLogger::getHtml, "</blockquote>\r\n"},
                                      Rendering{&_ckLogger::getXml, "</KestrumLog>\r\n"}}) {
      StringBuffer out;
      const fixture::MemoryShortage shortage(allocations);
      const bool rendered = (log.*render)(out);
      // All of it or nothing.
      check(rendered ? out.view().ends_with(end) : allocations >= 0 && out.empty());
    }
  }

  FuzzedDataProvider& input_;
  const bool isMemoryShort_;
  bool wasVerbose_ = false;
  _ckLogger read_;
  _ckLogger unread_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Session(input).run();
  return 0;
}
