// What continuous-integration systems are told within a log, each in its own words and escaped by its rules: blocks,
// errors and warnings, progress, the build's number. Values in, text out; every line is valid UTF-8 and ends in LF.
#pragma once

#include <string>
#include <string_view>

#include "host/diagnostics/DiagnosticLine.h"

namespace qx {

// One system. A null function: it has nothing of the kind. Texts may hold anything, line ends too.
struct ServiceSystem {
  std::string_view name;  // "teamcity"
  // A line of the log that is nothing but text, whatever it looks like: none of the systems acts on it.
  void (*line)(std::string& out, std::string_view text);
  // The line that holds an error or a warning, and what the system is told of it. `root`: the folder from which
  // the system names files, with a trailing delimiter; empty: unknown.
  void (*diagnostic)(std::string& out, std::string_view line, const Diagnostic& diagnostic,
                     const std::string& root);
  // An error that no compiler told.
  void (*problem)(std::string& out, std::string_view text);
  void (*open)(std::string& out, std::string_view name);
  void (*close)(std::string& out, std::string_view name);
  void (*openProject)(std::string& out, std::string_view name);
  void (*closeProject)(std::string& out, std::string_view name);
  void (*progress)(std::string& out, int percent, std::string_view text);
  // A version that was raised; the first of a run is the build's number.
  void (*version)(std::string& out, std::string_view name, std::string_view value, bool isFirst);
  std::string_view rootVariable;  // of the environment, which holds the root; may be empty
};

// Null: there is none of that name.
const ServiceSystem* FindServiceSystem(std::string_view name);

}  // namespace qx
