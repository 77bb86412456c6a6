#pragma once

#include <string>

#include "ScaleModel.h"

/// What is known of a model or a variant of it, for --about.
std::string modelSheet(const sim::ScaleModel& model);

/// All models, one a line, and their variants, for --list.
std::string modelList();

/// What the display shows: "1.250 kg", "-0.5 kg".
std::string displayText(const sim::ScaleModel& model, const sim::Display& display);
