#include <filesystem>
#include <fstream>
#include <system_error>

#include <gtest/gtest.h>

#include "Host.h"
#include "SimulatedScale.h"

namespace sim {
namespace {

using std::chrono::milliseconds;

const Bytes kCasRequest = {0x05, 0x11};
constexpr std::size_t kCasLength = 16;

Host hostOf(const SimulatedScale& scale) {
  return scale.port() == 0 ? Host(scale.devicePath()) : Host(scale.port());
}

class SimulatedScales : public testing::TestWithParam<Transport> {};
INSTANTIATE_TEST_SUITE_P(OnBothLines, SimulatedScales,
                         testing::Values(Transport::Pty, Transport::Tcp), [](const auto& tested) {
                           return tested.param == Transport::Pty ? "pty" : "tcp";
                         });

TEST(SimulatedScaleOverTcp, LeavesGapsThatEndADrain) {
  constexpr milliseconds kIdleLimit{100};
  SimulatedScale scale(33, Transport::Tcp);
  const Host host(scale.port());
  // A drain ends with the first silence of the idle limit, after one frame or two.
  EXPECT_LE(host.hear(102400, kIdleLimit).size(), 2 * scale.frame().size());
}

TEST_P(SimulatedScales, StaySilentOnDemandAndStillObey) {
  SimulatedScale scale(28, GetParam(), {.silent = true});
  const Host host = hostOf(scale);
  host.say({0x2A, 0x03, 0x2A, 0x02, 5, 2, 1, 0, 0, 0});
  ASSERT_TRUE(scale.waitForCount(Action::Price, 1));
  EXPECT_DOUBLE_EQ(scale.state().price, 1.25);
  EXPECT_TRUE(scale.sent().empty());
  scale.setFaults({});
  host.say({0x2A, 0x03});
  EXPECT_EQ(host.hear(18), scale.frame());
}

TEST_P(SimulatedScales, DribbleByteByByte) {
  SimulatedScale scale(13, GetParam(), {.dribble = milliseconds{5}});
  const Host host = hostOf(scale);
  const auto start = std::chrono::steady_clock::now();
  host.say(kCasRequest);
  EXPECT_EQ(host.hear(kCasLength), scale.frame());
  EXPECT_GE(std::chrono::steady_clock::now() - start, kCasLength * milliseconds{5});
  // A line with an echo would bring the frame back.
  EXPECT_EQ(scale.received(), kCasRequest);
}

TEST_P(SimulatedScales, HangUpAfterAFrameAndComeBackUnderTheSameAddress) {
  SimulatedScale scale(13, GetParam(), {.cut = 5, .hangUpAfter = 1, .frames = 1});
  {
    const Host host = hostOf(scale);
    host.say(kCasRequest);
    EXPECT_EQ(host.hear(5).size(), 5U);
    EXPECT_TRUE(host.hearsTheEnd());
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{5};
  while (!hostOf(scale).open() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(milliseconds{10});
  }
  const Host again = hostOf(scale);
  ASSERT_TRUE(again.open());
  again.say(kCasRequest);
  EXPECT_EQ(again.hear(kCasLength), scale.frame());
}

TEST(SimulatedScaleOnPty, KeepsNoOldFramesForAHostThatComesLate) {
  constexpr std::size_t kGarbage = 900;
  // On a busy machine new frames may come in while the host still listens, so one of five counts.
  const auto heardOnlyNewFrames = [] {
    SimulatedScale scale(33, Transport::Pty, {.garbage = kGarbage});
    std::this_thread::sleep_for(milliseconds{500});
    const Host host(scale.devicePath());
    return host.hear(100'000, milliseconds{10}).size() <= 3 * (kGarbage + scale.frame().size());
  };
  bool heard = false;
  for (int attempt = 0; attempt < 5 && !heard; ++attempt) heard = heardOnlyNewFrames();
  EXPECT_TRUE(heard);
}

TEST(SimulatedScaleOnPty, RemovesItsLinkAndLeavesFilesOfOthers) {
  std::string path;
  {
    SimulatedScale scale(13, Transport::Pty);
    path = scale.devicePath();
    EXPECT_TRUE(std::filesystem::is_symlink(path));
  }
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(path)));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(path).parent_path()));

  const TemporaryDirectory directory;
  const auto file = directory.path() / "file";
  std::ofstream(file) << "mine";
  EXPECT_THROW(PtyEndpoint{file}, std::system_error);
  EXPECT_TRUE(std::filesystem::is_regular_file(file));

  const auto link = directory.path() / "link";
  for (const char* foreign : {"/nowhere", "/dev/pts/0"}) {
    std::filesystem::create_symlink(foreign, link);
    EXPECT_THROW(PtyEndpoint{link}, std::system_error);
    EXPECT_EQ(std::filesystem::read_symlink(link), foreign);
    std::filesystem::remove(link);
  }
  // What a simulator left that was killed.
  std::filesystem::create_symlink("/dev/./pts/4711", link);
  PtyEndpoint first(link);
  const auto target = std::filesystem::read_symlink(link);
  EXPECT_NE(target, "/dev/./pts/4711");
  first.goAway();
  EXPECT_FALSE(std::filesystem::is_symlink(link));
  // The name stays its own while it is away.
  EXPECT_THROW(PtyEndpoint{link}, std::system_error);
  first.comeBack();
  EXPECT_TRUE(Host(link).open());
}

/// A host that asks without end: no more than some answers wait for it, and none when it has left.
TEST(ScaleLine, LosesAnswersThatNobodyTakes) {
  auto endpoint = std::make_unique<TcpEndpoint>();
  const int port = endpoint->port();
  ScaleLine line(Scale(*findScaleModel(13)), std::move(endpoint), {.dribble = milliseconds{1}});
  auto now = Line::Clock::now();
  const auto listen = [&] {
    for (int i = 0; i < 4; ++i) line.receive(now += milliseconds{1});
  };
  const auto ask = [&](const Host& host) {
    for (int i = 0; i < 1000; ++i) host.say(kCasRequest);
    listen();
  };
  {
    const Host host(port);
    ask(host);
    line.advance(now += std::chrono::hours{1});
    const std::size_t heard = host.hear(100'000, milliseconds{20}).size();
    EXPECT_GE(heard, kCasLength);
    EXPECT_LE(heard, 4096 + kCasLength);
    ask(host);
  }
  listen();
  const Host next(port);
  listen();
  line.advance(now += std::chrono::hours{1});
  EXPECT_TRUE(next.hear(1, milliseconds{20}).empty());
}

}  // namespace
}  // namespace sim
