#include "host/diagnostics/SkippedProjects.h"

#include <algorithm>
#include <string>

#include "platform/Texts.h"

namespace qx {
namespace {

// Whether that file is the one that a solution names by a path from its own folder.
bool IsNamedBy(std::string_view file, std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  while (path.starts_with("../")) path.erase(0, 3);
  path.insert(0, "/");
  return file.size() >= path.size() && SameText(file.substr(file.size() - path.size()), path);
}

}  // namespace

void TakeSkipped(RunReport& report, int action, std::span<const Diagnostic> told) {
  for (const Diagnostic& diagnostic : told) {
    if (diagnostic.action != action || diagnostic.code != kEngineSkipCode) continue;
    for (auto& project : report.projects) {
      if (project.status == "ok" || project.name != diagnostic.project) continue;
      if (!IsNamedBy(diagnostic.file, project.path)) continue;
      project.status = "skipped";
      project.reason = diagnostic.message;
      project.isFault = false;
    }
  }
}

}  // namespace qx
