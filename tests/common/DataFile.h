#pragma once

#include <string>
#include <vector>

namespace fixture {

/// The whole of a file of tests/data. Throws `std::runtime_error` if there is none.
std::string dataFile(const std::string& name);

/// Its lines, without empty ones and remarks, which begin with "# ".
std::vector<std::string> dataLines(const std::string& name);

}  // namespace fixture
