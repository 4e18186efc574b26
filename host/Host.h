// What every program of the host stands on, and the owner of its state: the options store with the host's own
// settings in force, the catalogue with the packages, the variables, and the projects that are opened with
// them.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/actions/PackageLoader.h"
#include "host/actions/Variables.h"
#include "host/project/OpenProject.h"
#include "host/settings/HostSettings.h"
#include "host/settings/OptionsStore.h"

namespace qx {

// One at a time in a process; the thread that makes it is the one that uses it, but for Stopping.
class Host {
 public:
  struct Settings {
    std::vector<std::string> packageFiles;  // absolute; empty: the package that comes with the program
    std::string defaultPackage;             // its name, without an ending
    std::string optionsFile;                // absolute; empty: the user's
    // Wrong settings of the host in the store are a warning, not an error: for whoever is there to mend them.
    bool mendsSettings = false;
    // Takes warnings, each one sentence. May be null.
    std::function<void(const std::string&)> warn;
  };
  explicit Host(Settings settings) : settings_(std::move(settings)) {}
  // The packages go; actions are gone by then.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The store, read; its host settings are in force from then on. Raises Exception naming the file.
  OptionsStore& Store();
  // What packages have registered so far.
  qx::Catalogue& Catalogue() { return catalogue_; }
  // The catalogue with the packages registered in it. Raises Exception when one of them cannot be.
  qx::Catalogue& Packages(Registration registration = Registration::Runtime);
  // Every package as far as it came, for whoever wants to see how far that is.
  PackageLoader& LoadPackages(Registration registration);

  // A project with its own variables in force and its actions made and loaded through the packages.
  OpenProject Open(BuildProject project, ActionLog* log = nullptr);
  // Puts a project's own variables in force, in the place of those of another.
  void UseProjectVariables(const BuildProject& project);
  // The layers that stand: overrides are the caller's to set.
  qx::Variables& Variables() { return variables_; }
  // Asked by the actions while they run, from any thread.
  std::atomic<bool>& Stopping() { return stopping_; }

 private:
  void Warn(const std::string& text) const {
    if (settings_.warn) settings_.warn(text);
  }

  Settings settings_;
  qx::Variables variables_;
  std::atomic<bool> stopping_{false};
  std::unique_ptr<OptionsStore> store_;
  std::optional<HostSettingsInUse> settingsInUse_;
  qx::Catalogue catalogue_;
  CatalogueInUse catalogueInUse_{catalogue_};
  std::unique_ptr<PackageLoader> loader_;
};

}  // namespace qx
