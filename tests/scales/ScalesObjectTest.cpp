#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PtyLine.h"
#include "ScalesObject.h"
#include "TcpPeer.h"

namespace {

using fixture::PtyLine;
using fixture::TcpPeer;
using testing::ElementsAre;

/// A driver that only notes which of the base's steps reach it.
class NotingScale : public IScalesObject {
 public:
  int getScalesInfo(double*, double*, double*, long*) override { return 0; }
  int pressT(double) override { return 0; }
  int pressNull() override { return 0; }
  int setPrice(long) override { return 0; }
  int OpenComPort() override {
    notes.emplace_back("open");
    const int code = IScalesObject::OpenComPort();
    return answer < 0 ? code : answer;
  }
  int CloseComPort() override {
    notes.emplace_back("close");
    return IScalesObject::CloseComPort();
  }
  int CloseIfMust() override {
    notes.emplace_back("close if must");
    return IScalesObject::CloseIfMust();
  }

  std::vector<std::string> takeNotes() { return std::exchange(notes, {}); }
  IAddInDefBase* base() const { return addInBase; }
  int speed() const { return baudRate; }
  int tcp() const { return tcpPort; }

  int answer = -1;

 private:
  std::vector<std::string> notes;
};

IAddInDefBase* const kPlatform = reinterpret_cast<IAddInDefBase*>(0x1000);

TEST(ScalesObject, TestsTheConnectionInAFixedOrder) {
  PtyLine line;
  TcpPeer peer(fixture::silent());
  NotingScale scale;
  EXPECT_EQ(scale.SetComPort(line.path().c_str(), 9600, kPlatform), 0);
  // The base's opening closes first, then the connection is given back.
  EXPECT_THAT(scale.takeNotes(), ElementsAre("open", "close", "close if must", "close"));
  EXPECT_EQ(scale.isConnected(), 2);
  EXPECT_EQ(scale.speed(), 9600);
  EXPECT_EQ(scale.tcp(), 0);
  EXPECT_EQ(scale.base(), kPlatform);

  EXPECT_EQ(scale.SetLanPort(TcpPeer::kHost, peer.port(), nullptr), 0);
  EXPECT_THAT(scale.takeNotes(), ElementsAre("open", "close", "close if must", "close"));
  EXPECT_EQ(scale.isConnected(), 2);
  EXPECT_EQ(scale.speed(), 0);
  EXPECT_EQ(scale.tcp(), peer.port());
  EXPECT_EQ(scale.base(), nullptr);
}

TEST(ScalesObject, KeepsTheConnectionWhenTold) {
  PtyLine line;
  NotingScale scale;
  EXPECT_EQ(scale.SetLeaveConn(2), 0);
  EXPECT_EQ(scale.SetComPort(line.path().c_str(), 9600, kPlatform), 0);
  EXPECT_THAT(scale.takeNotes(), ElementsAre("open", "close", "close if must"));
  EXPECT_EQ(scale.isConnected(), 0);
  EXPECT_EQ(scale.isConnectedOrConnect(), 0);
  EXPECT_EQ(scale.CloseIfMust(), 0);
  EXPECT_EQ(scale.isConnected(), 0);
  EXPECT_EQ(scale.CloseComPort(), 0);
  scale.takeNotes();
  EXPECT_EQ(scale.isConnectedOrConnect(), 0);  // a lost line is opened by the next operation
  EXPECT_THAT(scale.takeNotes(), ElementsAre("open", "close"));
}

TEST(ScalesObject, HandsTheCodeOfTheOpeningOn) {
  PtyLine line;
  NotingScale scale;
  EXPECT_EQ(scale.SetComPort("/no/such/device", 9600, kPlatform), 1);
  EXPECT_EQ(scale.isConnectedOrConnect(), 1);
  // A TCP port of 0 or less means a serial line, whichever way it was set.
  for (const int tcp : {0, -1}) EXPECT_EQ(scale.SetLanPort(line.path().c_str(), tcp, nullptr), 0);
  EXPECT_EQ(scale.SetLanPort(line.path().c_str(), 1, nullptr), 1);
  scale.answer = 130;
  EXPECT_EQ(scale.SetComPort("", 9600, kPlatform), 130);
  EXPECT_EQ(scale.isConnectedOrConnect(), 130);
  // Without a port it only takes the platform's object.
  scale.takeNotes();
  EXPECT_EQ(scale.SetComPort(nullptr, 1200, nullptr), 1);
  EXPECT_EQ(scale.SetLanPort(nullptr, 5, nullptr), 1);
  EXPECT_THAT(scale.takeNotes(), ElementsAre());
  EXPECT_EQ(scale.base(), nullptr);
  EXPECT_EQ(scale.speed(), 9600);
}

TEST(ScalesObject, AnswersToItsIdAndToItsPort) {
  NotingScale scale;
  EXPECT_TRUE(scale.isComPortCmp(""));
  EXPECT_FALSE(scale.isComPortCmp(nullptr));
  EXPECT_EQ(scale.SetScalesName("\xC2\xE5\xF1\xFB-1"), 0);
  scale.SetComPort("/dev/none", 9600, nullptr);
  EXPECT_TRUE(scale.isComPortCmp("\xC2\xE5\xF1\xFB-1"));
  EXPECT_TRUE(scale.isComPortCmp("/dev/none"));
  for (const char* other :
       {"", "\xC2\xE5\xF1\xFB", "\xC2\xE5\xF1\xFB-10", "/dev/non", "/DEV/NONE"}) {
    EXPECT_FALSE(scale.isComPortCmp(other)) << other;
  }
  EXPECT_EQ(scale.SetScalesName(nullptr), 0);
  EXPECT_TRUE(scale.isComPortCmp("\xC2\xE5\xF1\xFB-1"));
}

TEST(ScalesObject, CutsNamesAt255Bytes) {
  NotingScale scale;
  const std::string whole(255, 'n');
  const std::string port(255, 'p');
  scale.SetScalesName((whole + std::string(65536, 'x')).c_str());
  scale.SetComPort((port + std::string(65536, 'x')).c_str(), 9600, nullptr);
  EXPECT_TRUE(scale.isComPortCmp(whole.c_str()));
  EXPECT_TRUE(scale.isComPortCmp(port.c_str()));
  // A shorter name leaves nothing of the longer one.
  scale.SetScalesName("n");
  EXPECT_TRUE(scale.isComPortCmp("n"));
  EXPECT_FALSE(scale.isComPortCmp(whole.c_str()));
}

}  // namespace
