// One invocation of the host: where its words go, the options store, the packages, and the project it works on.
#pragma once

#include <string>
#include <string_view>

#include "host/Host.h"
#include "host/log/LogStream.h"
#include "host/system/StopGuard.h"
#include "platform/commandline/Invocation.h"
#include "plugin/Qxcheck.h"

namespace qx::cli {

class Session : public Host {
 public:
  // Takes the global options. File names are made absolute here: a run changes the current folder. The guard
  // outlives it.
  Session(const Invocation& invocation, StopGuard& guard);

  // Results, to standard output, with nothing in them that a terminal obeys (platform/VisibleText.h). A failure
  // to write is told by WriteError.
  void Print(std::string_view text);
  // The same for what programs read byte for byte; visible where a terminal is at the other end only.
  void PrintExact(std::string_view text);
  const std::string& WriteError() const { return writeError_; }
  // A complaint or a warning, to standard error.
  static void Complain(const std::string& text);
  static void Warn(const std::string& text) { Complain("warning: " + text); }

  ColourChoice Colour() const { return colour_; }
  // What watches for Ctrl-C and time-outs.
  StopGuard& Guard() { return guard_; }

  // The build project that is the first operand, as an absolute path. Raises Exception where there is no such
  // file, or a folder. Warns of a run of it that was cut off.
  static std::string ProjectFile(const Invocation& invocation);
  // Opens a project: its variables and those of --set in force, its actions loaded through the packages.
  OpenProject Open(const std::string& file, const Invocation& invocation, ActionLog* log = nullptr);
  // Saves a project and prints the warnings that go with it.
  static void Save(OpenProject& project);
  // The action of a 1-based number; raises Exception that says why there is none.
  static TQXAction& ActionOf(OpenProject& project, int number);
  // The names of each --set that nothing in the project uses.
  std::vector<std::string> UnusedSettings(const OpenProject& project);
  void WarnOfUnusedSettings(const OpenProject& project);
  // The errors and warnings that the actions' own checks find: a word before the run, which goes on all the same.
  static std::vector<std::pair<int, CheckFinding>> ForetellRun(const OpenProject& project);
  // Puts --set and, when one is given, a project's own variables in force.
  void UseVariables(const Invocation& invocation, const BuildProject* project);

 private:
  void Write(LogFile out, const std::string& text);

  StopGuard& guard_;
  ColourChoice colour_ = ColourChoice::Automatic;
  std::string writeError_;
};

}  // namespace qx::cli
