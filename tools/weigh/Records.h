#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ProtocolSheet.h"
#include "Session.h"

// How what the scales say is written, for people and for programs.

namespace weigh {

/// What the numbers of a model's driver mean.
struct Units {
  WeightUnit weight = WeightUnit::Kilogram;
  MoneyUnit money = MoneyUnit::Whole;
};

/// Kilograms and money units for the emulator and for a model that isn't in the list.
Units unitsOf(int model);
/// Whether the model makes its weights up.
bool isEmulator(int model);

/// "2.345 kg", "1250 g", "17 (as shown)".
std::string weightText(double weight, Units units);
/// "12.50", "1250/100", "1250"; "-" for a scale without prices.
std::string moneyText(double amount, Units units);
/// "kg", "g"; for digits without their decimal point "(as shown)".
std::string unitText(WeightUnit unit);
/// "stable" or "moving".
std::string motionText(bool stable);
/// The number of milliseconds with one digit behind the point.
std::string msText(Milliseconds time);
/// "error 3: ..."
std::string codeText(std::uint32_t code, const std::string& text);
/// One line for people, without a line end.
std::string weighingText(const Weighing& weighing, Units units);

using Json = nlohmann::ordered_json;

/// One thing found out, in the current language.
struct Finding {
  /// For scripts, the same in all languages.
  std::string code;
  std::string cause;
  /// May be empty.
  std::string remedy = {};
};

/// "Verdict: silent - nothing comes in", and the remedy on a line of its own.
std::string findingText(const std::string& heading, const Finding& finding);
Json findingRecord(const Finding& finding);

/// Null for an empty text.
Json orNull(const std::string& text);
/// Names for programs, the same in all languages; empty where a scale says nothing.
std::string unitName(WeightUnit unit);
std::string unitName(MoneyUnit unit);
/// Local time with its distance to UTC: 2026-01-31T12:00:00+0200; or in another form, as strftime
/// takes it.
std::string timestamp(const char* form = "%Y-%m-%dT%H:%M:%S%z");
/// Milliseconds to the microsecond, as records have them.
double rounded(Milliseconds time);
/// A record as a line with its end.
std::string recordLine(const Json& record);
/// Writes one record on a line of standard output, at once.
void writeRecord(const Json& record);
/// The fields of a weighing; numbers of a failed one are null.
void addWeighing(Json& record, const Weighing& weighing, Units units);
/// The record's names, or its values, as a line of comma-separated values. Records of a kind have
/// their fields in one order.
std::string csvHead(const Json& record);
std::string csvRow(const Json& record);

/// Writes records in one format, each as it comes.
class RecordWriter {
 public:
  explicit RecordWriter(Format format) : format_(format) {}
  /// `text` is what people get in place of the record.
  void write(const Json& record, const std::string& text);

 private:
  Format format_;
  bool headed_ = false;
};

/// "scale error 3: ..."
std::string errorText(const host::LastError& error);
/// What the user can do about an error; empty where there is nothing to say.
std::string remedyFor(std::uint32_t code, const Connection& connection);
using ::complain;
/// Writes the scale's error with its code, text and remedy to standard error.
void complain(const host::LastError& error, const Connection& connection);
/// Complains and gives the exit code, unless the error is none.
ExitCode judge(const host::LastError& error, const Connection& connection);

}  // namespace weigh
