#pragma once

#include <chrono>
#include <optional>

#include "Doctor.h"

namespace weigh {

/// How long a name or a connection is waited for: as long as the component does.
inline constexpr std::chrono::seconds kLongestConnect{10};

/// What keeps a host from being connected to; none if nothing does, and for an interrupted try.
std::optional<Finding> hostTrouble(const Connection& connection, const Interrupt& interrupt);

}  // namespace weigh
