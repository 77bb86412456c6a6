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

[[noreturn]] void refuse(const std::string& argument, const std::string& why) {
  throw Failure(kWrongUsage, say("parameter '{0}': {1}", argument, why));
}

template <typename Number>
Number whole(const std::string& argument, const std::string& text) {
  using Limits = std::numeric_limits<Number>;
  const auto number = wholeNumber(text, Limits::min(), Limits::max());
  if (number) return static_cast<Number>(*number);
  refuse(argument,
         say("'{0}' is no whole number from {1} to {2}", text, Limits::min(), Limits::max()));
}

host::Value typed(char type, const std::string& argument, const std::string& text) {
  switch (type) {
    case 'i': return whole<std::int32_t>(argument, text);
    case 'u': return whole<std::uint32_t>(argument, text);
    case 'd':
      if (const auto number = realNumber(text)) return *number;
      refuse(argument, say("no number"));
    case 'b':
      if (text == "true" || text == "false") return text == "true";
      refuse(argument, say("neither true nor false"));
    case 'n': return host::NarrowText{text};
    case 'e': return {};
    default: return text;
  }
}

/// A parameter as it is typed: "i:5", "u:5", "d:1.5", "b:true", "s:text", "n:text" (narrow), "e:"
/// (empty); without a type whole numbers, decimal numbers, true and false are such, and all else is
/// text. Throws Failure.
host::Value callArgument(const std::string& argument) {
  static constexpr std::string_view kTypes = "iudbsne";
  using Int32 = std::numeric_limits<std::int32_t>;
  if (argument.size() >= 2 && argument[1] == ':' && kTypes.find(argument[0]) != kTypes.npos)
    return typed(argument[0], argument, argument.substr(2));
  if (argument == "true" || argument == "false") return argument == "true";
  if (const auto number = wholeNumber(argument, Int32::min(), Int32::max()))
    return static_cast<std::int32_t>(*number);
  const bool decimal = argument.find_first_not_of("-0123456789.") == argument.npos;
  if (const auto number = realNumber(argument); number && decimal) return *number;
  return argument;
}

/// With the name of the type, "int32", "text" and so on.
Json asJson(const host::Value& value) {
  static constexpr std::array kNames = {"empty",  "bool", "int32", "uint32",
                                        "double", "text", "narrow"};
  if (const auto* other = std::get_if<host::OtherValue>(&value))
    return {{"type", "type " + std::to_string(other->type)}, {"value", Json()}};
  const auto plain = [](const auto& held) -> Json {
    using Kind = std::decay_t<decltype(held)>;
    if constexpr (std::is_same_v<Kind, host::NarrowText>)
      return held.bytes;
    else if constexpr (std::is_constructible_v<Json, Kind>)
      return held;
    else
      return {};
  };
  return {{"type", kNames.at(value.index())}, {"value", std::visit(plain, value)}};
}

/// "int32 5"
std::string valueText(const Json& value) {
  const Json& held = value["value"];
  return value["type"].get<std::string>() + " " +
         (held.is_null()     ? ""
          : held.is_string() ? held.get<std::string>()
                             : held.dump());
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

std::string textOf(const host::Method& method, const Json& record) {
  Table table(
      {say("method"), fmt::format("{} {} ({})", method.number, method.name, method.russianName)});
  table.add({say("call"), record["executed"] ? say("executed") : sayIn("call", "refused")});
  table.add({say("returned"), valueText(record["returned"])});
  for (std::size_t i = 0; i < record["params"].size(); ++i)
    table.add({say("param {0}", i), valueText(record["params"][i])});
  const Json& last = record["last_error"];
  table.add({say("last error"), fmt::format("{} {}", last["code"].get<std::uint32_t>(),
                                            last["text"].get<std::string>())});
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
  const Json record = recordOf(method, answer, last);
  RecordWriter(options.format).write(record, textOf(method, record));
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
  setAction(command, program, options, callMethod);
}

}  // namespace weigh
