#include "SelfDescription.h"

#include <CLI/CLI.hpp>

std::string selfDescription(const CLI::App& app, const std::string& form) {
  const CommandEntry program = commandLineOf(app);
  if (form == "man") return manualPage(program);
  if (form == "bash") return bashCompletion(program);
  return zshCompletion(program);
}
