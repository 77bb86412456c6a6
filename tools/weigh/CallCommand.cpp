// Any method of the component, raw.

#include <array>
#include <iostream>
#include <memory>

#include "CallArguments.h"
#include "Commands.h"
#include "Records.h"
#include "Report.h"
#include "Session.h"
#include "Table.h"
#include "Texts.h"

namespace weigh {

namespace {

struct CallOptions {
  ScaleOptions scale;
  Format format = Format::Text;
  std::string method;
  std::vector<std::string> arguments;
};

host::Method methodOf(host::Component& component, const std::string& name) {
  if (const auto method = component.findMethod(name)) return *method;
  std::string names;
  for (const host::Method& method : component.methods()) {
    names += (names.empty() ? "" : ", ") + method.name;
  }
  throw Failure(kWrongUsage, fill(text::kUnknownMethod, {name}), fill(text::kMethodsAre, {names}));
}

std::vector<host::Value> parametersOf(const CallOptions& options, const host::Method& method,
                                      Session& session) {
  const auto wanted = static_cast<std::size_t>(method.parameters);
  if (options.arguments.size() > wanted) {
    throw Failure(kWrongUsage,
                  fill(text::kTooManyParams, {options.method, std::to_string(wanted),
                                              std::to_string(options.arguments.size())}));
  }
  std::vector<host::Value> values;
  for (const std::string& argument : options.arguments) {
    values.push_back(argument == kOpenedScale ? session.open(options.scale.connection)
                                              : callArgument(argument));
  }
  return values;
}

Json asJson(const host::Value& value) {
  return {{"type", typeName(value)}, {"value", valueAsJson(value)}};
}

void printAsJson(const host::Method& method, const host::CallResult& answer,
                 const host::LastError& last) {
  Json params = Json::array();
  for (const host::Value& value : answer.params) params.push_back(asJson(value));
  writeRecord({{"method", method.number},
               {"name", method.name},
               {"executed", answer.executed},
               {"returned", asJson(answer.result)},
               {"params", params},
               {"last_error", {{"code", last.code}, {"text", last.text}}}});
}

void printAsText(const host::Method& method, const host::CallResult& answer,
                 const host::LastError& last) {
  const auto valueText = [](const host::Value& value) {
    return std::string(typeName(value)) + " " + valueAsText(value);
  };
  Table table({say(text::kMethodWord), std::to_string(method.number) + " " + method.name + " (" +
                                           method.russianName + ")"});
  table.add({say(text::kCallWord), say(answer.executed ? text::kExecuted : text::kRefused)});
  table.add({say(text::kReturned), valueText(answer.result)});
  for (std::size_t i = 0; i < answer.params.size(); ++i) {
    table.add({fill(text::kParamWord, {std::to_string(i)}), valueText(answer.params[i])});
  }
  table.add({say(text::kLastErrorWord), std::to_string(last.code) + " " + last.text});
  std::cout << table.text();
}

ExitCode callMethod(const Program& program, const CallOptions& options) {
  Session session(program.component, options.scale.log);
  host::Component& component = session.component();
  const host::Method method = methodOf(component, options.method);
  session.setParameters(options.scale.connection);
  const host::CallResult answer = component.call(method, parametersOf(options, method, session));
  const host::LastError last = component.lastError();
  if (options.format == Format::Json) {
    printAsJson(method, answer, last);
  } else {
    printAsText(method, answer, last);
  }
  // One method answers with a value and refuses all the same; that is no failure.
  if (!answer.executed && answer.result == host::Value()) {
    complain(fill(text::kCallRefused, {method.name}));
    return kScaleFailed;
  }
  if (answer.result == host::Value(false)) {
    complain(last, options.scale.connection);
    return kScaleFailed;
  }
  return kGood;
}

}  // namespace

void addCallCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<CallOptions>();
  CLI::App& command =
      addCommand(app, {.name = "call",
                       .about = text::kCallAbout,
                       .example = "weigh call GetWeight @id --model 13 --port /dev/ttyUSB0",
                       .notes = &text::kCallNotes});
  command.add_option("method", options->method, say(text::kMethodArgument))->required();
  command.add_option("arguments", options->arguments, say(text::kArgsArgument));
  addScaleOptions(command, options->scale);
  addJsonFlag(command, options->format);
  command.callback([&program, options] {
    program.action = [&program, options] { return callMethod(program, *options); };
  });
}

}  // namespace weigh
