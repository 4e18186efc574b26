#include "host/Host.h"

#include "platform/files/Paths.h"

namespace qx {

Host::~Host() { loader_.reset(); }

OptionsStore& Host::Store() {
  if (store_ != nullptr) return *store_;
  auto store = std::make_unique<OptionsStore>(
      settings_.optionsFile.empty() ? ExpandPath("", OptionsStore::DefaultFile()) : settings_.optionsFile);
  store->Load();
  try {
    settingsInUse_.emplace(HostSettings::From(store->All(OptionsStore::kHostSection)));
  } catch (const Exception& fault) {
    if (!settings_.mendsSettings)
      throw Exception(store->File() + ": " + fault.Message() + "; change it with qxhost options");
    Warn(store->File() + ": " + fault.Message());
  }
  store_ = std::move(store);
  return *store_;
}

PackageLoader& Host::LoadPackages(Registration registration) {
  if (loader_ != nullptr) return *loader_;
  catalogue_.UseOptionsStore(&Store());
  loader_ = std::make_unique<PackageLoader>(catalogue_);
  std::vector<std::string> files = settings_.packageFiles;
  if (files.empty()) {
    const std::string installed = PackageLoader::FindInstalled(settings_.defaultPackage);
    if (installed.empty()) {
      Warn("no package stands beside the program; name one with --package");
    } else {
      files.push_back(installed);
    }
  }
  for (const std::string& file : files) loader_->Load(file, registration);
  return *loader_;
}

qx::Catalogue& Host::Packages(Registration registration) {
  for (const auto& package : LoadPackages(registration).Packages()) {
    if (!package->Error().empty()) throw Exception(package->Error());
  }
  return catalogue_;
}

void Host::UseProjectVariables(const BuildProject& project) {
  variables_.ClearProject();
  for (auto& [name, value] : project.Variables()) variables_.SetProject(name, value);
  catalogue_.UseDesignVariables(&variables_);
}

OpenProject Host::Open(BuildProject project, ActionLog* log) {
  Packages();
  UseProjectVariables(project);
  ActionSurroundings surroundings;
  surroundings.log = log;
  surroundings.variables = &variables_;
  surroundings.stopping = &stopping_;
  const auto find = [this](const std::string& name) -> const TQXActionClass* {
    const RegisteredAction* action = catalogue_.FindAction(name);
    return action == nullptr ? nullptr : action->actionClass;
  };
  return OpenProject(std::move(project), find, surroundings);
}

}  // namespace qx
