// What vsinspect prints about a file: text for people, or one JSON object.
#pragma once

#include <string>

namespace qx {

enum class Form { kText, kJson };

// Each ends in a line end. Raises the reader's own Exception when the file cannot be read.
std::string SolutionReport(const std::string& file, Form form);
std::string VersionInfoReport(const std::string& file, Form form);

}  // namespace qx
