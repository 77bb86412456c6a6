#include "SimulatedScale.h"

#include <stdexcept>

namespace sim {

namespace {

const ScaleModel& modelOf(int number) {
  const ScaleModel* model = findScaleModel(number);
  if (model == nullptr) {
    throw std::invalid_argument("no simulator for model " + std::to_string(number));
  }
  return *model;
}

}  // namespace

SimulatedScale::SimulatedScale(int model, Transport transport, Faults faults)
    : SimulatedScale(model, transport, modelOf(model).usualState(), faults) {}

SimulatedScale::SimulatedScale(int model, Transport transport, const ScaleState& state,
                               Faults faults)
    : model_(modelOf(model)) {
  std::unique_ptr<Endpoint> endpoint;
  if (transport == Transport::Pty) {
    auto pty = std::make_unique<PtyEndpoint>();
    devicePath_ = pty->address();
    pty_ = pty.get();
    endpoint = std::move(pty);
  } else {
    auto tcp = std::make_unique<TcpEndpoint>();
    port_ = tcp->port();
    endpoint = std::move(tcp);
  }
  line_ =
      &loop_.add(std::make_unique<ScaleLine>(Scale(model_, state), std::move(endpoint), faults));
  line_->setObserver([this](Direction direction, std::span<const std::uint8_t> bytes) {
    Bytes& record = direction == Direction::Received ? received_ : sent_;
    record.insert(record.end(), bytes.begin(), bytes.end());
  });
  thread_ = std::thread([this] { loop_.run(); });
}

SimulatedScale::~SimulatedScale() {
  loop_.stop();
  thread_.join();
}

bool SimulatedScale::waitForCount(Action action, int wanted, std::chrono::milliseconds limit) {
  constexpr std::chrono::milliseconds kStep{2};
  const auto end = std::chrono::steady_clock::now() + limit;
  while (count(action) < wanted) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(kStep);
  }
  return true;
}

}  // namespace sim
