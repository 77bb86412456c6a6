#include "Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <memory>

#include "Texts.h"

namespace weigh {

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMaxTcpPort = 65535;
constexpr int kMaxIntervalSeconds = 86400;

template <typename Number>
std::optional<Number> parsed(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// The name that stands in a message: the first of "--model,-m".
std::string firstName(const std::string& names) { return names.substr(0, names.find(',')); }

[[noreturn]] void refuse(const std::string& names, const std::string& message) {
  throw CLI::ValidationError(firstName(names), message);
}

std::string secondsText(std::chrono::milliseconds time) {
  std::array<char, 32> text = {};
  const auto end = std::to_chars(text.data(), text.data() + text.size(),
                                 std::chrono::duration<double>(time).count());
  return {text.data(), end.ptr};
}

bool isCoefficient(std::string_view text) {
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  const auto separator = [](char c) { return c == '.' || c == ','; };
  return std::all_of(text.begin(), text.end(), [&](char c) { return digit(c) || separator(c); }) &&
         std::count_if(text.begin(), text.end(), separator) <= 1 &&
         std::any_of(text.begin(), text.end(), digit);
}

CLI::Option* addText(CLI::App& app, const std::string& names, std::string& target,
                     const Text& text) {
  const auto take = [names, &target](const std::string& given) {
    if (given.empty()) refuse(names, say(text::kEmptyText));
    target = given;
  };
  return app.add_option_function<std::string>(names, take, say(text))->default_str(target);
}

/// Options added while one exists stand under its heading.
class GroupOfOptions {
 public:
  GroupOfOptions(CLI::App& app, const Text& heading)
      : defaults_(*app.option_defaults()), before_(defaults_) {
    defaults_.group(say(heading));
  }
  ~GroupOfOptions() { std::swap(defaults_, before_); }
  GroupOfOptions(const GroupOfOptions&) = delete;
  GroupOfOptions& operator=(const GroupOfOptions&) = delete;

 private:
  CLI::OptionDefaults& defaults_;
  CLI::OptionDefaults before_;
};

/// Says on which side of the wire `connection` ends, once all options are known.
void settleTransport(Connection& connection, const std::string& type, bool hostGiven,
                     bool deviceGiven) {
  static constexpr std::array<std::string_view, 3> kSerial = {"serial", "com", "0"};
  static constexpr std::array<std::string_view, 4> kNetwork = {"tcp", "network", "ethernet", "1"};
  const auto isOneOf = [&](const auto& names) {
    return std::find(names.begin(), names.end(), type) != names.end();
  };
  if (!type.empty() && !isOneOf(kSerial) && !isOneOf(kNetwork)) {
    refuse("--conntype", fill(text::kNotConnType, {type}));
  }
  connection.network = type.empty() ? hostGiven : isOneOf(kNetwork);
  if (connection.network && deviceGiven && wholeNumber(connection.device, 0, kMaxInt)) {
    refuse("--port", fill(text::kPortIsDevice, {connection.device, connection.host}));
  }
}

}  // namespace

std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest,
                                        std::int64_t highest) {
  const auto value = parsed<std::int64_t>(text);
  return value && *value >= lowest && *value <= highest ? value : std::nullopt;
}

std::optional<double> realNumber(std::string_view text) { return parsed<double>(text); }

std::int64_t requireWhole(const std::string& name, const std::string& text, std::int64_t lowest,
                          std::int64_t highest) {
  const auto value = wholeNumber(text, lowest, highest);
  if (!value) {
    refuse(name, fill(text::kNotWhole, {text, std::to_string(lowest), std::to_string(highest)}));
  }
  return *value;
}

void addConnectionOptions(CLI::App& app, Connection& connection) {
  const GroupOfOptions group(app, text::kScaleGroup);
  addNumber(app, "--model,-m", connection.model, 0, kMaxInt, text::kModelOption);
  auto* device = addText(app, "--port,-p,--cport,--device", connection.device, text::kPortOption)
                     ->type_name("DEVICE");
  addNumber(app, "--baud,-b,--cbaudrate,--speed", connection.baud, 1, kMaxInt, text::kBaudOption);
  auto* host =
      addText(app, "--host,-H,--ehost", connection.host, text::kHostOption)->type_name("HOST");
  addNumber(app, "--tcp-port,-t,--eport", connection.tcpPort, 1, kMaxTcpPort, text::kTcpPortOption);
  const auto type = std::make_shared<std::string>();
  app.add_option("--conntype,-c", *type, say(text::kConnTypeOption))->type_name("serial|tcp");
  app.add_flag("--leave,--conleave", connection.leave, say(text::kLeaveOption));
  app.add_option_function<std::string>(
         "--coeff",
         [&connection](const std::string& given) {
           if (!isCoefficient(given)) refuse("--coeff", fill(text::kNotCoeff, {given}));
           connection.coeff = given;
         },
         say(text::kCoeffOption))
      ->type_name("FACTOR")
      ->default_str(connection.coeff);
  app.parse_complete_callback([&connection, device, host, type] {
    settleTransport(connection, *type, host->count() > 0, device->count() > 0);
  });
}

void addScaleOptions(CLI::App& app, ScaleOptions& options) {
  addConnectionOptions(app, options.connection);
  const GroupOfOptions group(app, text::kScaleGroup);
  app.add_option_function<std::string>(
         "--log",
         [&options](const std::string& folder) {
           if (folder.empty()) refuse("--log", say(text::kEmptyText));
           options.log = folder;
         },
         say(text::kLogOption))
      ->type_name("DIR");
}

void addJsonFlag(CLI::App& app, Format& format) {
  app.add_flag_callback(
      "--json", [&format] { format = Format::Json; }, say(text::kJsonFlag));
}

void addFormatFlags(CLI::App& app, Format& format) {
  addJsonFlag(app, format);
  app.add_flag_callback(
      "--csv", [&format] { format = Format::Csv; }, say(text::kCsvFlag));
}

void addReadingOptions(CLI::App& app, ReadingOptions& options, std::int64_t fewest,
                       const Text& countText) {
  const GroupOfOptions group(app, text::kOutputGroup);
  addNumber(app, "--count,-n", options.count, fewest, std::int64_t{kMaxInt}, countText);
  app.add_option_function<std::string>(
         "--interval,-i",
         [&options](const std::string& given) {
           const auto seconds = realNumber(given);
           if (!seconds || !(*seconds >= 0 && *seconds <= kMaxIntervalSeconds)) {
             refuse("--interval",
                    fill(text::kNotSeconds, {given, std::to_string(kMaxIntervalSeconds)}));
           }
           options.interval = std::chrono::round<std::chrono::milliseconds>(
               std::chrono::duration<double>(*seconds));
         },
         say(text::kIntervalOption))
      ->type_name("SECONDS")
      ->default_str(secondsText(options.interval));
  addFormatFlags(app, options.format);
}

}  // namespace weigh
