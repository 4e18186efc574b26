// The errors and warnings that somebody has looked at and lives with, kept in a file: what it holds does not
// count. They are known again by code, file and message, not by line, which every edit above moves.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

#include "host/diagnostics/DiagnosticLine.h"

namespace qx {

// The file is JSON, one diagnostic a line, sorted, so that a repository shows what was added:
//   {"version":1,"diagnostics":[
//   {"code":"C4244","file":"Core/a.cpp","message":"possible loss of data"}
//   ]}
// Files below the folder are named from there, with "/", so that the file serves in every checkout; letter
// case and the kind of delimiter make no difference. Bytes that are not UTF-8 are U+FFFD.
class Baseline {
 public:
  // An empty one. `folder`: from where files are named; the build project's.
  explicit Baseline(std::string folder) : folder_(std::move(folder)) {}

  // Raises Exception that says what is wrong with the text.
  static Baseline Read(std::string_view text, std::string folder);

  bool Holds(const Diagnostic& diagnostic) const;
  std::size_t Size() const { return keys_.size(); }

 private:
  std::string folder_;
  std::unordered_set<std::string> keys_;
};

// The text of a file that holds these.
std::string BaselineText(std::span<const Diagnostic> diagnostics, const std::string& folder);

}  // namespace qx
