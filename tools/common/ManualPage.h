#pragma once

#include <string>

namespace CLI {
class App;
}

/// The manual page of a program in the current language, for groff and mandoc: what --help says of
/// it and of its commands, with the same words.
std::string manualPage(const CLI::App& app);

/// The script that completes the program's command line in bash or in zsh.
std::string completion(const std::string& program, bool forZsh);
