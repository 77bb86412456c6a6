#include "Options.h"

#include <algorithm>
#include <limits>

#include "Text.h"

namespace weigh {

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMaxTcpPort = 65535;
constexpr double kMaxInterval = 86400;

bool isCoefficient(std::string_view text) {
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  const auto separator = [](char c) { return c == '.' || c == ','; };
  return std::ranges::all_of(text, [&](char c) { return digit(c) || separator(c); }) &&
         std::ranges::count_if(text, separator) <= 1 && std::ranges::any_of(text, digit);
}

}  // namespace

std::string Connection::address() const {
  return network ? fmt::format("{}:{}", host, tcpPort) : device;
}

std::string Connection::options(bool withBaud) const {
  if (network) return fmt::format("--host {} --tcp-port {}", shellWord(host), tcpPort);
  const std::string port = "--port " + shellWord(device);
  return withBaud ? fmt::format("{} --baud {}", port, baud) : port;
}

void addLineOptions(CLI::App& app, Connection& connection) {
  auto* device =
      addText(app, "--port,-p", connection.device, say("Serial device"))->type_name("DEVICE");
  auto* host = addText(app, "--host,-H", connection.host,
                       say("Name or address of a network scale; selects the network"))
                   ->type_name("HOST");
  addNumber(app, "--tcp-port,-t", connection.tcpPort, 1, kMaxTcpPort,
            say("TCP port of a network scale"));
  app.parse_complete_callback([&connection, device, host] {
    connection.network = host->count() > 0;
    if (!connection.network || device->count() == 0) return;
    refuse("--port",
           say("a scale is on a line or on the network; the TCP port of {0} is given with "
               "--tcp-port",
               connection.host));
  });
}

void addConnectionOptions(CLI::App& app, Connection& connection) {
  const GroupOfOptions group(app, say("The scale"));
  addNumber(app, "--model,-m", connection.model, 0, kMaxInt,
            say("Model number; `weigh models` lists them"));
  addLineOptions(app, connection);
  addNumber(app, "--baud,-b", connection.baud, 1, kMaxInt, say("Speed of the serial line"));
  app.add_flag("--leave", connection.leave, say("Keep the connection between readings"));
  app.add_option_function<std::string>(
         "--coeff",
         [&connection](const std::string& given) {
           if (!isCoefficient(given)) {
             refuse("--coeff", say("'{0}' is no factor; digits with at most one point or comma, "
                                   "such as 0.995",
                                   given));
           }
           connection.coeff = given;
         },
         say("Factor that the weight is multiplied by"))
      ->type_name("FACTOR")
      ->default_str(connection.coeff);
}

void addScaleOptions(CLI::App& app, ScaleOptions& options) {
  addConnectionOptions(app, options.connection);
  const GroupOfOptions group(app, say("The scale"));
  app.add_option_function<std::string>(
         "--log",
         [&options](const std::string& given) {
           if (given.empty()) refuse("--log", say("may not be empty"));
           options.log = given;
         },
         say("Write an exchange log into this folder; scales of a settings.xml in it are loaded "
             "too"))
      ->type_name("DIR");
}

void addFolder(CLI::App& app, std::string& folder) {
  const auto take = [&app, &folder](const std::string& given) {
    if (given.empty()) refuse("folder", say("may not be empty"));
    for (const CLI::Option* option : app.get_options()) {
      if (option->count() == 0 || option->get_group() != say("The scale")) continue;
      refuse("folder", say("a folder names its scales itself; leave out {0} or the folder",
                           option->get_name()));
    }
    folder = given;
  };
  app.add_option_function<std::string>(
         "folder", take,
         say("Component folder with settings.xml: all of its scales in place of one given by "
             "options"))
      ->type_name("DIR");
}

void addJsonFlag(CLI::App& app, Format& format, const std::string& about) {
  app.add_flag_callback(
      "--json", [&format] { format = Format::Json; },
      about.empty() ? say("One JSON record per line") : about);
}

void addFormatFlags(CLI::App& app, Format& format) {
  addJsonFlag(app, format);
  app.add_flag_callback(
         "--csv", [&format] { format = Format::Csv; }, say("Comma-separated values with a heading"))
      ->excludes("--json");
}

void addReadingOptions(CLI::App& app, ReadingOptions& options, std::int64_t fewest,
                       const std::string& aboutCount) {
  const GroupOfOptions group(app, say("Readings and output"));
  addNumber(app, "--count,-n", options.count, fewest, std::int64_t{kMaxInt}, aboutCount);
  addSeconds(app, "--interval,-i", options.interval, 0, kMaxInterval,
             say("Seconds from one reading to the next"));
  addFormatFlags(app, options.format);
}

CLI::App& addCommand(CLI::App& app, const char* name, const std::string& about,
                     const std::string& examples, const std::string& notes) {
  CLI::App* command = app.add_subcommand(name, about);
  command->group(say("Commands"));
  // Inherited from the program, but not with its heading.
  command->set_help_flag("-h,--help", say("Print this help and end"))->group(say("Options"));
  command->fallthrough();
  std::string example = say("Example:");
  for (const std::string_view line : partsOf(examples, '\n')) example.append("\n  ").append(line);
  command->footer(notes.empty() ? example : notes + "\n\n" + example);
  return *command;
}

}  // namespace weigh
