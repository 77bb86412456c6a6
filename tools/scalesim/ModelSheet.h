#pragma once

#include <string>

#include "ScaleModel.h"

/// What is known of a model, for --help MODEL.
std::string modelSheet(const sim::ScaleModel& model);

/// All models, one a line, for --list.
std::string modelList();

/// Bytes as "06 01 02".
std::string hexText(std::span<const std::uint8_t> bytes);

/// What the display shows: "1.250 kg", "-0.5 kg".
std::string displayText(const sim::Display& display);
