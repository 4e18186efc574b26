// What a run of "Build VS.Net Solution" will touch: the folder of its solution, the files that it reads there, and the
// web servers that it puts files on.
#include "actions/Qxvsdotnetaction.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "solution/Vsnetsln.h"
#include "versioning/AssemblyAttributes.h"
#include "weblocation/Url.h"

namespace qx {
namespace {

// A project's own file and its AssemblyInfo file.
void AddSources(const std::string& project, std::vector<std::string>& files) {
  std::string bytes, decoded;
  files.push_back(project);
  if (!TryReadFile(FindExisting(project), bytes)) return;
  const std::string reference = AssemblyInfoReference(DecodeText(bytes, decoded));
  if (!reference.empty()) files.push_back(ExpandPath(FolderPart(project), reference));
}

// By the names that somebody wrote: one server under two names is two.
bool IsOnSameServer(const std::string& one, const std::string& other) {
  const Url first = SplitUrl(one), second = SplitUrl(other);
  const auto port = [](const Url& url) { return url.port.empty() ? std::string("80") : url.port; };
  return SameText(first.host, second.host) && port(first) == port(second);
}

}  // namespace

// The solution's file as it is on disk; empty where there is none.
std::string TQXCustomVSDotNetAction::SolutionOnDisk() {
  try {
    const std::string file = FindExisting(ExpandPath("", ExpandText(solution_)));
    return file.empty() || !FileExists(file) ? std::string() : RealPath(file);
  } catch (const std::exception&) {
    return {};  // the run itself says why
  }
}

std::vector<std::string> TQXCustomVSDotNetAction::GetWorkFolders() {
  const std::string solution = SolutionOnDisk();
  if (solution.empty()) return {};
  return {FolderPart(solution)};
}

std::vector<std::string> TQXCustomVSDotNetAction::GetInputFiles() {
  const std::string solution = SolutionOnDisk();
  if (solution.empty()) return {};
  std::vector<std::string> files{solution};
  try {
    const InterfacePtr<IVSDotNetProjects> projects = OpenSolution(solution)->GetProjects();
    for (int i = 0; i < projects->GetCount(); ++i) {
      const InterfacePtr<IVSDotNetProject> project = projects->GetItem(i);
      AddSources(ExpandPath(FolderPart(solution), project->GetPath()), files);
      const std::string script = project->GetVersionInfoFile();
      if (!script.empty()) files.push_back(script);
    }
  } catch (const std::exception&) {
    // A solution that cannot be read has no further files.
  }
  return files;
}

std::optional<WebLogin> TQXCustomVSDotNetAction::GetWebLogin(const std::string& url) {
  const std::string solution = SolutionOnDisk();
  if (solution.empty() || settings_.projLocationDetectMethod != TProjLocDetectMethod::useWebDAV) return {};
  const InterfacePtr<IVSDotNetProjects> projects = OpenSolution(solution)->GetProjects();
  for (int i = 0; i < projects->GetCount(); ++i) {
    const std::string path = projects->GetItem(i)->GetPath();
    const bool isWeb = LowerCase(path).find("http://") != std::string::npos;
    if (isWeb && IsOnSameServer(path, url))
      return WebLogin{settings_.webDavUsername, NeedWebDAVPassword(settings_.webDavPasswordEncrypted)};
  }
  return {};
}

}  // namespace qx
