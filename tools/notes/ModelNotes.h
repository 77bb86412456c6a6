#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct ScalesModel;

/// What makers' papers and recordings say of the scales themselves: what to set on them, and how a
/// wrong setting looks. The texts stand in drivers/ModelNotes.json, in English; what is handed out
/// here is in the current language.
namespace notes {

/// What a wrong setting looks like, and the way out.
struct WrongSetting {
  std::string sign;
  std::string cause;
  std::string wayOut;
};

/// Another output of the same scale, which its driver refuses.
struct OtherFormat {
  std::string name;
  std::string wayOut;
};

/// What is to be set on the scale, step by step; empty where no paper says.
std::vector<std::string> settingsOf(int model);

/// The output that the bytes are of, if the notes of the model know it.
std::optional<OtherFormat> otherFormatIn(int model, std::span<const std::uint8_t> bytes);

/// What a good frame means otherwise than the driver reads it, if the notes of the model know its
/// look.
std::optional<WrongSetting> misreadingIn(int model, std::span<const std::uint8_t> bytes);

/// All that is known of a model, in Markdown that reads well on a terminal, too. The heading is of
/// that level.
std::string pageOf(const ScalesModel& model, int headingLevel);

}  // namespace notes
