#pragma once

#include "FindSearch.h"

namespace weigh {

/// Writes what a search found: to people a ranking, its doubts and the values for the parameter
/// page; to programs one record a candidate and one about the search.
void writeFindResult(const Connection& connection, const FindResult& result, Format format);

/// "06 01 02".
std::string hexText(std::span<const std::uint8_t> bytes);

}  // namespace weigh
