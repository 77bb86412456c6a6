#include "OpenLine.h"

#include <array>

#include "LongWork.h"
#include "Records.h"
#include "ResultCode.h"
#include "Sleep.h"

namespace weigh {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Silence that ends an answer. Adapters and converters deliver in pieces some ten milliseconds
/// apart.
constexpr milliseconds kIdle{100};
constexpr milliseconds kLook{5};

}  // namespace

std::string LineSetting::text() const {
  if (bitsPerSecond == 0) return {};
  return std::to_string(bitsPerSecond) + " " + framing.text();
}

OpenLine::OpenLine(const Connection& connection) : connection_(connection) {
  const int code = connection.network
                       ? port_.OpenNetworkPort(connection.host.c_str(), connection.tcpPort)
                       : port_.OpenComPort(connection.device.c_str());
  if (code == 0) return;
  throw Failure(kFailed, say("{0} can't be opened", connection.address()),
                remedyFor(kNoConnection, connection));
}

bool OpenLine::set(int bitsPerSecond, const Framing& settings) {
  if (connection_.network) return true;
  const bool taken = port_.setBitRate(static_cast<unsigned long>(bitsPerSecond)) == 0 &&
                     port_.setParity(settings.parity) == 0 &&
                     port_.setDataBits(settings.dataBits) == 0 &&
                     port_.setStopBits(settings.stopBits) == 0;
  // A setting that the line refuses closes it.
  if (!taken) port_.OpenComPort(connection_.device.c_str());
  return taken;
}

void OpenLine::send(std::span<const std::uint8_t> bytes) {
  port_.write(bytes.data(), bytes.size());
}

void OpenLine::ask(const Request& request) {
  const auto head = request.first.view();
  recognise::Bytes first(head.begin(), head.end());
  first.insert(first.end(), request.frameHead, 0);
  send(first);
  if (request.second.empty()) return;
  orbSleep_mSec(request.pause_ms);
  send(request.second.view());
}

recognise::Bytes OpenLine::hear(milliseconds first, milliseconds longest) {
  recognise::Bytes heard;
  const Clock::time_point begin = Clock::now();
  Clock::time_point last = begin;
  // A network read gives all the bytes that it is asked for or none.
  std::array<unsigned char, 256> buffer = {};
  const unsigned long size = connection_.network ? 1 : buffer.size();
  for (;;) {
    const int got = port_.read(buffer.data(), size);
    const Clock::time_point now = Clock::now();
    if (got > 0) {
      heard.insert(heard.end(), buffer.begin(), buffer.begin() + got);
      last = now;
    } else if (heard.empty() ? now - begin >= first : now - last >= kIdle) {
      return heard;
    }
    if (now - begin >= longest || !isUp()) return heard;
    if (got <= 0 && Ending::askedBefore(now + kLook)) return heard;
  }
}

recognise::Bytes OpenLine::listen(milliseconds time) {
  recognise::Bytes heard;
  const Clock::time_point end = Clock::now() + time;
  while (Clock::now() < end && isUp() && !Ending::asked()) {
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    const recognise::Bytes more = hear(left, left);
    heard.insert(heard.end(), more.begin(), more.end());
  }
  return heard;
}

bool OpenLine::isUp() { return port_.getState() == COrbComLanPort::kConnected; }

}  // namespace weigh
