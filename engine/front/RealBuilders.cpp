#include "engine/front/SolutionBuild.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "projects/net/NetProject.h"
#include "projects/vc/VcProject.h"

namespace qx {
namespace {

// What is written in them: an identifier, a path from the project's folder, or both.
void Add(const std::string& projectFile, const std::string& guid, const std::string& path,
         std::vector<std::string>& references) {
  if (!guid.empty()) references.push_back(guid);
  if (path.empty()) return;
  std::string file = ExpandPath(FolderPart(projectFile), path);
  const std::string found = FindExisting(file);
  references.push_back(found.empty() ? file : found);
}

std::vector<std::string> ReferencesOf(const PlannedProject& project) {
  std::vector<std::string> references;
  if (project.kind == ProjectKind::VisualCpp) {
    std::string bytes = ReadFile(project.file);
    for (const VcReference& reference : ReadVcProject(bytes).references) {
      Add(project.file, reference.guid, "", references);
    }
    return references;
  }
  const NetProject read = ReadNetProject(project.file, {project.configuration, project.platform, {}, ""});
  for (const NetReference& reference : read.references) {
    Add(project.file, reference.projectGuid, reference.projectFile, references);
  }
  return references;
}

}  // namespace

Builders RealBuilders() { return {BuildVisualCpp, BuildDotNet, ReferencesOf}; }

}  // namespace qx
