#pragma once

#include <string>

#include "SelfDescribed.h"

/// A manual page in the current language, for groff and mandoc.
std::string manualPage(const CommandEntry& program);

/// Completion scripts for the two shells.
std::string bashCompletion(const CommandEntry& program);
std::string zshCompletion(const CommandEntry& program);

/// The option by which a program prints one of them; for the build, so --help doesn't show it.
inline constexpr const char* kSelfDescriptionOption = "--self-describe";

/// What the option prints for "man", "bash" and "zsh"; nothing for any other form.
std::string selfDescription(const CLI::App& app, const std::string& form);

/// "weigh 4.3.25"
std::string versionLine(const std::string& program);
