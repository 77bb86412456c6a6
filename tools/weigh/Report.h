#pragma once

#include "Component.h"
#include "Failure.h"
#include "Options.h"

namespace weigh {

/// Whether the model makes its weights up.
bool isEmulator(int model);

/// The scale's error with its code and text.
std::string errorText(const host::LastError& error);

/// What the user can do about an error; empty where there is nothing to say.
std::string remedyFor(std::uint32_t code, const Connection& connection);

/// Writes the scale's error with its code, text and remedy to standard error.
void complain(const host::LastError& error, const Connection& connection);

/// Complains and gives the exit code, unless the error is none.
ExitCode judge(const host::LastError& error, const Connection& connection);

}  // namespace weigh
