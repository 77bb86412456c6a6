#include "CallArguments.h"

#include <array>
#include <limits>

#include "Failure.h"
#include "Options.h"
#include "Texts.h"

namespace weigh {

namespace {

using Int32 = std::numeric_limits<std::int32_t>;
using Uint32 = std::numeric_limits<std::uint32_t>;

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

[[noreturn]] void refuse(const std::string& argument, const std::string& why) {
  throw Failure(kWrongUsage, fill(text::kBadParam, {argument, why}));
}

std::int64_t whole(const std::string& argument, const std::string& text, std::int64_t lowest,
                   std::int64_t highest) {
  const auto number = wholeNumber(text, lowest, highest);
  if (!number) {
    refuse(argument,
           fill(text::kNotWhole, {text, std::to_string(lowest), std::to_string(highest)}));
  }
  return *number;
}

host::Value typed(char type, const std::string& argument, const std::string& text) {
  switch (type) {
    case 'i': return static_cast<std::int32_t>(whole(argument, text, Int32::min(), Int32::max()));
    case 'u': return static_cast<std::uint32_t>(whole(argument, text, 0, Uint32::max()));
    case 'd':
      if (const auto number = realNumber(text)) return *number;
      refuse(argument, say(text::kNotReal));
    case 'b':
      if (text == "true") return true;
      if (text == "false") return false;
      refuse(argument, say(text::kNotBool));
    case 'n': return host::NarrowText{text};
    case 'e': return {};
    default: return text;
  }
}

bool isDecimal(const std::string& text) {
  return text.find_first_not_of("-0123456789.") == std::string::npos;
}

}  // namespace

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

std::string typeName(const host::Value& value) {
  return std::visit(
      Overloaded{[](std::monostate) { return std::string("empty"); },
                 [](bool) { return std::string("bool"); },
                 [](std::int32_t) { return std::string("int32"); },
                 [](std::uint32_t) { return std::string("uint32"); },
                 [](double) { return std::string("double"); },
                 [](const std::string&) { return std::string("text"); },
                 [](const host::NarrowText&) { return std::string("narrow"); },
                 [](host::OtherValue other) { return "type " + std::to_string(other.type); }},
      value);
}

nlohmann::ordered_json valueAsJson(const host::Value& value) {
  using Json = nlohmann::ordered_json;
  return std::visit(Overloaded{[](std::monostate) { return Json(); },
                               [](const host::NarrowText& text) { return Json(text.bytes); },
                               [](host::OtherValue) { return Json(); },
                               [](const auto& plain) { return Json(plain); }},
                    value);
}

std::string valueAsText(const host::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* narrow = std::get_if<host::NarrowText>(&value)) return narrow->bytes;
  const nlohmann::ordered_json plain = valueAsJson(value);
  return plain.is_null() ? std::string() : plain.dump();
}

}  // namespace weigh
