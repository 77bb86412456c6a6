// Plays the scale's side of every recorded exchange to the component, and holds what comes of it
// against the outcome in the exchange's head.

#include <algorithm>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "CaseFile.h"
#include "Component.h"
#include "Models.h"
#include "ReplayLine.h"
#include "SimulationLoop.h"

namespace {

namespace fs = std::filesystem;
using exchange::ExchangeCase;
using exchange::PollOutcome;

/// On a busy machine a scale may answer too late. Only that is tried again, never a wrong reading.
constexpr int kTries = 3;
bool mayBeLate(const PollOutcome& outcome) { return outcome.code == kNoAnswer; }

/// A recorded scale at a line of its own.
class RecordedScale {
 public:
  explicit RecordedScale(const ExchangeCase& recorded) {
    std::vector<exchange::Turn> turns = exchange::turnsOf(recorded.log);
    // Nothing was ever written or read: a scale that only listens.
    if (turns.empty()) turns.push_back({{0x00}, {}});
    std::unique_ptr<sim::Endpoint> endpoint;
    if (recorded.overTcp) {
      auto tcp = std::make_unique<sim::TcpEndpoint>();
      port_ = tcp->port();
      endpoint = std::move(tcp);
    } else {
      endpoint = std::make_unique<sim::PtyEndpoint>();
    }
    const auto& line =
        loop_.add(std::make_unique<sim::ReplayLine>(std::move(turns), std::move(endpoint)));
    device_ = line.endpoint().address();
    thread_ = std::thread([this] { loop_.run(); });
  }
  ~RecordedScale() {
    loop_.stop();
    thread_.join();
  }
  RecordedScale(const RecordedScale&) = delete;
  RecordedScale& operator=(const RecordedScale&) = delete;

  const std::string& device() const { return device_; }
  int port() const { return port_; }

 private:
  sim::SimulationLoop loop_;
  std::string device_;
  int port_ = 0;
  std::thread thread_;
};

PollOutcome poll(host::Component& component, const ExchangeCase& recorded) {
  const RecordedScale scale(recorded);
  const auto set = [&](const char* name, const host::Value& value) {
    component.call("SetParameter", {std::string(name), value});
  };
  set("model", recorded.model);
  set("conntype", recorded.overTcp ? 1 : 0);
  set("conleave", true);
  set("coeff", std::string("1.000"));
  set("cport", scale.device());
  set("cbaudrate", 9600);
  set("ehost", std::string("127.0.0.1"));
  set("eport", scale.port());
  const host::Value id = component.call("Open").params.at(0);
  const host::CallResult answer = component.call("GetWeightPriceCost", {id});
  PollOutcome outcome{.code = static_cast<int>(component.lastError().code)};
  if (outcome.code == 0) {
    outcome.weight = std::get<double>(answer.params.at(1));
    outcome.price = std::get<double>(answer.params.at(2));
    outcome.cost = std::get<double>(answer.params.at(3));
    outcome.stable = std::get<std::int32_t>(answer.params.at(4)) != 0;
  }
  component.call("Close", {id});
  return outcome;
}

class RecordedExchange : public testing::TestWithParam<fs::path> {};

TEST_P(RecordedExchange, ComesToItsOutcome) {
  const ExchangeCase recorded = exchange::readCase(GetParam());
  host::Component component(COMPONENT);
  PollOutcome got = poll(component, recorded);
  for (int again = 1; again < kTries && got != recorded.outcome && mayBeLate(got); ++again) {
    got = poll(component, recorded);
  }
  EXPECT_EQ(got.text(), recorded.outcome.text()) << recorded.special;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& test) {
  std::string name = test.param.stem();
  std::ranges::replace(name, '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(File, RecordedExchange, testing::ValuesIn(exchange::caseFiles(EXCHANGES)),
                         nameOf);

TEST(RecordedExchanges, CoverEveryModel) {
  std::set<int> models;
  for (const fs::path& file : exchange::caseFiles(EXCHANGES)) {
    models.insert(exchange::readCase(file).model);
  }
  for (const ScalesModel& model : scalesModels()) {
    EXPECT_EQ(models.contains(model.number), model.sheet != nullptr) << model.number;
  }
}

}  // namespace
