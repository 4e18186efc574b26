// One invocation of the host: where its words go, the options store, the packages, and the project it works
// on.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/cli/Arguments.h"
#include "host/runtime/LogStream.h"
#include "host/runtime/OpenProject.h"
#include "host/runtime/OptionsStore.h"
#include "host/runtime/PackageLoader.h"
#include "host/runtime/Variables.h"

namespace qx::cli {

class Session {
 public:
  // Takes the global options. File names are made absolute here: a run changes the current folder.
  explicit Session(const Invocation& invocation);
  // The packages go; actions are gone by then.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Results, to standard output. A failure to write is told by WriteError.
  void Print(std::string_view text);
  const std::string& WriteError() const { return writeError_; }
  // A complaint or a warning, to standard error.
  static void Complain(const std::string& text);
  static void Warn(const std::string& text) { Complain("warning: " + text); }

  ColourChoice Colour() const { return colour_; }

  // The store, read; its host settings are in force from then on.
  OptionsStore& Store();
  // The catalogue with the packages registered in it. Raises Exception when one of them cannot be.
  Catalogue& Packages(Registration registration = Registration::Runtime);
  // Every package as far as it came, for whoever wants to see how far that is.
  PackageLoader& LoadPackages(Registration registration);

  // Opens a project: its variables and those of --set in force, its actions loaded through the packages.
  OpenProject Open(const std::string& file, const Invocation& invocation, ActionLog* log = nullptr);
  // The action of a 1-based number; raises Exception that says why there is none.
  static TQXAction& ActionOf(OpenProject& project, int number);
  // Puts --set and, when one is given, a project's own variables in force.
  void UseVariables(const Invocation& invocation, const BuildProject* project);
  const qx::Variables& Variables() const { return variables_; }
  // Asked by the actions while they run.
  std::atomic<bool>& Stopping() { return stopping_; }

 private:
  std::vector<std::string> packageFiles_;
  std::string optionsFile_;  // empty: the user's
  ColourChoice colour_ = ColourChoice::Automatic;
  bool mendsSettings_ = false;  // wrong settings of the host are a warning to the command that changes them
  std::string writeError_;
  qx::Variables variables_;
  std::atomic<bool> stopping_{false};
  std::unique_ptr<OptionsStore> store_;
  std::unique_ptr<PackageLoader> loader_;
};

}  // namespace qx::cli
