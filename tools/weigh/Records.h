#pragma once

#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "Options.h"
#include "Session.h"
#include "Units.h"

namespace weigh {

using Json = nlohmann::ordered_json;

/// Local time with its distance to UTC: 2026-01-31T12:00:00+0200; or in another form, as strftime
/// takes it.
std::string timestamp(const char* form = "%Y-%m-%dT%H:%M:%S%z");

/// Milliseconds to the microsecond, as records have them.
double rounded(Milliseconds time);

/// A record as a line with its end.
std::string recordLine(const Json& record);
/// Writes one record on a line of standard output, at once.
void writeRecord(const Json& record);

/// The fields of a reading; numbers of a failed one are null.
void addReading(Json& record, const Reading& reading, Units units);

/// A text as a field of comma-separated values.
std::string csvText(const std::string& text);
/// The same fields as comma-separated values; those of a failed reading are empty.
std::string readingCsvHead(bool withDetails);
std::string readingCsv(const Reading& reading, Units units);

/// One line of text for people, without a line end.
std::string readingText(const Reading& reading, Units units);

/// Writes readings in one format, each as it comes.
class ReadingWriter {
 public:
  ReadingWriter(Format format, Units units, bool withDetails)
      : format_(format), units_(units), withDetails_(withDetails) {}

  void write(const Reading& reading);

 private:
  void writeCsv(const Reading& reading);

  Format format_;
  Units units_;
  bool withDetails_;
  long written_ = 0;
};

}  // namespace weigh
