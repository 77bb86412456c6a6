#include "Records.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <cmath>
#include <ctime>

#include "Doctor.h"
#include "Models.h"
#include "ResultCode.h"
#include "Text.h"

namespace weigh {

namespace {

/// With `digits` behind the point, of which zeros behind the first `fewest` are left out. What is
/// zero then has no sign.
std::string number(double value, int digits, std::size_t fewest) {
  std::string text = fmt::format("{:.{}f}", value, digits);
  const std::size_t shortest = text.find('.') + fewest + 1;
  while (text.size() > shortest && text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  if (text.find_first_not_of("-0.") == std::string::npos && text[0] == '-') text.erase(0, 1);
  return text;
}

std::string csvField(const Json& value) {
  if (value.is_null()) return {};
  if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
  if (!value.is_string()) return value.dump();
  const std::string text = visible(value.get<std::string>());
  if (text.find_first_of(",\"\n\t ") == std::string::npos) return text;
  std::string field = "\"";
  for (const char c : text) field.append(c == '"' ? 2 : 1, c);
  return field + '"';
}

std::string connectionRemedy(const Connection& connection) {
  if (connection.network) {
    return say(
        "Does {0} answer to ping, and does the scale (or its converter) listen on TCP port "
        "{1}? Most take one connection at a time.",
        connection.host, connection.tcpPort);
  }
  const std::string& device = connection.device;
  if (::access(device.c_str(), F_OK) != 0)
    return say("There is no {0}. Serial devices here: {1}.", device, serialDevicesText());
  if (::access(device.c_str(), R_OK | W_OK) != 0) {
    return say(
        "This user may not open {0}; add it to the device's group (as a rule `dialout`), log "
        "in anew.",
        device);
  }
  return say("Is {0} in use by another program, and a serial line? Does the line take {1} baud?",
             device, connection.baud);
}

}  // namespace

Units unitsOf(int model) {
  const ScalesModel* row = findScalesModel(model);
  if (row == nullptr || row->sheet == nullptr) return {};
  return {.weight = row->sheet->weightUnit, .money = row->sheet->moneyUnit};
}

bool isEmulator(int model) {
  const ScalesModel* row = findScalesModel(model);
  return row != nullptr && row->create != nullptr && row->sheet == nullptr;
}

std::string weightText(double weight, Units units) {
  constexpr int kDigits = 6;
  return number(weight, kDigits, units.weight == WeightUnit::Kilogram ? 3 : 0) + " " +
         unitText(units.weight);
}

std::string moneyText(double amount, Units units) {
  switch (units.money) {
    case MoneyUnit::Whole: return number(amount, 2, 2);
    case MoneyUnit::Hundredth: return number(amount, 2, 0) + "/100";
    case MoneyUnit::AsCounted: return number(amount, 2, 0);
    case MoneyUnit::None: break;
  }
  return "-";
}

std::string unitText(WeightUnit unit) {
  switch (unit) {
    case WeightUnit::Kilogram: return say("kg");
    case WeightUnit::Gram: return say("g");
    case WeightUnit::AsShown: break;
  }
  return say("(as shown)");
}

std::string motionText(bool stable) { return stable ? say("stable") : say("moving"); }

std::string msText(Milliseconds time) { return fmt::format("{:.1f}", time.count()); }

std::string codeText(std::uint32_t code, const std::string& text) {
  return say("error {0}: {1}", code, text);
}

std::string weighingText(const Weighing& weighing, Units units) {
  if (!weighing.good()) return codeText(weighing.error.code, weighing.error.text);
  std::string line = weightText(weighing.weight, units);
  if (!weighing.details) return line;
  if (units.money != MoneyUnit::None) {
    line += "   " + say("price {0}", moneyText(weighing.details->price, units)) + "   " +
            say("cost {0}", moneyText(weighing.details->cost, units));
  }
  return line + "   " + motionText(weighing.details->stable);
}

std::string findingText(const std::string& heading, const Finding& finding) {
  return fmt::format("{}: {} - {}\n  {}: {}\n", heading, finding.code, finding.cause, say("Remedy"),
                     finding.remedy);
}

Json findingRecord(const Finding& finding) {
  return {{"code", finding.code}, {"cause", finding.cause}, {"remedy", finding.remedy}};
}

Json orNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

std::string unitName(WeightUnit unit) {
  switch (unit) {
    case WeightUnit::Kilogram: return "kg";
    case WeightUnit::Gram: return "g";
    case WeightUnit::AsShown: break;
  }
  return {};
}

std::string unitName(MoneyUnit unit) {
  switch (unit) {
    case MoneyUnit::Whole: return "whole";
    case MoneyUnit::Hundredth: return "hundredth";
    case MoneyUnit::AsCounted: return "counted";
    case MoneyUnit::None: break;
  }
  return {};
}

std::string timestamp(const char* form) {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&now, &local);
  std::array<char, 64> text = {};
  std::strftime(text.data(), text.size(), form, &local);
  return text.data();
}

double rounded(Milliseconds time) {
  return static_cast<double>(std::chrono::round<std::chrono::microseconds>(time).count()) / 1000.0;
}

std::string recordLine(const Json& record) {
  return record.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

void writeRecord(const Json& record) { print(recordLine(record)); }

void addWeighing(Json& record, const Weighing& weighing, Units units) {
  const auto ifGood = [&](auto value) { return weighing.good() ? Json(value) : Json(); };
  record["weight"] = ifGood(weighing.weight);
  record["unit"] = orNull(unitName(units.weight));
  if (weighing.details) {
    record["price"] = ifGood(weighing.details->price);
    record["cost"] = ifGood(weighing.details->cost);
    record["stable"] = ifGood(weighing.details->stable);
  }
  record["code"] = weighing.error.code;
  record["error"] = weighing.good() ? Json() : Json(weighing.error.text);
  if (weighing.details) record["money_unit"] = orNull(unitName(units.money));
  record["poll_ms"] = rounded(weighing.poll);
}

std::string csvHead(const Json& record) {
  std::vector<std::string> names;
  for (const auto& [name, value] : record.items()) names.push_back(name);
  return joined(names, ",");
}

std::string csvRow(const Json& record) {
  std::vector<std::string> fields;
  for (const Json& value : record) fields.push_back(csvField(value));
  return joined(fields, ",");
}

void RecordWriter::write(const Json& record, const std::string& text) {
  switch (format_) {
    case Format::Text: print(text + "\n"); break;
    case Format::Json: writeRecord(record); break;
    case Format::Csv:
      print((headed_ ? "" : csvHead(record) + "\n") + csvRow(record) + "\n");
      headed_ = true;
      break;
  }
}

std::string errorText(const host::LastError& error) {
  return say("scale error {0}: {1}", error.code, error.text);
}

std::string remedyFor(std::uint32_t code, const Connection& connection) {
  switch (code) {
    case kNoConnection: return connectionRemedy(connection);
    case kNoAnswer:
      if (isEmulator(connection.model))
        return say("The emulator fails one reading in ten on purpose; read again.");
      return say(
          "Check cable, speed and the protocol set in the scale's menu, and that model {0} is "
          "the right one; `--log DIR` shows every byte.",
          connection.model);
    case kNotSupported:
      return say(
          "Model {0} has no such command, or no driver; `weigh models` tells which have one.",
          connection.model);
    case kOverload: return say("Take the load off the scale.");
    case kWrongFolder: return say("Make the folder or name another one.");
    default: return {};
  }
}

void complain(const host::LastError& error, const Connection& connection) {
  complain(errorText(error), remedyFor(error.code, connection));
}

ExitCode judge(const host::LastError& error, const Connection& connection) {
  if (error.code == kSuccess) return kGood;
  complain(error, connection);
  return kFailed;
}

}  // namespace weigh
