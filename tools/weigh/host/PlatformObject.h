#pragma once

#include <string>
#include <vector>

#include "Platform.h"
#include "Utf16.h"

namespace host {

/// What the component gets from `Init`: takes its errors down and has nothing else to offer.
class PlatformObject final : public IAddInDefBase {
 public:
  struct Error {
    unsigned short code;
    std::string source;
    std::string description;
    long number;
  };

  /// The errors that the component has raised, oldest first.
  const std::vector<Error>& errors() const { return errors_; }

  bool AddError(unsigned short code, const WCHAR_T* source, const WCHAR_T* description,
                long scode) override {
    errors_.push_back({code, toUtf8(source), toUtf8(description), scode});
    return true;
  }
  bool Read(WCHAR_T* /*name*/, tVariant* /*value*/, long* /*errorCode*/,
            WCHAR_T** /*errorText*/) override {
    return false;
  }
  bool Write(WCHAR_T* /*name*/, tVariant* /*value*/) override { return false; }
  bool RegisterProfileAs(WCHAR_T* /*name*/) override { return false; }
  bool SetEventBufferDepth(long /*depth*/) override { return false; }
  long GetEventBufferDepth() override { return 0; }
  bool ExternalEvent(WCHAR_T* /*source*/, WCHAR_T* /*message*/, WCHAR_T* /*data*/) override {
    return false;
  }
  void CleanEventBuffer() override {}
  bool SetStatusLine(WCHAR_T* /*text*/) override { return false; }
  void ResetStatusLine() override {}

 private:
  std::vector<Error> errors_;
};

}  // namespace host
