// check: what can be known of a run before it.
#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/project/ProjectCheck.h"
#include "host/system/HostProgram.h"
#include "platform/files/Paths.h"

namespace qx::cli {

int CheckBeforeRun(Session& session, const Invocation& invocation) {
  constexpr int kValidationFailed = 3;
  const std::string file = Session::ProjectFile(invocation);
  const OpenProject project = session.Open(file, invocation);
  SetCurrentFolder(FolderPart(file));
  ProjectCheck check = CheckProject(project);
  for (const std::string& name : session.UnusedSettings(project)) {
    check.findings.push_back(
        {0, {CheckSeverity::Warning, "--set", "nothing uses %" + name + "%", file, "look at its spelling"}});
  }
  if (project.ActionCount() == 0)
    check.findings.push_back({0, {CheckSeverity::Warning, FilePart(file), "It holds no action", file, ""}});
  session.Print(invocation.Has("--json") ? CheckAsJson(check) : CheckAsText(check));
  return check.HasErrors() ? kValidationFailed : 0;
}

}  // namespace qx::cli
