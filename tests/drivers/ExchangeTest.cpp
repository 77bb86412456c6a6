#include <array>

#include <gmock/gmock.h>

#include "DriverHarness.h"
#include "ModelsUnderTest.h"

// What holds for every driver, written once: its line, its request and attempts on a silent scale,
// its commands byte for byte, and what it answers to those that the scale lacks.

namespace {

/// What goes over the line of a model, by the scale's protocol. Bytes are texts for
/// `fixture::bytes`.
struct ExchangeRow {
  int model;
  /// Sent in each attempt; empty for a scale that transmits by itself.
  const char* request = "";
  int attempts = 3;
  /// All that a poll sleeps when the scale says nothing.
  int silence_ms = 1500;
  AtEntry atEntry = AtEntry::AllZero;
  /// As the exchange log names the line's settings.
  const char* line = "None\\8\\1";

  struct Sent {
    /// Null for a command that the scale lacks.
    const char* bytes = nullptr;
    int pauses_ms = 0;
  };
  Sent tare = {};
  Sent zero = {};
  /// For the price 1250, and for 1234567, whose two highest digits don't fit.
  Sent price = {};
  const char* longPrice = nullptr;
};

void PrintTo(const ExchangeRow& row, std::ostream* out) { *out << "model " << row.model; }

constexpr const char* kEven = "Even\\8\\1";

// clang-format off
constexpr auto kRows = std::to_array<ExchangeRow>({
    {.model = 0, .request = "00 00 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = kEven, .tare = {"00 00 01", 150}, .price = {"00 00 02 00 05 02 01 00 00"}, .longPrice = "00 00 02 07 06 05 04 03 00"},
    {.model = 1, .request = "3C 00 21 3E", .tare = {"3C 00 54 3E", 150}},
    {.model = 2, .request = "'G1' 0D 0A", .tare = {"'ST' 0D 0A", 150}},
    {.model = 3, .request = "'G01W' 0D 0A", .tare = {"'S01T' 0D 0A", 150}},
    {.model = 4, .request = "3C 00 21 3E", .tare = {"3C 00 54 3E", 150}},
    {.model = 7, .request = "02 40 44 00 04 03"},
    {.model = 8, .request = "'R' 00 00 00", .tare = {"'T'"}, .zero = {"'Z'"}},
    {.model = 9, .request = "'SI' 0D 0A", .attempts = 2, .silence_ms = 1000, .tare = {"'ST' 0D 0A", 150}},
    {.model = 10, .request = "'E'", .silence_ms = 900, .atEntry = AtEntry::Moving, .line = kEven},
    {.model = 11, .request = "'20050027:' 0D 0A"},
    {.model = 12, .request = "02 'AD05' 03"},
    {.model = 13, .request = "05 11", .silence_ms = 3 * (150 + 500)},
    {.model = 14, .request = "01 89", .silence_ms = 3 * (150 + 500)},
    {.model = 16, .request = "02 42 03", .attempts = 2, .silence_ms = 1000, .zero = {"02 45 03"}},
    {.model = 17, .request = "00 00 03 00 00 00 00 00", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = "Even\\8\\2"},
    {.model = 18},
    {.model = 19, .silence_ms = 500},
    {.model = 21, .request = "00 00 03 00 00 00 00 00", .silence_ms = 900, .atEntry = AtEntry::Stable, .tare = {"00 00 01", 150}, .price = {"00 00 02 00 05 02 01 00 00 | 00 00 02 00 05 02 01 00 00", 400}, .longPrice = "00 00 02 07 06 05 04 03 00 | 00 00 02 07 06 05 04 03 00"},
    {.model = 23, .request = "05", .attempts = 2, .silence_ms = 1000},
    {.model = 24, .request = "'XN' 0D 0A", .tare = {"'KTARE' 0D 0A", 150}},
    {.model = 25, .silence_ms = 500},
    {.model = 26, .request = "'S1;MSV?;'", .attempts = 2, .silence_ms = 1000, .tare = {"'S1;TAR;'", 150}},
    {.model = 27, .request = "05 11", .silence_ms = 3 * (150 + 500)},
    {.model = 28, .request = "2A 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .tare = {"2A 01", 150}, .price = {"2A 02 00 05 02 01 00 00"}, .longPrice = "2A 02 07 06 05 04 03 00"},
    {.model = 29, .silence_ms = 500},
    {.model = 30, .request = "00 00 03", .silence_ms = 900, .atEntry = AtEntry::Stable, .line = kEven, .tare = {"00 00 01", 150}, .price = {"00 00 02 '052100'"}, .longPrice = "00 00 02 '765430'"},
    {.model = 31},
    {.model = 33},
    {.model = 34},
    {.model = 35, .request = "'SUI' 0D 0A", .tare = {"'I' 0D 0A", 600}},
    {.model = 36},
    {.model = 37, .request = "'W' 0D", .tare = {"'T' 0D", 150}},
    {.model = 38, .request = "02 'AD05' 03"},
    {.model = 39},
    {.model = 40, .request = "01 03 00 03 00 04 B4 09", .tare = {"01 06 00 01 00 17 98 04", 150}, .zero = {"01 06 00 01 00 17 98 04", 150}},
    {.model = 41, .request = "01 03 00 02 00 03 A4 0B", .silence_ms = 900, .tare = {"01 06 00 07 A5 0B 02 9C", 150}},
});
// clang-format on

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
    CkString path(folder.makeFolder("Весы").c_str(), true);
    folder.write("Весы/log.txt", "");
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
      const fixture::Bytes expected = fixture::bytes(bytes);
      EXPECT_EQ(fixture::hex(line_.receive(expected.size())), fixture::hex(expected));
    }
  }

  fixture::PtyLine line_;
  std::unique_ptr<IScalesObject> scales_ = createScales(GetParam().model);
};

TEST_P(Exchange, Line) {
  const fixture::TempFolder folder;
  logInto(folder);
  ASSERT_EQ(connect(1), kSuccess);
  scales_.reset();
  // Pseudo-terminals carry no parity; the log shows what the port was told.
  const std::string wanted =
      ";9600\\" + std::string(GetParam().line) + ", Handshaking=0, xONxOFF=0";
  EXPECT_THAT(folder.read("Весы/log_scales_id.log"), HasSubstr(line_.path() + wanted));
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
  EXPECT_EQ(poll.reading.stable, GetParam().atEntry == AtEntry::Stable);

  fixture::Bytes expected;
  for (int i = 0; i < GetParam().attempts; ++i) {
    const fixture::Bytes request = fixture::bytes(GetParam().request);
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
  EXPECT_EQ(poll.reading.stable, GetParam().atEntry == AtEntry::Stable);
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

INSTANTIATE_TEST_SUITE_P(Model, Exchange, testing::ValuesIn(kRows), numberOfRow);

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
  line_.play(fixture::answering(fixture::bytes(price ? "00 00 02" : "'I' 0D 0A"),
                                fixture::text("I A\r\n")));
  EXPECT_EQ(price ? scales_->setPrice(1250) : scales_->pressT(0.0), kSuccess);
  scales_->CloseComPort();
  const std::string log = folder.read("Весы/log_scales_id.log");
  const std::size_t reply = log.find("IN <<<<<<");
  ASSERT_NE(reply, std::string::npos) << log;
  // The price of model 21 goes out twice, and both replies wait for its one read.
  EXPECT_THAT(log.substr(reply), HasSubstr(price ? "Bytes:   10" : "Bytes:    5"));
}

INSTANTIATE_TEST_SUITE_P(Model, ExchangeTail,
                         testing::Values(ExchangeRow{.model = 21}, ExchangeRow{.model = 35}),
                         numberOfRow);

/// From the platform a negative price comes as a large number, of which the lowest digits go out;
/// one that is given to a driver divides as the signed number that it is.
TEST(ExchangeOfPrices, NumbersThatAreNoPrice) {
  fixture::PtyLine line;
  const struct {
    int model;
    long price;
    const char* bytes;
  } rows[] = {{0, 4294967295, "00 00 02 05 09 02 07 06 00"},
              {0, 0, "00 00 02 00 00 00 00 00 00"},
              {0, -1250, "00 00 02 00 FB FE FF 00 00"},
              {30, -1250, "00 00 02 30 2B 2E 2F 30 30"}};
  for (const auto& row : rows) {
    const auto scales = createScales(row.model);
    ASSERT_EQ(scales->SetComPort(line.path().c_str(), 9600, nullptr), kSuccess);
    EXPECT_EQ(scales->setPrice(row.price), kSuccess);
    EXPECT_EQ(fixture::hex(line.receive(9)), row.bytes);
  }
}

/// The rows stand for all models that have a protocol.
TEST(ExchangeRows, NoModelIsMissing) {
  std::vector<int> inRows;
  for (const ExchangeRow& row : kRows) inRows.push_back(row.model);
  EXPECT_EQ(inRows, modelsWithSheet());
  EXPECT_EQ(inRows.size(), 36u);
}

}  // namespace
