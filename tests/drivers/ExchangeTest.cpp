#include <sstream>

#include <gmock/gmock.h>

#include "DriverHarness.h"
#include "ExchangeRows.h"
#include "FrameText.h"
#include "Models.h"

// What holds for every driver, written once: its line, its request and attempts on a silent scale,
// its commands byte for byte, and what it answers to those that the scale lacks.

void PrintTo(const ExchangeRow& row, std::ostream* out) { *out << "model " << row.model; }

namespace {

using testing::HasSubstr;

std::string numberOfRow(const testing::TestParamInfo<ExchangeRow>& test) {
  return std::to_string(test.param.model);
}

class Exchange : public testing::TestWithParam<ExchangeRow> {
 protected:
  void SetUp() override { ASSERT_NE(scales_, nullptr); }

  int connect(int leave) {
    scales_->SetLeaveConn(leave);
    return scales_->SetComPort(line_.path().c_str(), 9600, nullptr);
  }
  void logInto(const fixture::TempFolder& folder) {
    folder.write("log.txt", "");
    CkString path;
    path.setStringUtf8(folder.path().c_str());
    scales_->SetPathToDll(path);
    scales_->SetScalesName("id");
  }

  /// Runs a command against a silent scale, and on a line that isn't there.
  template <typename Command>
  void holdCommand(const char* bytes, int pauses_ms, Command command) {
    ASSERT_EQ(scales_->SetComPort("/nonexistent/line", 9600, nullptr), kNoConnection);
    // A command that the scale lacks doesn't even try to open the port.
    EXPECT_EQ(command(), bytes == nullptr ? kNotSupported : kNoConnection);
    if (bytes == nullptr) return;

    for (const int leave : {0, 1}) {
      ASSERT_EQ(connect(leave), kSuccess);
      const milliseconds before = sleptSoFar();
      EXPECT_EQ(command(), kSuccess);
      EXPECT_EQ(sleptSoFar() - before, milliseconds(pauses_ms));
      EXPECT_EQ(scales_->isConnected() == COrbComLanPort::kConnected, leave == 1);
      const FrameBytes expected = frameBytes(bytes);
      EXPECT_EQ(fixture::hex(line_.receive(expected.size())), fixture::hex(expected));
    }
  }

  fixture::PtyLine line_;
  std::unique_ptr<IScalesObject> scales_ = createScales(GetParam().model);
};

TEST_P(Exchange, LineSettings) {
  const fixture::TempFolder folder;
  logInto(folder);
  ASSERT_EQ(connect(1), kSuccess);
  const termios settings = line_.settings();
  EXPECT_EQ(cfgetispeed(&settings), speed_t{B9600});
  EXPECT_EQ(cfgetospeed(&settings), speed_t{B9600});
  EXPECT_EQ(settings.c_cflag & CSIZE, tcflag_t{CS8});
  EXPECT_EQ((settings.c_cflag & CSTOPB) != 0, GetParam().model == 17);
  scales_.reset();
  // Pseudo-terminals carry no parity; the log shows what the port was told.
  const std::string wanted =
      ";9600\\" + std::string(GetParam().line) + ", Handshaking=0, xONxOFF=0";
  EXPECT_THAT(folder.read("log_scales_id.log"), HasSubstr(line_.path() + wanted));
}

TEST_P(Exchange, SilentScale) {
  ASSERT_EQ(connect(0), kSuccess);
  const Poll poll = pollOnce(*scales_);
  EXPECT_EQ(poll.code, kNoAnswer);
  EXPECT_EQ(poll.slept, milliseconds(GetParam().silence_ms));
  EXPECT_NE(scales_->isConnected(), COrbComLanPort::kConnected);

  const double kept = GetParam().atEntry == AtEntry::AllZero ? 0.0 : kOfCaller;
  EXPECT_EQ(poll.reading.weight, kept);
  EXPECT_EQ(poll.reading.price, kept);
  EXPECT_EQ(poll.reading.cost, kept);
  EXPECT_EQ(poll.reading.stable, GetParam().atEntry == AtEntry::Stable ? 1 : 0);

  FrameBytes expected;
  for (int i = 0; i < GetParam().attempts; ++i) {
    const FrameBytes request = frameBytes(GetParam().request);
    expected.insert(expected.end(), request.begin(), request.end());
  }
  // A scale that transmits by itself is sent nothing, as a wait for a byte shows.
  const std::size_t wanted = std::max<std::size_t>(expected.size(), 1);
  EXPECT_EQ(fixture::hex(line_.receive(wanted)), fixture::hex(expected));
}

TEST_P(Exchange, NoLine) {
  ASSERT_EQ(scales_->SetComPort("/nonexistent/line", 9600, nullptr), kNoConnection);
  const Poll poll = pollOnce(*scales_);
  EXPECT_EQ(poll.code, kNoConnection);
  EXPECT_EQ(poll.reading.weight, GetParam().atEntry == AtEntry::AllZero ? 0.0 : kOfCaller);
  EXPECT_EQ(poll.reading.stable, GetParam().atEntry == AtEntry::Stable ? 1 : 0);
}

TEST_P(Exchange, TareAndZero) {
  holdCommand(GetParam().tare.bytes, GetParam().tare.pauses_ms,
              [&] { return scales_->pressT(5.0); });
  holdCommand(GetParam().zero.bytes, GetParam().zero.pauses_ms,
              [&] { return scales_->pressNull(); });
}

TEST_P(Exchange, Price) {
  if (GetParam().model == 24) return;  // takes setup commands in place of a price, see below
  const int pauses_ms = GetParam().price.pauses_ms;
  holdCommand(GetParam().price.bytes, pauses_ms, [&] { return scales_->setPrice(1250); });
  holdCommand(GetParam().longPrice, pauses_ms, [&] { return scales_->setPrice(1234567); });
}

INSTANTIATE_TEST_SUITE_P(Model, Exchange, testing::ValuesIn(exchangeRows()), numberOfRow);

using ExchangeOf24 = Exchange;

TEST_P(ExchangeOf24, SetupCommands) {
  holdCommand("'STREAM=OFF' 0D 0A", 150, [&] { return scales_->setPrice(12345); });
  holdCommand("'EX' 0D 0A", 150, [&] { return scales_->setPrice(1); });
  holdCommand("'SX' 0D 0A", 150, [&] { return scales_->setPrice(2); });
}

/// The port was opened before the price was looked at, and stays open.
TEST_P(ExchangeOf24, OtherPrices) {
  ASSERT_EQ(connect(0), kSuccess);
  for (const long price : {3L, 0L, 1250L, 0x100000001L}) {
    scales_->CloseComPort();
    EXPECT_EQ(scales_->setPrice(price), kNotSupported);
    EXPECT_EQ(scales_->isConnected(), COrbComLanPort::kConnected);
  }
  EXPECT_TRUE(line_.receive(1).empty());
}

INSTANTIATE_TEST_SUITE_P(Model, ExchangeOf24, testing::Values(ExchangeRow{.model = 24}),
                         numberOfRow);

/// The commands with a tail: what the scale says to them is read and thrown away.
class ExchangeTail : public Exchange {};

TEST_P(ExchangeTail, ReplyIsReadAndDropped) {
  const fixture::TempFolder folder;
  logInto(folder);
  ASSERT_EQ(connect(1), kSuccess);
  const bool price = GetParam().model == 21;
  Answers answers(frameBytes(price ? "00 00 02" : "'I' 0D 0A"), {fixture::text("I A\r\n")});
  line_.play(answers.script());
  EXPECT_EQ(price ? scales_->setPrice(1250) : scales_->pressT(0.0), kSuccess);
  scales_->CloseComPort();
  const std::string log = folder.read("log_scales_id.log");
  const std::size_t reply = log.find("IN <<<<<<");
  ASSERT_NE(reply, std::string::npos) << log;
  // The price of model 21 goes out twice, and both replies wait for its one read.
  EXPECT_THAT(log.substr(reply), HasSubstr(price ? "Bytes:   10" : "Bytes:    5"));
}

INSTANTIATE_TEST_SUITE_P(Model, ExchangeTail,
                         testing::Values(ExchangeRow{.model = 21}, ExchangeRow{.model = 35}),
                         numberOfRow);

/// A negative price reaches the drivers as a large number, of which the lowest digits go out.
TEST(ExchangeOfPrices, NumbersThatAreNoPrice) {
  fixture::PtyLine line;
  const auto scales = createScales(0);
  ASSERT_EQ(scales->SetComPort(line.path().c_str(), 9600, nullptr), kSuccess);
  EXPECT_EQ(scales->setPrice(4294967295), kSuccess);
  EXPECT_EQ(fixture::hex(line.receive(9)), "00 00 02 05 09 02 07 06 00");
  EXPECT_EQ(scales->setPrice(0), kSuccess);
  EXPECT_EQ(fixture::hex(line.receive(9)), "00 00 02 00 00 00 00 00 00");
}

/// The rows stand for all models that have a protocol.
TEST(ExchangeRows, NoModelIsMissing) {
  std::vector<int> inRows;
  for (const ExchangeRow& row : exchangeRows()) inRows.push_back(row.model);
  std::vector<int> inTable;
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) inTable.push_back(model.number);
  }
  EXPECT_EQ(inRows, inTable);
  EXPECT_EQ(inRows.size(), 36u);
}

}  // namespace
