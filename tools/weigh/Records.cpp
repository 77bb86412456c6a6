#include "Records.h"

#include <array>
#include <charconv>
#include <chrono>
#include <ctime>
#include <iostream>

#include "Texts.h"

namespace weigh {

namespace {

/// The shortest text that reads back as the same number.
std::string shortest(double number) {
  std::array<char, 512> text = {};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), end.ptr};
}

Json textOrNull(const char* text) { return text == nullptr ? Json() : Json(text); }

}  // namespace

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

void writeRecord(const Json& record) { std::cout << recordLine(record) << std::flush; }

void addReading(Json& record, const Reading& reading, Units units) {
  const auto ifGood = [&](auto value) { return reading.good() ? Json(value) : Json(); };
  record["weight"] = ifGood(reading.weight);
  record["unit"] = textOrNull(unitName(units.weight));
  if (reading.details) {
    record["price"] = ifGood(reading.details->price);
    record["cost"] = ifGood(reading.details->cost);
    record["money_unit"] = textOrNull(unitName(units.money));
    record["stable"] = ifGood(reading.details->stable);
  }
  record["code"] = reading.error.code;
  record["error"] = reading.good() ? Json() : Json(reading.error.text);
  record["poll_ms"] = rounded(reading.poll);
}

std::string csvText(const std::string& text) {
  std::string field = "\"";
  for (const char c : text) field.append(c == '"' ? 2 : 1, c);
  return field + '"';
}

std::string readingCsvHead(bool withDetails) {
  return std::string("weight,unit,") + (withDetails ? "price,cost,stable," : "") +
         "code,error,poll_ms";
}

std::string readingCsv(const Reading& reading, Units units) {
  const bool good = reading.good();
  const char* unit = unitName(units.weight);
  std::string row = good ? shortest(reading.weight) : "";
  row.append(",").append(unit == nullptr ? "" : unit).append(",");
  if (reading.details) {
    const ReadingDetails& details = *reading.details;
    if (good)
      row += shortest(details.price) + ',' + shortest(details.cost) + ',' +
             (details.stable ? '1' : '0');
    else
      row += ",,";
    row += ',';
  }
  row += std::to_string(reading.error.code) + ',' + (good ? "" : csvText(reading.error.text)) + ',';
  return row + shortest(rounded(reading.poll));
}

std::string readingText(const Reading& reading, Units units) {
  if (!reading.good()) {
    return fill(text::kErrorWord, {std::to_string(reading.error.code), reading.error.text});
  }
  std::string line = weightText(reading.weight, units);
  if (!reading.details) return line;
  if (units.money != MoneyUnit::None) {
    line += std::string("   ") + say(text::kPriceWord) + " " +
            moneyText(reading.details->price, units) + "   " + say(text::kCostWord) + " " +
            moneyText(reading.details->cost, units);
  }
  return line + "   " + stateText(reading);
}

void ReadingWriter::write(const Reading& reading) {
  ++written_;
  switch (format_) {
    case Format::Text: std::cout << readingText(reading, units_) << std::endl; return;
    case Format::Json: {
      Json record = {{"reading", written_}, {"time", timestamp()}};
      addReading(record, reading, units_);
      writeRecord(record);
      return;
    }
    case Format::Csv: writeCsv(reading); return;
  }
}

void ReadingWriter::writeCsv(const Reading& reading) {
  if (written_ == 1) std::cout << "reading,time," << readingCsvHead(withDetails_) << '\n';
  std::cout << written_ << ',' << timestamp() << ',' << readingCsv(reading, units_) << std::endl;
}

}  // namespace weigh
