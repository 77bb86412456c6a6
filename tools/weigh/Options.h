#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "Language.h"

namespace weigh {

/// The parameters of the page, with the page's defaults.
struct Connection {
  int model = 20;
  bool network = false;
  std::string device = "/dev/ttyS0";
  int baud = 4800;
  std::string host = "192.168.0.200";
  int tcpPort = 20108;
  bool leave = false;
  /// As a person writes it.
  std::string coeff = "1.000";
};

/// Which scale, and whether its exchange is logged.
struct ScaleOptions {
  Connection connection;
  /// Folder of the exchange log; none for no log.
  std::optional<std::filesystem::path> log;
};

/// How the output is written.
enum class Format { Text, Json, Csv };

/// Which readings are taken, and how they are written.
struct ReadingOptions {
  /// 0 for no end.
  std::int64_t count = 1;
  std::chrono::milliseconds interval{1000};
  Format format = Format::Text;
};

/// The whole of `text` as a number of the range; none for anything else. No octal, no signs but
/// minus, no spaces.
std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest,
                                        std::int64_t highest);
/// A decimal number with a point; none for anything else.
std::optional<double> realNumber(std::string_view text);

/// Turns down a text that isn't a number of the range, as the command line does it.
std::int64_t requireWhole(const std::string& name, const std::string& text, std::int64_t lowest,
                          std::int64_t highest);

/// An option or argument that takes a whole number; writes it to `target`.
template <typename Number>
CLI::Option* addNumber(CLI::App& app, const std::string& names, Number& target, Number lowest,
                       Number highest, const Text& text) {
  // Not by CLI11's own conversion, which takes 08 for octal.
  const auto take = [names, &target, lowest, highest](const std::string& given) {
    target = static_cast<Number>(requireWhole(names, given, lowest, highest));
  };
  return app.add_option_function<std::string>(names, take, say(text))
      ->type_name("N")
      ->default_str(std::to_string(target));
}

/// The parameters of a scale, without its log.
void addConnectionOptions(CLI::App& app, Connection& connection);
void addScaleOptions(CLI::App& app, ScaleOptions& options);
/// `fewest` is the lowest count that is taken.
void addReadingOptions(CLI::App& app, ReadingOptions& options, std::int64_t fewest,
                       const Text& countText);
/// --json.
void addJsonFlag(CLI::App& app, Format& format);
/// --json and --csv.
void addFormatFlags(CLI::App& app, Format& format);

}  // namespace weigh
