#include "Run.h"

#include <sstream>

#include "Program.h"

namespace {

const Arguments kWeigh = {WEIGH_PROGRAM, "--lang", "en"};

ProgramRun run(const Arguments& commandLine, int signal) {
  fixture::Program program(commandLine, fixture::Program::Errors::Apart);
  program.closeInput();
  ProgramRun result{};
  if (signal != 0) {
    result.out = program.line() + '\n';
    program.signal(signal);
  }
  result.out += program.rest();
  result.exitCode = program.end();
  result.err = program.errors();
  return result;
}

std::string entry(int element, int id, int model, const char* coefficient,
                  const std::string& connection) {
  return "<SCALES" + std::to_string(element) + " fNum=\"" + std::to_string(id) + "\" fType=\"" +
         std::to_string(model) + "\" fCoeff=\"" + coefficient + "\" " + connection + "/>";
}

}  // namespace

std::vector<nlohmann::json> ProgramRun::records() const {
  std::vector<nlohmann::json> records;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) records.push_back(nlohmann::json::parse(line));
  return records;
}

ProgramRun weigh(const Arguments& arguments) { return run(kWeigh + arguments, 0); }

ProgramRun runOf(const Arguments& commandLine) { return run(commandLine, 0); }

ProgramRun weighUntil(int signal, const Arguments& arguments) {
  return run(kWeigh + arguments, signal);
}

Arguments wordsOf(const std::string& text) {
  std::istringstream stream(text);
  Arguments words;
  for (std::string word; stream >> word;) words.push_back(word == "''" ? "" : word);
  return words;
}

Arguments operator+(Arguments first, const Arguments& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Arguments optionsOf(const sim::SimulatedScale& scale) {
  const std::string model = std::to_string(scale.model().number);
  if (scale.port() == 0) return {"--model", model, "--port", scale.devicePath(), "--baud", "9600"};
  return {"--model", model, "--host", "127.0.0.1", "--tcp-port", std::to_string(scale.port())};
}

std::string serialEntry(int element, int id, int model, const std::string& device,
                        const char* coefficient) {
  return entry(element, id, model, coefficient,
               "fIsComPort=\"1\" fComBaudRate=\"9600\" fComPortName=\"" + device + "\"");
}

std::string networkEntry(int element, int id, int model, int port, const char* coefficient) {
  return entry(element, id, model, coefficient,
               "fIsComPort=\"0\" fHost=\"127.0.0.1\" fTCPPort=\"" + std::to_string(port) + "\"");
}
