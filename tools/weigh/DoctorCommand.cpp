#include <iostream>
#include <memory>

#include "Commands.h"
#include "DoctorOutput.h"
#include "Texts.h"

namespace weigh {

namespace {

struct DoctorOptions {
  Connection connection;
  std::string folder;
  Format format = Format::Text;
};

ExitCode examine(const Program& program, const DoctorOptions& options) {
  const Interrupt interrupt;
  std::vector<Patient> patients;
  if (options.folder.empty()) {
    patients.push_back({.id = {}, .connection = options.connection});
  } else {
    patients = patientsOf(options.folder);
  }
  bool allWeigh = true;
  const bool whole = diagnoseAll(patients, program.component, interrupt,
                                 [&](const Patient& patient, const Diagnosis& diagnosis) {
                                   allWeigh = allWeigh && diagnosis.weighs;
                                   if (options.format == Format::Json) {
                                     writeRecord(diagnosisRecord(patient, diagnosis));
                                   } else {
                                     std::cout << diagnosisText(patient, diagnosis) << std::endl;
                                   }
                                 });
  return whole && allWeigh ? kGood : kScaleFailed;
}

/// Whether the command line has a parameter of a scale.
bool givesScale(const CLI::App& command) {
  const auto options = command.get_options([](const CLI::Option* option) {
    return option->get_group() == say(text::kScaleGroup) && option->count() > 0;
  });
  return !options.empty();
}

}  // namespace

void addDoctorCommand(CLI::App& app, Program& program) {
  const auto options = std::make_shared<DoctorOptions>();
  CLI::App& command = addCommand(app, {.name = "doctor",
                                       .about = text::kDoctorAbout,
                                       .example = "weigh doctor --model 13 --port /dev/ttyUSB0",
                                       .notes = &text::kDoctorNotes});
  addConnectionOptions(command, options->connection);
  command.add_option("folder", options->folder, say(text::kDoctorFolder))->type_name("DIR");
  addJsonFlag(command, options->format);
  command.callback([&program, &command, options] {
    if (!options->folder.empty() && givesScale(command))
      throw CLI::ValidationError("folder", say(text::kScaleAndFolder));
    program.action = [&program, options] { return examine(program, *options); };
  });
}

}  // namespace weigh
