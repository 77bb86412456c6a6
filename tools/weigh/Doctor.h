#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "LongWork.h"
#include "Models.h"
#include "SerialDevices.h"
#include "SettingsFile.h"

namespace weigh {

/// The polls that were made through the component.
struct PollTimes {
  int done = 0;
  int answered = 0;
  /// Of the answered ones.
  std::optional<Milliseconds> median;
  std::optional<Milliseconds> worst;
  /// What the bytes of one poll take on a serial line; none where it can't be told.
  std::optional<Milliseconds> wire;
};

/// What is the matter with one scale.
struct Diagnosis {
  Finding verdict;
  /// The scale gives a weight, whatever there is to say of it.
  bool weighs = false;
  /// What was noticed beside it.
  std::vector<Finding> notes;
  PollTimes polls;
  /// The last answered poll.
  std::optional<Weighing> weighing;
  /// What came in where no poll was answered.
  std::vector<std::uint8_t> bytes;
  /// The serial devices of the machine, if the one that was named isn't one of them.
  std::vector<devices::SerialDevice> devices;
};

/// What a diagnosis works with.
struct Practice {
  std::filesystem::path component;
  Progress& progress;
  devices::Roots roots = {};
};

/// How long the diagnosis of a scale may take.
std::chrono::milliseconds longestDiagnosis(const Connection& connection);

/// Looks at the line, polls the scale through the component as the platform does, and if that
/// brings no answer listens to what comes in. Asks for weights only.
Diagnosis diagnose(const Connection& connection, const Practice& practice);

/// Diagnoses one after the other and hands on what is found; says before how long that may take.
/// False if it was interrupted: the scales from there on are handed on as not looked at.
bool diagnoseAll(const std::vector<NamedScale>& scales, const std::filesystem::path& component,
                 const std::function<void(const NamedScale&, const Diagnosis&)>& found);

/// What was found, for people and for programs.
std::string diagnosisText(const NamedScale& scale, const Diagnosis& diagnosis);
Json diagnosisRecord(const NamedScale& scale, const Diagnosis& diagnosis);
Json deviceRecord(const devices::SerialDevice& device);

/// Whether a model's frames can say that the weight is moving. The drivers of the others call
/// every weight moving, or none.
bool tellsMotion(int model);

// The device: DoctorDevice.cpp.

/// What keeps a serial device from being used; none if nothing does. Gives the diagnosis the
/// serial devices that there are, where the user named something else.
std::optional<Finding> deviceTrouble(const Connection& connection, const devices::Roots& roots,
                                     Diagnosis& diagnosis);
Finding lineFails(const std::string& path, const std::string& why);
/// What is worth knowing of a device that works.
std::vector<Finding> deviceNotes(const std::filesystem::path& device, const devices::Roots& roots);
/// The paths of the serial devices that there are: "/dev/ttyS0, /dev/ttyUSB0".
std::string serialDevicesText(const devices::Roots& roots = {});
/// "FTDI FT232R USB UART", or the driver's name for a port without adapter.
std::string adapterText(const devices::SerialDevice& device);

// The host: DoctorHost.cpp.

/// How long a name or a connection is waited for: as long as the component does.
inline constexpr std::chrono::seconds kLongestConnect{10};
/// What keeps a scale or converter on the network from being connected to; none if nothing does,
/// or if the user had enough.
std::optional<Finding> hostTrouble(const Connection& connection);

// What comes in: DoctorLine.cpp.

/// What came in on a line, piece by piece.
struct Heard {
  /// Before anything was asked.
  std::vector<std::uint8_t> unasked;
  /// Behind each request.
  std::vector<std::vector<std::uint8_t>> answers;
  /// The host ended the connection, or the adapter went.
  bool hungUp = false;
  /// Characters that the hardware found wrong; 0 where it doesn't count them.
  int framingErrors = 0;
  int parityErrors = 0;

  std::vector<std::uint8_t> all() const;
};

/// How long listening may take.
std::chrono::milliseconds longestListening(const ProtocolSheet& sheet);
/// Listens to the line of a model, then asks for a weight and listens again.
Heard listen(const Connection& connection, const ProtocolSheet& sheet);
/// What a serial line that answers well brings without being asked; none for a model that transmits
/// by itself. A protocol without checks takes any bytes for a weight.
std::optional<Finding> unaskedNote(const Connection& connection, const ScalesModel& model);
/// What makes the weight of a good frame doubtful: it reads 0 while a number stands in its place,
/// bytes of its place are no part of the number, or the notes know that the scale means something
/// else by what was heard, which is the frame alone if nothing else is. None for a frame that is
/// all read.
std::optional<Finding> weightDoubt(const ScalesModel& model, Frame frame,
                                   std::span<const std::uint8_t> heard = {});
/// The same of the next good frame on the line, which nothing else may have open. None for a model
/// without a line.
std::optional<Finding> weightDoubtOn(const Connection& connection);
/// The other output of the model's scale that these bytes are of; none if the notes know none.
std::optional<Finding> otherFormat(const ScalesModel& model, std::span<const std::uint8_t> bytes,
                                   const std::string& line);
/// What to set on the scale itself, to stand behind a remedy; empty where nobody knows.
std::string onTheScale(int model);
/// What is the matter with a line on which no poll of `model` was answered.
Finding judge(const Heard& heard, const ScalesModel& model, const Connection& connection);

}  // namespace weigh
