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

Pair::Pair(int model, Transport transport, const std::string& request,
           const std::vector<std::string>& answers, int leave)
    : request_(fixture::bytes(request)) {
  for (const std::string& answer : answers) answers_.push_back(fixture::bytes(answer));
  start(
      model, transport, [this](fixture::Wire& wire) { answer(wire); }, leave);
}

Pair::Pair(int model, Transport transport, const fixture::Script& script, int leave) {
  start(model, transport, script, leave);
}

void Pair::answer(fixture::Wire& wire) {
  fixture::Bytes seen;
  while (wire.isAlive()) {
    const fixture::Bytes some = wire.receiveSome();
    received_.add(some);
    for (const std::uint8_t byte : some) {
      seen.push_back(byte);
      if (seen.size() > request_.size()) seen.erase(seen.begin());
      if (seen != request_) continue;
      seen.clear();
      wire.send(answers_[std::min(requests_++, answers_.size() - 1)]);
    }
  }
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
