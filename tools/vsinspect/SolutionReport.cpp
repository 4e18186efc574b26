#include "solution/Vsnetsln.h"
#include "tools/vsinspect/Json.h"
#include "tools/vsinspect/Reports.h"

namespace qx {
namespace {

template <class List, class Visitor>
void ForEachItem(List& list, Visitor&& visit) {
  const int count = list.GetCount();
  for (int i = 0; i < count; ++i) visit(*list.GetItem(i));
}

Json AsJson(IVSDotNetProject& project) {
  return {{"name", JsonText(project.GetName())},
          {"path", JsonText(project.GetPath())},
          {"guid", JsonText(project.GetGUID())},
          {"typeGuid", JsonText(project.GetTypeGUID())},
          {"isVCProject", project.IsVCProject()},
          {"dependencies", JsonTexts(project.GetDependencies()->GetList().Items())},
          {"rcFiles", JsonTexts(project.GetRCFiles().Items())},
          {"versionInfoFile", JsonText(project.GetVersionInfoFile())}};
}

std::string AsJson(IVSDotNetSolution& solution) {
  Json configurations;  // null: the file has no section for them
  if (const auto list = solution.GetConfigurations()) {
    configurations = Json::array();
    ForEachItem(*list, [&](IVSDotNetSolutionConfiguration& item) {
      configurations.push_back(JsonText(item.GetName()));
    });
  }
  Json projects = Json::array();
  ForEachItem(*solution.GetProjects(),
              [&](IVSDotNetProject& project) { projects.push_back(AsJson(project)); });
  return JsonLine({{"fileName", JsonText(solution.GetFileName())},
                   {"configurations", std::move(configurations)},
                   {"projects", std::move(projects)}});
}

void DescribeProject(IVSDotNetProject& project, std::string& out) {
  const auto line = [&out](const char* label, const std::string& text) {
    out.append("    ").append(label).append(text).append("\n");
  };
  out.append(project.GetName()).append("\n");
  line("path          ", project.GetPath());
  line("guid          ", project.GetGUID());
  line("type          ", project.GetTypeGUID() + (project.IsVCProject() ? " (Visual C++)" : ""));
  for (const std::string& guid : project.GetDependencies()->GetList().Items()) line("depends on    ", guid);
  for (const std::string& script : project.GetRCFiles().Items()) line("resources     ", script);
  if (const std::string file = project.GetVersionInfoFile(); !file.empty()) line("version info  ", file);
}

std::string Text(IVSDotNetSolution& solution) {
  const auto projects = solution.GetProjects();
  std::string out = solution.GetFileName() + "\n";
  if (const auto configurations = solution.GetConfigurations()) {
    out += "configurations: " + std::to_string(configurations->GetCount()) + "\n";
    ForEachItem(*configurations,
                [&](IVSDotNetSolutionConfiguration& item) { out += "    " + item.GetName() + "\n"; });
  } else {
    out += "configurations: the file has no section for them\n";
  }
  out += "projects: " + std::to_string(projects->GetCount()) + "\n";
  ForEachItem(*projects, [&](IVSDotNetProject& project) { DescribeProject(project, out); });
  return out;
}

}  // namespace

std::string SolutionReport(const std::string& file, Form form) {
  const auto solution = OpenSolution(file);
  return form == Form::AsJson ? AsJson(*solution) : Text(*solution);
}

}  // namespace qx
