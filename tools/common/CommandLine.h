#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <CLI/CLI.hpp>

#include "Messages.h"
#include "Output.h"

// The command line of both programs. The same thing has the same name in both, here and in all
// texts:
//
//     --model, -m N        the model's number, as on the parameter page
//     --port, -p DEVICE    the serial device: weigh opens it, scalesim makes it
//     --baud, -b N         the speed of the serial line
//     --host, -H HOST      name or address of a network scale (weigh)
//     --tcp-port, -t N     the TCP port
//     --weight, --price    what a scale shows (scalesim); --price asks for it too (weigh read)
//     --json, --csv        output for programs
//     --lang en|ru|uk      language of the messages
//     --help, -h; --version
//
// What a value is stands behind the option in capitals, in no language: N, SECONDS, LIST, HOST,
// TEXT; DEVICE, FILE, LOG and PATH, which a shell completes as files, DIR as folders; "en|ru" are
// choices. Exit codes are those of ExitCode.

/// The whole of `text` as a number of the range; none for anything else. No octal, no signs but
/// minus, no spaces.
std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest,
                                        std::int64_t highest);
/// A decimal number with a point; none for anything else.
std::optional<double> realNumber(std::string_view text);

/// Turns a command line down: "--model: 'x' is no ...". Of "--model,-m" the first name stands
/// there.
[[noreturn]] void refuse(const std::string& names, const std::string& why);

/// Turns down a text that isn't a number of the range.
std::int64_t requireWhole(const std::string& names, const std::string& text, std::int64_t lowest,
                          std::int64_t highest);

/// An option or argument that takes a whole number; writes it to `target`, which may be optional or
/// a time.
template <typename Target>
CLI::Option* addNumber(CLI::App& app, const std::string& names, Target& target, std::int64_t lowest,
                       std::int64_t highest, const std::string& about) {
  // Not by CLI11's own conversion, which takes 08 for octal.
  const auto take = [names, &target, lowest, highest](const std::string& given) {
    target = static_cast<Target>(requireWhole(names, given, lowest, highest));
  };
  CLI::Option* option = app.add_option_function<std::string>(names, take, about)->type_name("N");
  if constexpr (std::is_integral_v<Target>) option->default_str(std::to_string(target));
  return option;
}

/// One that takes a text, and no empty one: that is what a script's unset variable leaves.
CLI::Option* addText(CLI::App& app, const std::string& names, std::string& target,
                     const std::string& about);

/// One that takes seconds, with decimals.
CLI::Option* addSeconds(CLI::App& app, const std::string& names, std::chrono::milliseconds& target,
                        double lowest, double highest, const std::string& about);

/// Options added while one exists stand under its heading.
class GroupOfOptions {
 public:
  GroupOfOptions(CLI::App& app, const std::string& heading)
      : defaults_(*app.option_defaults()), before_(defaults_) {
    defaults_.group(heading);
  }
  ~GroupOfOptions() { std::swap(defaults_, before_); }
  GroupOfOptions(const GroupOfOptions&) = delete;
  GroupOfOptions& operator=(const GroupOfOptions&) = delete;

 private:
  CLI::OptionDefaults& defaults_;
  CLI::OptionDefaults before_;
};

/// Gives a program what both have: help in lines as wide as the terminal, --help, --lang,
/// --version. To be called before options and commands are added.
void addCommonOptions(CLI::App& app);

/// Parses. An exit code if that is all: help and version were printed. Throws Failure for what was
/// given wrongly, in the current language.
std::optional<ExitCode> parse(CLI::App& app, int argc, char** argv);

/// The manual page of a program in the current language, for groff and mandoc: what --help says of
/// it and of its commands, with the same words.
std::string manualPage(const CLI::App& app);
/// The script that completes the program's command line in bash or in zsh.
std::string completion(const std::string& program, bool forZsh);
/// "weigh 4.3.25"
std::string versionLine(const std::string& program);
