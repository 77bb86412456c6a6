#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ExchangeRecords.h"
#include "Fields.h"
#include "Models.h"
#include "Recognise.h"
#include "ResultCode.h"

namespace recognise {

/// Which model an exchange log is of.
struct LogModel {
  /// Null where none explains the log.
  const ScalesModel* model = nullptr;
  /// Numbers of others that explain it as well.
  std::vector<int> kin;
  /// By what was written and answered; otherwise by what was written alone.
  bool byFrames = false;
};
/// The first few thousand records of a log are enough.
LogModel recogniseLog(std::span<const exchange::Record> log);

/// What one record was for.
enum class Role {
  Event,
  /// The request, whole or the first or second part of it.
  Request,
  RequestFirst,
  RequestSecond,
  Tare,
  Zero,
  Price,
  /// Written, and no command of the model.
  UnknownWrite,
  /// Thrown away before a request, or before a frame of a scale that transmits by itself.
  Drained,
  /// Stepped over on the way to a start byte.
  Skipped,
  /// Read into the frame.
  FramePart,
};

/// Why a driver refused what it read.
struct Refusal {
  enum class Reason {
    /// Nothing was read.
    Silence,
    /// The bytes ended before the frame did.
    TooShort,
    /// The terminator is missing.
    NoEnd,
    /// Those of `wrong` aren't as the protocol wants them.
    WrongBytes,
    /// The checksum, the one byte of `wrong`, doesn't agree.
    Checksum,
  };
  struct WrongByte {
    /// From 0.
    std::size_t position;
    std::uint8_t is;
    /// What the protocol would take there.
    std::vector<std::uint8_t> wanted;
  };

  Reason reason = Reason::Silence;
  /// Bytes that there are, and that a frame has; for a terminator the fewest.
  std::size_t size = 0;
  std::size_t wantedSize = 0;
  std::vector<WrongByte> wrong;
};

/// How an attempt ended.
struct Verdict {
  bool good = false;
  Bytes frame;
  /// Of a good frame.
  Said said;
  std::vector<FrameField> fields;
  /// Of a refused one.
  Refusal refusal;
  int poll = 0;
  int attempt = 0;
};

/// A record with what it was for, and the verdict that it brought.
struct ExplainedRecord {
  exchange::Record record;
  Role role;
  /// Poll and attempt that it is part of; 0 for those of none.
  int poll = 0;
  int attempt = 0;
  /// Bytes of the frame with this record.
  std::size_t frameBytes = 0;
  std::optional<Verdict> verdict = std::nullopt;
};

/// How one poll ended.
struct PollEnd {
  bool good;
  /// Result code that the caller got.
  int code;
  int attempts;
  /// Of a poll without a good frame, why its last attempt failed.
  Refusal::Reason reason;
};

/// Goes through a log as the driver of the model made it, record by record. The log doesn't say
/// where a poll ends; it ends here with an answer that ends it, with as many attempts as the driver
/// makes, and with an event of the line.
class LogExplainer {
 public:
  using TellRecord = std::function<void(ExplainedRecord)>;
  using TellPoll = std::function<void(const PollEnd&)>;
  /// A record is told when the next one has shown what became of it.
  LogExplainer(const ScalesModel& model, TellRecord tellRecord, TellPoll tellPoll);

  void take(exchange::Record record);
  /// The log is over: tells what is left.
  void end();

 private:
  void takeWrite(exchange::Record record);
  void takeRead(exchange::Record record);
  void takeStreamed(exchange::Record record);
  void takeAnswer(exchange::Record record);
  bool isWhole() const;
  void beginAttempt();
  void endAttempt();
  void endPoll();
  void add(exchange::Record record, Role role, bool ofAttempt = true);
  void tellHeld();

  const ProtocolSheet& sheet_;
  TellRecord tellRecord_;
  TellPoll tellPoll_;
  /// The last record, whose verdict may be to come.
  std::optional<ExplainedRecord> held_;
  Bytes frame_;
  bool open_ = false;
  int poll_ = 0;
  int attempt_ = 0;
  bool anyGood_ = false;
  int code_ = kNoAnswer;
  Refusal::Reason reason_ = Refusal::Reason::Silence;
};

struct Explanation {
  std::vector<ExplainedRecord> records;
  std::vector<PollEnd> polls;
};
/// The same for a whole log.
Explanation explainLog(std::span<const exchange::Record> log, const ScalesModel& model);

}  // namespace recognise
