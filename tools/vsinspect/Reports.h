// What vsinspect prints about a file: text for people, or one JSON object.
#pragma once

#include <string>

namespace qx {

enum class Form { AsText, AsJson };

// Each ends in a line end. Raises the reader's own Exception when the file cannot be read.
std::string SolutionReport(const std::string& file, Form form);
std::string VersionInfoReport(const std::string& file, Form form);
std::string BinaryReport(const std::string& file, Form form);

// `isGood`: every program is as it should be, or skipped.
struct BuiltAnswer {
  std::string text;
  bool isGood = false;
};
// `configuration` is the solution's.
BuiltAnswer BuiltReport(const std::string& solution, const std::string& configuration, Form form);

}  // namespace qx
