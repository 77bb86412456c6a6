#pragma once

#include "Component.h"
#include "Failure.h"
#include "Options.h"

namespace weigh {

/// Writes the scale's error with its code, text and remedy to standard error.
void complain(const host::LastError& error, const Connection& connection);

/// Complains and gives the exit code, unless the error is none.
ExitCode judge(const host::LastError& error, const Connection& connection);

}  // namespace weigh
