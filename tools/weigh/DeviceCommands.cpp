// Commands that tell a scale to do something, and the test of its connection.

#include <charconv>
#include <iostream>
#include <limits>
#include <memory>
#include <string_view>

#include "Commands.h"
#include "Records.h"
#include "Report.h"
#include "ResultCode.h"
#include "Session.h"
#include "Texts.h"

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
  if (options.format == Format::Json) {
    const bool good = error.code == kSuccess;
    writeRecord({{"code", error.code},
                 {"error", good ? Json() : Json(error.text)},
                 {"result", good ? Json(success) : Json()}});
  } else if (error.code == kSuccess) {
    std::cout << success << '\n';
  }
  return judge(error, options.scale.connection);
}

/// Opens the scale and calls `method` with its id and `value`.
ExitCode command(const Program& program, const DeviceOptions& options, const char* method,
                 const host::Value& value, const std::string& success) {
  Session session(program.component, options.scale.log);
  const std::string id = session.open(options.scale.connection);
  if (session.component().lastError().code == kSuccess) {
    session.component().call(method, {id, value});
  }
  return conclude(session.component().lastError(), options, success);
}

/// The test tells its outcome by its text alone: the weight, or an error with its number.
host::LastError testOutcome(const std::string& text) {
  static constexpr std::string_view kWeight = "Вес:";
  static constexpr std::string_view kError = "Ошибка_";
  if (text.starts_with(kWeight)) return {kSuccess, text};
  std::uint32_t code = kUnknown;
  if (text.starts_with(kError)) {
    std::from_chars(text.data() + kError.size(), text.data() + text.size(), code);
  }
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

CLI::App& addDeviceCommand(CLI::App& app, DeviceOptions& options, const CommandHelp& help) {
  CLI::App& added = addCommand(app, help);
  addScaleOptions(added, options.scale);
  addJsonFlag(added, options.format);
  return added;
}

}  // namespace

void addTareCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DeviceOptions>();
  CLI::App& added = addDeviceCommand(app, *options,
                                     {.name = "tare",
                                      .about = text::kTareAbout,
                                      .example = "weigh tare --model 13 --host 192.168.0.200"});
  added.callback([&program, options] {
    program.action = [&program, options] {
      return command(program, *options, "Calibrate", {}, say(text::kTareDone));
    };
  });
}

void addPriceCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DeviceOptions>();
  CLI::App& added =
      addDeviceCommand(app, *options,
                       {.name = "price",
                        .about = text::kPriceAbout,
                        .example = "weigh price 1250 --model 14 --port /dev/ttyUSB0"});
  addNumber(added, "price", options->price, 0, std::numeric_limits<std::int32_t>::max(),
            text::kPriceArgument)
      ->required()
      ->default_str("");
  added.callback([&program, options] {
    program.action = [&program, options] {
      return command(program, *options, "SetPrice", options->price,
                     fill(text::kPriceDone, {std::to_string(options->price)}));
    };
  });
}

void addTestCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DeviceOptions>();
  CLI::App& added =
      addDeviceCommand(app, *options,
                       {.name = "test",
                        .about = text::kTestAbout,
                        .example = "weigh test --model 13 --host 192.168.0.200 --tcp-port 4001"});
  added.callback([&program, options] {
    program.action = [&program, options] { return testDevice(program, *options); };
  });
}

}  // namespace weigh
