#include "Progress.h"

#include <unistd.h>

#include <iostream>

#include "FindTexts.h"
#include "Texts.h"

namespace weigh {

namespace {

constexpr const char* kWipe = "\r\x1B[K";

}  // namespace

Progress::Progress(std::chrono::seconds longest)
    : longest_(longest), onTerminal_(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (onTerminal_) std::cerr << kWipe << std::flush;
}

void Progress::show(const std::string& what) {
  if (!onTerminal_) return;
  const auto passed =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
  std::cerr << kWipe
            << fill(text::kFindProgressOf,
                    {what, std::to_string(passed.count()), std::to_string(longest_.count())})
            << std::flush;
}

}  // namespace weigh
