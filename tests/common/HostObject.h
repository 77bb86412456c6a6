#pragma once

#include <string>
#include <vector>

#include "Platform.h"

namespace fixture {

/// What the component gets from the platform: records the errors that are reported to it, and
/// counts every other call, since the component makes none.
class HostObject final : public IAddInDefBase {
 public:
  struct Error {
    unsigned short code;
    std::u16string source;
    std::u16string description;
    long scode;
  };

  const std::vector<Error>& errors() const { return errors_; }
  int otherCalls() const { return otherCalls_; }

  bool AddError(unsigned short code, const WCHAR_T* source, const WCHAR_T* description,
                long scode) override;
  bool Read(WCHAR_T*, tVariant*, long*, WCHAR_T**) override { return count(); }
  bool Write(WCHAR_T*, tVariant*) override { return count(); }
  bool RegisterProfileAs(WCHAR_T*) override { return count(); }
  bool SetEventBufferDepth(long) override { return count(); }
  long GetEventBufferDepth() override { return count() ? 1 : 0; }
  bool ExternalEvent(WCHAR_T*, WCHAR_T*, WCHAR_T*) override { return count(); }
  void CleanEventBuffer() override { count(); }
  bool SetStatusLine(WCHAR_T*) override { return count(); }
  void ResetStatusLine() override { count(); }

 private:
  bool count() { return ++otherCalls_ > 0; }

  std::vector<Error> errors_;
  int otherCalls_ = 0;
};

}  // namespace fixture
