#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Doctor.h"
#include "Records.h"

namespace weigh {

/// One scale to look at.
struct Patient {
  /// Its number in the settings file; empty for the scale of the options.
  std::string id;
  Connection connection;

  std::string line() const;
};

/// The scales of a component folder. Throws Failure.
std::vector<Patient> patientsOf(const std::filesystem::path& folder);

/// Diagnoses one after the other and hands on what is found; says before how long that may take.
/// False if it was interrupted: the scales from there on are handed on as not looked at.
bool diagnoseAll(const std::vector<Patient>& patients, const std::filesystem::path& component,
                 const Interrupt& interrupt,
                 const std::function<void(const Patient&, const Diagnosis&)>& found);

/// What was found, for people and for programs.
std::string diagnosisText(const Patient& patient, const Diagnosis& diagnosis);
Json diagnosisRecord(const Patient& patient, const Diagnosis& diagnosis);

Json deviceRecord(const devices::SerialDevice& device);

}  // namespace weigh
