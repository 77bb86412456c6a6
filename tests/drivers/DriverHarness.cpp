#include "DriverHarness.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "Models.h"
#include "Sleep.h"

namespace {

std::atomic<int> slept_ms = 0;

std::vector<fixture::Bytes> framesOf(std::initializer_list<const char*> texts) {
  std::vector<fixture::Bytes> frames;
  for (const char* text : texts) frames.push_back(fixture::bytes(text));
  return frames;
}

}  // namespace

/// Stands in for the product's own.
void orbSleep_mSec(int ms) {
  slept_ms += ms;
  std::this_thread::sleep_for(milliseconds(ms));
}

milliseconds sleptSoFar() { return milliseconds(slept_ms); }

Poll pollOnce(IScalesObject& scales) {
  Outputs out = {kOfCaller, kOfCaller, kOfCaller};
  long stable = kStableOfCaller;
  const milliseconds before = sleptSoFar();
  const int code = scales.getScalesInfo(&out.weight, &out.price, &out.cost, &stable);
  out.stable = stable == 1;
  EXPECT_TRUE(stable == 0 || stable == 1);
  return {code, out, sleptSoFar() - before};
}

Answers::Answers(fixture::Bytes request, std::vector<fixture::Bytes> answers)
    : state_(std::make_shared<State>()) {
  state_->request = std::move(request);
  state_->answers = std::move(answers);
}

fixture::Script Answers::script() const {
  return [state = state_](fixture::Wire& wire) {
    fixture::Bytes seen;
    while (wire.isAlive()) {
      const fixture::Bytes some = wire.receiveSome();
      state->received.add(some);
      for (const std::uint8_t byte : some) {
        seen.push_back(byte);
        if (seen.size() > state->request.size()) seen.erase(seen.begin());
        if (seen != state->request) continue;
        seen.clear();
        wire.send(state->answers[std::min(state->requests++, state->answers.size() - 1)]);
      }
    }
  };
}

Pair::Pair(int model, Transport transport, const char* request,
           std::initializer_list<const char*> answers, int leave)
    : answers_(fixture::bytes(request), framesOf(answers)) {
  start(model, transport, answers_.script(), leave);
}

Pair::Pair(int model, Transport transport, const fixture::Script& script, int leave)
    : answers_({}, {}) {
  start(model, transport, script, leave);
}

void Pair::start(int model, Transport transport, const fixture::Script& script, int leave) {
  scales_ = createScales(model);
  scales_->SetLeaveConn(leave);
  int code = kUnknown;
  if (transport == Transport::Tcp) {
    tcp_ = std::make_unique<fixture::TcpPeer>(script);
    code = scales_->SetLanPort(fixture::TcpPeer::kHost, tcp_->port(), nullptr);
  } else {
    pty_ = std::make_unique<fixture::PtyLine>();
    code = scales_->SetComPort(pty_->path().c_str(), 9600, nullptr);
    pty_->play(script);
  }
  if (code != kSuccess) throw std::runtime_error("the driver doesn't reach its scale");
}

std::string Pair::received(std::size_t count) const {
  return fixture::hex(answers_.received(count));
}
