#include <netdb.h>

#include <cerrno>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DataFile.h"
#include "HexBytes.h"
#include "NetTesting.h"
#include "SystemCalls.h"
#include "TcpPeer.h"

namespace {

using fixture::kSlack_ms;
using fixture::Stopwatch;
using fixture::SystemCalls;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr int kEmptyHostname = 1;
constexpr int kDnsFailed = 2;
constexpr int kInternalError = 5;
constexpr int kTimeout = 6;
constexpr int kRejected = 7;

class Connect : public testing::Test {
 protected:
  bool connect(const char* host) { return connect(host, refusingPort_, 10'000); }
  bool connect(const char* host, int port, int maxWaitMs = 10'000) {
    return socket.Connect(host, port, false, maxWaitMs);
  }

  const int refusingPort_ = fixture::refusingPort();
  SystemCalls calls;
  CkSocket socket;
};

TEST_F(Connect, ARefusingNumericHostIsTriedFourTimesTheLastOverIpv6) {
  EXPECT_FALSE(connect("127.0.0.2"));
  EXPECT_THAT(calls.noted,
              ElementsAre("getaddrinfo 127.0.0.2 inet numericserv numerichost",  //
                          "connect 127.0.0.2",
                          "getaddrinfo 127.0.0.2 inet numericserv numerichost",  //
                          "connect 127.0.0.2",
                          "getaddrinfo 127.0.0.2 inet numericserv numerichost all v4mapped",
                          "connect 127.0.0.2",
                          "getaddrinfo 127.0.0.2 inet6 numericserv numerichost v4mapped",
                          "connect ::ffff:127.0.0.2"));
  EXPECT_EQ(socket.get_ConnectFailReason(), kRejected);
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("Connection rejected\n"));
  EXPECT_FALSE(socket.get_IsConnected());
}

TEST_F(Connect, ThisHostNeedsNoResolverAndOneAttempt) {
  for (const char* host : {"localhost", "LOCALHOST", "LocalHost", "127.0.0.1", " localhost\r\n"}) {
    calls.noted.clear();
    EXPECT_FALSE(connect(host));
    EXPECT_THAT(calls.noted, ElementsAre("connect 127.0.0.1")) << host;
    EXPECT_EQ(socket.get_ConnectFailReason(), kRejected);
  }
  fixture::TcpPeer peer(fixture::silent());
  EXPECT_TRUE(connect("LOCALHOST", peer.port()));
  EXPECT_EQ(socket.get_ConnectFailReason(), 0);
}

TEST_F(Connect, ASilentHostIsTriedOnceAndCostsItsTime) {
  const fixture::SilentPort silent;
  for (const char* host : {"127.0.0.1", "0x7f.1"}) {
    calls.noted.clear();
    const Stopwatch clock;
    EXPECT_FALSE(connect(host, silent.port(), 300));
    EXPECT_GE(clock.ms(), 300);
    EXPECT_LT(clock.ms(), 300 + kSlack_ms);
    EXPECT_THAT(calls.noted, Contains(StartsWith("connect")).Times(1));
    EXPECT_EQ(socket.get_ConnectFailReason(), kTimeout);
  }
}

TEST_F(Connect, AnUnknownNameIsAskedForTwiceInEachModeButForAFinalNo) {
  struct {
    SystemCalls::Resolved answer;
    std::size_t times;
  } const cases[] = {{{EAI_NONAME}, 6}, {{8}, 1}, {{}, 3}};
  for (const auto& c : cases) {
    calls.noted.clear();
    calls.resolved = c.answer;
    EXPECT_FALSE(connect("no.such.scale"));
    EXPECT_THAT(calls.noted, AllOf(Each(StartsWith("getaddrinfo")), SizeIs(c.times)));
    EXPECT_EQ(socket.get_ConnectFailReason(), kDnsFailed);
  }
}

TEST_F(Connect, IsMadeToTheFirstIpv4AddressAndElseToTheFirstIpv6Address) {
  struct {
    std::vector<std::string> addresses;
    const char* connect;
  } const cases[] = {
      {{"::1", "127.0.0.3", "127.0.0.4"}, "connect 127.0.0.3"},
      {{"::1", "::2"}, "connect ::1"},
      {{"127.0.0.5"}, "connect 127.0.0.5"},
  };
  for (const auto& c : cases) {
    calls.noted.clear();
    calls.resolved = {0, c.addresses};
    EXPECT_FALSE(connect("scale.shop"));
    // One address for each of the three modes: the others of the list are left alone.
    EXPECT_THAT(calls.noted, AllOf(SizeIs(2 * 3), Contains(c.connect).Times(3)));
  }
}

TEST_F(Connect, WithoutADescriptorThereIsNoSocket) {
  calls.instead["socket"] = [] { return -EMFILE; };
  EXPECT_FALSE(connect("127.0.0.2"));
  EXPECT_EQ(socket.get_ConnectFailReason(), kInternalError);
  EXPECT_THAT(socket.lastErrorText(), HasSubstr("osErrorMessage: Too many open files"));
}

TEST_F(Connect, AHostIsTakenAsItIsTyped) {
  calls.resolved = {EAI_NONAME};
  for (const fixture::DataRow& row : fixture::dataRows("hosts.txt")) {
    SCOPED_TRACE(row.left);
    calls.noted.clear();
    EXPECT_FALSE(connect(fixture::characters(row.left).c_str()));
    if (row.heading == "asked for") {
      ASSERT_FALSE(calls.noted.empty());
      EXPECT_EQ(calls.noted.front(), row.right);
    } else {
      EXPECT_THAT(calls.noted, IsEmpty());
      EXPECT_EQ("reason " + std::to_string(socket.get_ConnectFailReason()), row.heading);
      EXPECT_THAT(socket.lastErrorText(), HasSubstr(row.right + '\n'));
    }
  }
  EXPECT_FALSE(connect(nullptr));
  EXPECT_EQ(socket.get_ConnectFailReason(), kEmptyHostname);
}

TEST_F(Connect, AUrlIsWarnedAbout) {
  fixture::TcpPeer peer(fixture::silent());
  EXPECT_TRUE(connect("http://localhost/", peer.port()));
  EXPECT_THAT(socket.lastErrorText(),
              HasSubstr("The 1st arg SHOULD be a hostname (i.e. a domain name or IP address).  It "
                        "should NOT be a URL.\n"));
}

TEST_F(Connect, TlsAndImpossiblePortsFailWithAReason) {
  EXPECT_FALSE(socket.Connect("127.0.0.1", 443, true, 1000));
  EXPECT_EQ(socket.get_ConnectFailReason(), kInternalError);
  for (const int port : {-1, 65'536, 20'108 + 65'536}) {
    EXPECT_FALSE(connect("127.0.0.1", port));
    EXPECT_EQ(socket.get_ConnectFailReason(), kInternalError);
  }
  EXPECT_THAT(calls.noted, IsEmpty());
}

TEST_F(Connect, AnErrorOfConnectItselfIsARejection) {
  calls.instead["connect"] = [] { return -ENETUNREACH; };
  const std::size_t before = fixture::openDescriptors();
  EXPECT_FALSE(connect("192.0.2.1"));
  EXPECT_THAT(calls.noted, Contains(StartsWith("connect")).Times(4));
  EXPECT_EQ(socket.get_ConnectFailReason(), kRejected);
  EXPECT_EQ(fixture::openDescriptors(), before);
}

TEST_F(Connect, ANewConnectionReplacesTheOldOne) {
  fixture::TcpPeer first(fixture::silent());
  fixture::TcpPeer second(fixture::silent());
  fixture::connectTo(socket, first.port());
  const std::size_t before = fixture::openDescriptors();
  fixture::connectTo(socket, second.port());
  EXPECT_FALSE(connect("127.0.0.1"));
  EXPECT_FALSE(socket.get_IsConnected());
  EXPECT_LE(fixture::openDescriptors(), before);
}

}  // namespace
