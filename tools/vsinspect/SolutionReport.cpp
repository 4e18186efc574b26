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

void WriteProject(IVSDotNetProject& project, JsonWriter& json) {
  json.BeginObject().Key("name").Text(project.GetName()).Key("path").Text(project.GetPath());
  json.Key("guid").Text(project.GetGUID()).Key("typeGuid").Text(project.GetTypeGUID());
  json.Key("isVCProject").Truth(project.IsVCProject());
  json.Key("dependencies").Texts(project.GetDependencies()->GetList().Items());
  json.Key("rcFiles").Texts(project.GetRCFiles().Items());
  json.Key("versionInfoFile").Text(project.GetVersionInfoFile()).EndObject();
}

std::string Json(IVSDotNetSolution& solution) {
  JsonWriter json;
  json.BeginObject().Key("fileName").Text(solution.GetFileName()).Key("configurations");
  if (const auto configurations = solution.GetConfigurations()) {
    json.BeginList();
    ForEachItem(*configurations, [&](IVSDotNetSolutionConfiguration& item) { json.Text(item.GetName()); });
    json.EndList();
  } else {
    json.Null();
  }
  json.Key("projects").BeginList();
  ForEachItem(*solution.GetProjects(), [&](IVSDotNetProject& project) { WriteProject(project, json); });
  json.EndList().EndObject();
  return json.Out() + "\n";
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
  return form == Form::kJson ? Json(*solution) : Text(*solution);
}

}  // namespace qx
