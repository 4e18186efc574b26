// What a run of "Build VS.Net Solution" will touch: the folder of its solution, and the files that it reads there.
#include "actions/Qxvsdotnetaction.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "solution/Vsnetsln.h"
#include "versioning/AssemblyAttributes.h"

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

}  // namespace qx
