#include "host/cli/Session.h"

#include <cstdio>

#include "host/cli/Commands.h"
#include "host/runtime/HostSettings.h"
#include "platform/Paths.h"

namespace qx::cli {

Session::Session(const Invocation& invocation) {
  for (const std::string& file : invocation.Values("--package"))
    packageFiles_.push_back(ExpandPath("", file));
  if (const auto file = invocation.Value("--options")) optionsFile_ = ExpandPath("", *file);
  const std::string colour = invocation.Value("--color").value_or("auto");
  if (colour == "always") colour_ = ColourChoice::Always;
  if (colour == "never") colour_ = ColourChoice::Never;
  mendsSettings_ = invocation.command != nullptr && invocation.command->run == ShowOptions;
}

Session::~Session() {
  loader_.reset();
  TheCatalogue().UseOptionsStore(nullptr);
}

void Session::Print(std::string_view text) {
  const std::string error = LogFile::StandardOutput().Write(text);
  if (writeError_.empty() && !error.empty()) writeError_ = "Cannot write standard output: " + error;
}

void Session::Complain(const std::string& text) { std::fprintf(stderr, "qxhost: %s\n", text.c_str()); }

OptionsStore& Session::Store() {
  if (store_ != nullptr) return *store_;
  auto store = std::make_unique<OptionsStore>(
      optionsFile_.empty() ? ExpandPath("", OptionsStore::DefaultFile()) : optionsFile_);
  store->Load();
  try {
    ApplyHostSettings(HostSettings::From(store->All(OptionsStore::kHostSection)));
  } catch (const Exception& fault) {
    if (!mendsSettings_)
      throw Exception(store->File() + ": " + fault.Message() + "; change it with qxhost options");
    Warn(store->File() + ": " + fault.Message());
  }
  store_ = std::move(store);
  return *store_;
}

PackageLoader& Session::LoadPackages(Registration registration) {
  if (loader_ != nullptr) return *loader_;
  TheCatalogue().UseOptionsStore(&Store());
  loader_ = std::make_unique<PackageLoader>(TheCatalogue());
  std::vector<std::string> files = packageFiles_;
  if (files.empty()) {
    const std::string installed = PackageLoader::FindInstalled(QXHOST_DEFAULT_PACKAGE);
    if (installed.empty()) {
      Warn("no package stands beside the program; name one with --package");
    } else {
      files.push_back(installed);
    }
  }
  for (const std::string& file : files) loader_->Load(file, registration);
  return *loader_;
}

Catalogue& Session::Packages(Registration registration) {
  for (const auto& package : LoadPackages(registration).Packages()) {
    if (!package->Error().empty()) throw Exception(package->Error());
  }
  return TheCatalogue();
}

void Session::UseVariables(const Invocation& invocation, const BuildProject* project) {
  if (project != nullptr) {
    for (auto& [name, value] : project->Variables()) variables_.SetProject(name, value);
  }
  for (const std::string& text : invocation.Values("--set")) {
    auto [name, value] = SplitAssignment(text);
    variables_.SetOverride(std::move(name), std::move(value));
  }
  TheCatalogue().UseDesignVariables(&variables_);
}

OpenProject Session::Open(const std::string& file, const Invocation& invocation, ActionLog* log) {
  BuildProject project = BuildProject::Load(file);
  Catalogue& catalogue = Packages();
  UseVariables(invocation, &project);
  ActionSurroundings surroundings;
  surroundings.log = log;
  surroundings.variables = &variables_;
  surroundings.stopping = &stopping_;
  const auto find = [&catalogue](const std::string& name) -> const TQXActionClass* {
    const RegisteredAction* action = catalogue.FindAction(name);
    return action == nullptr ? nullptr : action->actionClass;
  };
  return OpenProject(std::move(project), find, surroundings);
}

TQXAction& Session::ActionOf(OpenProject& project, int number) {
  if (number > project.ActionCount()) {
    const std::string count = std::to_string(project.ActionCount());
    throw Exception(
        project.File() + " has no action " + std::to_string(number) +
        (project.ActionCount() == 0 ? "; append one with qxhost add" : " (nearest: " + count + ")"));
  }
  if (TQXAction* action = project.Action(number - 1)) return *action;
  throw Exception(project.File() + ": no loaded package has action " + std::to_string(number) + ", \"" +
                  project.ActionType(number - 1) + "\"; name its package with --package");
}

}  // namespace qx::cli
