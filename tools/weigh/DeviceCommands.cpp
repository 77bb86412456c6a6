// weigh tare, weigh price and weigh test: they tell a scale to do something, or test its
// connection.

#include <charconv>
#include <limits>

#include "Records.h"
#include "ResultCode.h"

namespace weigh {

namespace {

struct DeviceOptions {
  ScaleOptions scale;
  Format format = Format::Text;
  std::int32_t price = 0;
};

/// Says how it ended, on both streams as the format wants it.
ExitCode conclude(const host::LastError& error, const DeviceOptions& options,
                  const std::string& success) {
  const bool good = error.code == kSuccess;
  if (good || options.format == Format::Json) {
    RecordWriter(options.format)
        .write({{"code", error.code},
                {"error", good ? Json() : Json(error.text)},
                {"result", good ? Json(success) : Json()}},
               success);
  }
  return judge(error, options.scale.connection);
}

/// Opens the scale and calls `method` with its id and `value`.
ExitCode command(const Program& program, const DeviceOptions& options, const char* method,
                 const host::Value& value, const std::string& success) {
  Session session(program.component, options.scale.log);
  const std::string id = session.open(options.scale.connection);
  if (session.component().lastError().code == kSuccess)
    session.component().call(method, {id, value});
  return conclude(session.component().lastError(), options, success);
}

/// The test tells its outcome by its text alone: the weight, or an error with its number.
host::LastError testOutcome(const std::string& text) {
  static constexpr std::string_view kWeight = "Вес:";
  static constexpr std::string_view kError = "Ошибка_";
  if (text.starts_with(kWeight)) return {kSuccess, text};
  std::uint32_t code = kUnknown;
  if (text.starts_with(kError))
    std::from_chars(text.data() + kError.size(), text.data() + text.size(), code);
  return {code, text};
}

ExitCode testDevice(const Program& program, const DeviceOptions& options) {
  Session session(program.component, options.scale.log);
  session.setParameters(options.scale.connection);
  const host::CallResult answer = session.component().call("DeviceTest");
  const auto* text = std::get_if<std::string>(&answer.params.at(0));
  const host::LastError outcome = testOutcome(text == nullptr ? std::string() : *text);
  return conclude(outcome, options, outcome.text);
}

/// Gives a command its options.
std::shared_ptr<DeviceOptions> addOptions(CLI::App& command) {
  auto options = std::make_shared<DeviceOptions>();
  addScaleOptions(command, options->scale);
  addJsonFlag(command, options->format);
  return options;
}

}  // namespace

void addTareCommand(CLI::App& app, Program& program) {
  CLI::App& added = addCommand(app, "tare", say("Make what lies on the scale its tare"),
                               "weigh tare --model 13 --host 192.168.0.200");
  setAction(added, program, addOptions(added),
            [](const Program& with, const DeviceOptions& options) {
              return command(with, options, "Calibrate", {}, say("tare set"));
            });
}

void addPriceCommand(CLI::App& app, Program& program) {
  CLI::App& added = addCommand(app, "price", say("Send a price to the scale"),
                               "weigh price 1250 --model 14 --port /dev/ttyUSB0");
  const auto given = addOptions(added);
  addNumber(added, "price", given->price, 0, std::numeric_limits<std::int32_t>::max(),
            say("Whole number in the scale's own unit, as a rule hundredths (12.50 is 1250)"))
      ->required()
      ->default_str("");
  setAction(added, program, given, [](const Program& with, const DeviceOptions& options) {
    return command(with, options, "SetPrice", options.price, say("price {0} sent", options.price));
  });
}

void addTestCommand(CLI::App& app, Program& program) {
  CLI::App& added =
      addCommand(app, "test", say("Test the connection as the platform's settings form does"),
                 "weigh test --model 13 --host 192.168.0.200 --tcp-port 4001");
  setAction(added, program, addOptions(added), testDevice);
}

}  // namespace weigh
