#pragma once

#include "Options.h"

/// Plays the scale or scales of the options until `quit`, SIGINT, SIGTERM or SIGHUP. Throws what
/// keeps it from starting.
void play(const Options& options);
