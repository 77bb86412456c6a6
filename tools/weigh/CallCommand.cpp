// Any method of the component, raw.

#include <array>
#include <limits>

#include "Records.h"
#include "Text.h"
#include "Variants.h"

namespace weigh {

namespace {

/// Stands among the arguments of a call for a scale that the options open.
constexpr const char* kOpenedScale = "@id";

struct CallOptions {
  ScaleOptions scale;
  Format format = Format::Text;
  std::string method;
  std::vector<std::string> arguments;
};

using Int32 = std::numeric_limits<std::int32_t>;
using Uint32 = std::numeric_limits<std::uint32_t>;

[[noreturn]] void refuse(const std::string& argument, const std::string& why) {
  throw Failure(kWrongUsage, say("parameter '{0}': {1}", argument, why));
}

std::int64_t whole(const std::string& argument, const std::string& text, std::int64_t lowest,
                   std::int64_t highest) {
  const auto number = wholeNumber(text, lowest, highest);
  if (!number) {
    refuse(argument, say("'{0}' is no whole number from {1} to {2}", text, lowest, highest));
  }
  return *number;
}

host::Value typed(char type, const std::string& argument, const std::string& text) {
  switch (type) {
    case 'i': return static_cast<std::int32_t>(whole(argument, text, Int32::min(), Int32::max()));
    case 'u': return static_cast<std::uint32_t>(whole(argument, text, 0, Uint32::max()));
    case 'd':
      if (const auto number = realNumber(text)) return *number;
      refuse(argument, say("no number"));
    case 'b':
      if (text == "true") return true;
      if (text == "false") return false;
      refuse(argument, say("neither true nor false"));
    case 'n': return host::NarrowText{text};
    case 'e': return {};
    default: return text;
  }
}

bool isDecimal(const std::string& text) {
  return text.find_first_not_of("-0123456789.") == std::string::npos;
}

/// A parameter as it is typed: "i:5", "u:5", "d:1.5", "b:true", "s:text", "n:text" (narrow), "e:"
/// (empty); without a type whole numbers, decimal numbers, true and false are such, and all else is
/// text. Throws Failure.
host::Value callArgument(const std::string& argument) {
  static constexpr std::string_view kTypes = "iudbsne";
  if (argument.size() >= 2 && argument[1] == ':' && kTypes.find(argument[0]) != kTypes.npos) {
    return typed(argument[0], argument, argument.substr(2));
  }
  if (argument == "true" || argument == "false") return argument == "true";
  if (const auto number = wholeNumber(argument, Int32::min(), Int32::max())) {
    return static_cast<std::int32_t>(*number);
  }
  if (isDecimal(argument)) {
    if (const auto number = realNumber(argument)) return *number;
  }
  return argument;
}

/// "int32", "text" and so on.
std::string typeName(const host::Value& value) {
  static constexpr std::array kNames = {"empty",  "bool", "int32", "uint32",
                                        "double", "text", "narrow"};
  if (const auto* other = std::get_if<host::OtherValue>(&value))
    return "type " + std::to_string(other->type);
  return kNames.at(value.index());
}

Json valueAsJson(const host::Value& value) {
  return std::visit(
      [](const auto& plain) -> Json {
        using Kind = std::decay_t<decltype(plain)>;
        if constexpr (std::is_same_v<Kind, host::NarrowText>) {
          return plain.bytes;
        } else if constexpr (std::is_same_v<Kind, std::monostate> ||
                             std::is_same_v<Kind, host::OtherValue>) {
          return {};
        } else {
          return plain;
        }
      },
      value);
}

std::string valueText(const host::Value& value) {
  const Json plain = valueAsJson(value);
  return typeName(value) + " " +
         (plain.is_null()     ? ""
          : plain.is_string() ? plain.get<std::string>()
                              : plain.dump());
}

host::Method methodOf(host::Component& component, const std::string& name) {
  if (const auto method = component.findMethod(name)) return *method;
  std::vector<std::string> names;
  for (const host::Method& method : component.methods()) names.push_back(method.name);
  throw Failure(kWrongUsage, say("the component has no method '{0}'", name),
                say("Names are exact, also in case: {0}.", joined(names)));
}

std::vector<host::Value> parametersOf(const CallOptions& options, const host::Method& method,
                                      Session& session) {
  if (options.arguments.size() > static_cast<std::size_t>(method.parameters)) {
    throw Failure(kWrongUsage,
                  sayCount("{1} takes {0} parameter, not {2}", "{1} takes {0} parameters, not {2}",
                           method.parameters, options.method, options.arguments.size()));
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

Json recordOf(const host::Method& method, const host::CallResult& answer,
              const host::LastError& last) {
  Json params = Json::array();
  for (const host::Value& value : answer.params) params.push_back(asJson(value));
  return {{"method", method.number},
          {"name", method.name},
          {"executed", answer.executed},
          {"returned", asJson(answer.result)},
          {"params", params},
          {"last_error", {{"code", last.code}, {"text", last.text}}}};
}

std::string textOf(const host::Method& method, const host::CallResult& answer,
                   const host::LastError& last) {
  Table table(
      {say("method"), fmt::format("{} {} ({})", method.number, method.name, method.russianName)});
  table.add({say("call"), answer.executed ? say("executed") : sayIn("call", "refused")});
  table.add({say("returned"), valueText(answer.result)});
  for (std::size_t i = 0; i < answer.params.size(); ++i)
    table.add({say("param {0}", i), valueText(answer.params[i])});
  table.add({say("last error"), fmt::format("{} {}", last.code, last.text)});
  std::string text = table.text();
  text.pop_back();
  return text;
}

ExitCode callMethod(const Program& program, const CallOptions& options) {
  Session session(program.component, options.scale.log);
  host::Component& component = session.component();
  const host::Method method = methodOf(component, options.method);
  session.setParameters(options.scale.connection);
  const host::CallResult answer = component.call(method, parametersOf(options, method, session));
  const host::LastError last = component.lastError();
  RecordWriter(options.format).write(recordOf(method, answer, last), textOf(method, answer, last));
  // One method answers with a value and refuses all the same; that is no failure.
  if (!answer.executed && answer.result == host::Value()) {
    complain(say("the component refused the call of {0}", method.name));
    return kFailed;
  }
  if (answer.result == host::Value(false)) {
    complain(last, options.scale.connection);
    return kFailed;
  }
  return kGood;
}

}  // namespace

void addCallCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<CallOptions>();
  CLI::App& command = addCommand(
      app, "call", say("Call any method of the component and show what came back"),
      "weigh call GetWeight @id --model 13 --port /dev/ttyUSB0",
      say("Numbers, true and false are taken as such, all else is text; i:5 u:5 d:1.5 b:true "
          "s:text "
          "n:text (narrow) and e: (empty) say it outright. @id stands for a scale opened by the "
          "options. Outputs need not be given."));
  addText(command, "method", options->method, say("Russian or English name of the method"))
      ->required()
      ->type_name("NAME");
  command.add_option("arguments", options->arguments, say("Parameters of the call"))
      ->type_name("VALUE");
  addScaleOptions(command, options->scale);
  addJsonFlag(command, options->format);
  command.callback([&program, options] {
    program.action = [&program, options] { return callMethod(program, *options); };
  });
}

}  // namespace weigh
