#pragma once

#include <map>
#include <string>
#include <vector>

namespace fixture {

/// The whole of a file of tests/data. Throws `std::runtime_error` if there is none.
std::string dataFile(const std::string& name);

/// Its lines, without empty ones and remarks, which begin with "# ".
std::vector<std::string> dataLines(const std::string& name);

/// A line "left -> right  # remark" below the heading that it stands under.
struct DataRow {
  std::string heading;
  std::string left;
  std::string right;
  std::string remark;
};

/// The lines of a file that is made of such rows; every other line is a heading. Throws
/// `std::runtime_error` for a file without rows.
std::vector<DataRow> dataRows(const std::string& name);

/// The parts of "weight 1250, reply 'I A', stable" by the word that each begins with: what stands
/// behind it, or nothing.
std::map<std::string, std::string> dataFields(const std::string& text);

}  // namespace fixture
