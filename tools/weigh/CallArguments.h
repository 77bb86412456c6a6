#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "Variants.h"

namespace weigh {

/// Stands among the arguments of a call for a scale that the options open.
inline constexpr const char* kOpenedScale = "@id";

/// A parameter as it is typed: "i:5", "u:5", "d:1.5", "b:true", "s:text", "n:text" (narrow), "e:"
/// (empty); without a type whole numbers, decimal numbers, true and false are such, and all else is
/// text. Throws Failure.
host::Value callArgument(const std::string& argument);

/// "int32", "text" and so on.
std::string typeName(const host::Value& value);
/// The value without its type; nothing for an empty one.
std::string valueAsText(const host::Value& value);
nlohmann::ordered_json valueAsJson(const host::Value& value);

}  // namespace weigh
