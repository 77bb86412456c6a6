// The log under contexts and messages in any order, as no caller would make them: leaves without
// enters, switches never set back, any bytes as tags and values.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "CkLogger.h"
#include "StringBuffer.h"
#include "XString.h"

namespace {

constexpr int kLongestText = 200;

void check(bool holds) {
  if (!holds) std::abort();
}

class Session {
 public:
  explicit Session(FuzzedDataProvider& input) : input_(input) {}

  void run() {
    while (input_.remaining_bytes() > 0) step();
    while (log_.m_nullLogging) log_.popNullLogging();
    render();
    // Whatever came before, an empty log is its root.
    log_.ClearLog();
    StringBuffer text;
    log_.getText(text);
    check(text.view() == "KestrumLog:\n--KestrumLog\n");
  }

 private:
  std::string text() { return input_.ConsumeRandomLengthString(kLongestText); }

  void step() {
    enum Step {
      Enter,
      EnterMany,
      Leave,
      Line,
      Lines,
      Xml,
      Data,
      Number,
      Cut,
      Switch,
      Render,
      Clear
    };
    switch (input_.ConsumeIntegralInRange<int>(Enter, Clear)) {
      case Enter: log_.EnterContext(text().c_str(), input_.ConsumeBool()); break;
      case EnterMany:
        for (int n = input_.ConsumeIntegralInRange(0, 40); n > 0; --n) log_.EnterContext("c", true);
        break;
      case Leave:
        for (int n = input_.ConsumeIntegralInRange(0, 20); n > 0; --n) log_.LeaveContext();
        break;
      case Line: log_.LogError(input_.ConsumeBool() ? nullptr : text().c_str()); break;
      case Xml: log_.LogXml(text().c_str()); break;
      case Data:
        log_.LogData(text().c_str(), input_.ConsumeBool() ? nullptr : text().c_str());
        break;
      case Number:
        log_.LogDataInt64(text().c_str(), input_.ConsumeIntegral<std::int64_t>());
        log_.LogHex("h", input_.ConsumeIntegral<std::uint32_t>());
        log_.LogElapsedMs("e", input_.ConsumeIntegral<std::uint32_t>());
        break;
      case Cut: {
        XString value;
        value.setFromUtf8(text().c_str());
        log_.LogStringMax("cut", value, input_.ConsumeIntegral<std::uint32_t>());
        break;
      }
      case Switch: turnSwitch(); break;
      case Render: render(); break;
      case Clear: log_.ClearLog(); break;
    }
  }

  void turnSwitch() {
    switch (input_.ConsumeIntegralInRange(0, 3)) {
      case 0: log_.pushNullLogging(input_.ConsumeBool()); break;
      case 1: log_.popNullLogging(); break;
      case 2: log_.pushVerboseLogging(input_.ConsumeBool()); break;
      default: log_.popVerboseLogging();
    }
  }

  void render() {
    StringBuffer text;
    check(log_.getText(text));
    check(text.view().starts_with("KestrumLog:\n") && text.view().ends_with("--KestrumLog\n"));
    StringBuffer html;
    check(log_.getHtml(html));
    check(html.view().ends_with("</blockquote>\r\n"));
    StringBuffer xml;
    check(log_.getXml(xml));
    check(xml.view().ends_with("</KestrumLog>\r\n"));
  }

  FuzzedDataProvider& input_;
  _ckLogger log_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Session(input).run();
  return 0;
}
