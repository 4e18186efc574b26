// version.
#include <algorithm>
#include <array>

#include "host/HostArguments.h"
#include "host/cli/Commands.h"
#include "host/cli/Report.h"
#include "host/cli/Session.h"
#include "platform/files/Files.h"
#include "plugin/Qxversions.h"

namespace qx::cli {
namespace {

constexpr std::array<std::string_view, 4> kParts{"major", "minor", "build", "revision"};

IQXVersions& NeedVersions(OpenProject& project, const Invocation& invocation) {
  if (invocation.Has("--action")) {
    const int number = ActionNumber(invocation);
    if (IQXVersions* versions = VersionsOf(Session::ActionOf(project, number))) return *versions;
    throw Exception(project.File() + ": action " + std::to_string(number) + ", \"" +
                    project.ActionType(number - 1) + "\", keeps no version numbers");
  }
  for (int i = 0; i < project.ActionCount(); ++i) {
    TQXAction* const action = project.Action(i);
    if (action == nullptr) continue;
    if (IQXVersions* versions = VersionsOf(*action)) return *versions;
  }
  throw Exception(project.File() + " has no action that keeps version numbers");
}

void Print(Session& session, IQXVersions& versions, bool asJson) {
  Json json = Json::array();
  std::string text;
  for (const ActionVersion& version : versions.GetVersions()) {
    json.push_back({{"name", version.name}, {"value", version.value}});
    text += version.name + ": " + (version.value.empty() ? "none" : version.value) + "\n";
  }
  session.Print(asJson ? AsLines(Json{{"versions", json}}) : text);
}

}  // namespace

int ShowVersions(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  const auto bump = invocation.Value("--bump");
  const bool sets = invocation.operands.size() > 1;
  if (sets && bump) throw Exception("Give a version or --bump, not both");
  const auto lock = sets || bump ? std::make_unique<FileLock>(file) : nullptr;
  OpenProject project = session.Open(file, invocation);
  IQXVersions& versions = NeedVersions(project, invocation);
  if (sets) versions.SetVersions(invocation.operands[1]);
  if (bump)
    versions.BumpVersions(static_cast<VersionPart>(std::ranges::find(kParts, *bump) - kParts.begin()));
  if (lock) Session::Save(project);
  Print(session, versions, invocation.Has("--json"));
  return 0;
}

}  // namespace qx::cli
