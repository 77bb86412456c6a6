#include "Session.h"

#include "Failure.h"
#include "SettingsFile.h"
#include "Texts.h"

namespace weigh {

namespace {

template <typename Number>
Number numberAt(const host::CallResult& answer, std::size_t index) {
  const auto* number = std::get_if<Number>(&answer.params.at(index));
  return number == nullptr ? Number{} : *number;
}

}  // namespace

Session::Session(const std::filesystem::path& component,
                 const std::optional<std::filesystem::path>& log)
    : log_(log ? std::make_unique<ExchangeLog>(*log) : nullptr), component_(component) {
  if (!log_) return;
  const auto settings = settingsFileOf(log_->folder());
  if (std::filesystem::exists(settings)) complain(fill(text::kLogLoadsScales, {settings.string()}));
  useFolder(log_->folder());
}

host::LastError Session::useFolder(const std::filesystem::path& folder) {
  component_.call("SetPathDllFolder", {folder.string()});
  return component_.lastError();
}

void Session::setParameters(const Connection& connection) {
  const auto set = [&](const char* name, host::Value value) {
    component_.call("SetParameter", {std::string(name), std::move(value)});
  };
  set("model", connection.model);
  set("conntype", connection.network ? 1 : 0);
  set("conleave", connection.leave);
  set("coeff", connection.coeff);
  set("cport", connection.device);
  set("cbaudrate", connection.baud);
  set("ehost", connection.host);
  set("eport", connection.tcpPort);
}

std::string Session::open(const Connection& connection) {
  setParameters(connection);
  const host::CallResult answer = component_.call("Open");
  const auto* id = std::get_if<std::string>(&answer.params.at(0));
  return id == nullptr ? std::string() : *id;
}

Reading Session::read(const std::string& id, bool withDetails) {
  const auto start = std::chrono::steady_clock::now();
  const host::CallResult answer =
      component_.call(withDetails ? "GetWeightPriceCost" : "GetWeight", {id});
  Reading reading;
  reading.poll = std::chrono::steady_clock::now() - start;
  reading.error = component_.lastError();
  reading.weight = numberAt<double>(answer, 1);
  if (withDetails) {
    reading.details = {.price = numberAt<double>(answer, 2),
                       .cost = numberAt<double>(answer, 3),
                       .stable = numberAt<std::int32_t>(answer, 4) != 0};
  }
  return reading;
}

}  // namespace weigh
