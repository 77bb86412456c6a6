#include "Wire.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

namespace fixture {

namespace {

constexpr int kForever = -1;
constexpr std::size_t kChunk = 4096;

/// A peer that went must not end the test by SIGPIPE. The signal stays as it is for the driver,
/// which has to live without it in the platform's process.
ssize_t writeQuietly(int fd, std::span<const std::uint8_t> data) {
  const ssize_t sent = ::send(fd, data.data(), data.size(), MSG_NOSIGNAL);
  return sent < 0 && errno == ENOTSOCK ? ::write(fd, data.data(), data.size()) : sent;
}

}  // namespace

bool Wire::await(short events, int ms) const {
  std::array<pollfd, 2> waiting = {{{fd_, events, 0}, {stop_.descriptor(), POLLIN, 0}}};
  int ready = 0;
  do {
    ready = ::poll(waiting.data(), waiting.size(), ms);
  } while (ready < 0 && errno == EINTR);
  return ready > 0 && waiting[1].revents == 0;
}

Bytes Wire::receive(std::size_t count) {
  Bytes result;
  std::array<std::uint8_t, kChunk> chunk = {};
  while (alive_ && result.size() < count) {
    if (!await(POLLIN, kForever)) {
      end();
      break;
    }
    const ssize_t got = ::read(fd_, chunk.data(), std::min(chunk.size(), count - result.size()));
    if (got > 0) {
      result.insert(result.end(), chunk.begin(), chunk.begin() + got);
    } else if (got == 0 || (errno != EINTR && errno != EAGAIN)) {
      end();
    }
  }
  return result;
}

Bytes Wire::receiveSome() {
  Bytes result = receive(1);
  std::array<std::uint8_t, kChunk> chunk = {};
  if (alive_ && !result.empty() && await(POLLIN, 0)) {
    const ssize_t got = ::read(fd_, chunk.data(), chunk.size());
    if (got > 0) result.insert(result.end(), chunk.begin(), chunk.begin() + got);
  }
  return result;
}

bool Wire::send(std::span<const std::uint8_t> data) {
  while (alive_ && !data.empty()) {
    if (!await(POLLOUT, kForever)) {
      end();
      break;
    }
    const ssize_t sent = writeQuietly(fd_, data);
    if (sent > 0) {
      data = data.subspan(static_cast<std::size_t>(sent));
    } else if (errno != EINTR && errno != EAGAIN) {
      end();
    }
  }
  return alive_;
}

bool Wire::pause(int ms) {
  pollfd over = {stop_.descriptor(), POLLIN, 0};
  if (::poll(&over, 1, ms) > 0) end();
  return alive_;
}

Script answering(Bytes request, Bytes answer) {
  return [request = std::move(request), answer = std::move(answer)](Wire& wire) {
    Bytes seen;
    while (wire.isAlive()) {
      for (const std::uint8_t byte : wire.receive(1)) seen.push_back(byte);
      if (seen.size() > request.size()) seen.erase(seen.begin());
      if (seen != request) continue;
      seen.clear();
      wire.send(answer);
    }
  };
}

Script sending(Bytes data) {
  return [data = std::move(data)](Wire& wire) {
    wire.send(data);
    silent()(wire);
  };
}

Script silent() {
  return [](Wire& wire) {
    while (!wire.receiveSome().empty()) continue;
  };
}

Script recording(Received& log) {
  return [&log](Wire& wire) {
    for (Bytes data = wire.receiveSome(); !data.empty(); data = wire.receiveSome()) log.add(data);
  };
}

void Received::add(std::span<const std::uint8_t> data) {
  const std::lock_guard lock(mutex_);
  data_.insert(data_.end(), data.begin(), data.end());
}

Bytes Received::all() const {
  const std::lock_guard lock(mutex_);
  return data_;
}

Bytes Received::waitFor(std::size_t count) const {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + 2s;
  while (all().size() < count && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(1ms);
  }
  return all();
}

}  // namespace fixture
