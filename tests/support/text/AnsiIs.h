#pragma once

#include "Psdk.h"

/// The ANSI code page for the length of a test.
class AnsiIs {
 public:
  explicit AnsiIs(int codePage) : before_(Psdk::getAnsiCodePage()) {
    Psdk::setAnsiCodePage(codePage);
  }
  ~AnsiIs() { Psdk::setAnsiCodePage(before_); }
  AnsiIs(const AnsiIs&) = delete;
  AnsiIs& operator=(const AnsiIs&) = delete;

 private:
  int before_;
};
