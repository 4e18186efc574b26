#include "projects/vc/VcProject.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/xml/XmlDocument.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr int kDeepestFilter = 64;

template <class Visitor>
void ForEachChild(const XmlElement& parent, Visitor&& visit) {
  for (XmlElement child = parent.FirstChild(); child; child = child.NextSibling()) visit(child, child.Name());
}

VcValues ValuesOf(const XmlElement& element) {
  VcValues values;
  for (auto& [name, value] : element.Attributes()) values.insert_or_assign(std::move(name), std::move(value));
  return values;
}

std::string Take(VcValues& values, const char* name) {
  const auto node = values.extract(name);
  return node.empty() ? std::string() : node.mapped();
}

// A tool that is written twice is one tool; what comes later counts.
void AddTool(VcTools& tools, const XmlElement& element) {
  VcValues values = ValuesOf(element);
  VcValues& tool = tools[Take(values, "Name")];
  for (auto& [name, value] : values) tool.insert_or_assign(name, std::move(value));
}

VcConfiguration ReadConfiguration(const XmlElement& element) {
  VcConfiguration read;
  read.values = ValuesOf(element);
  const std::string whole = Take(read.values, "Name");
  const std::size_t bar = whole.find('|');
  read.name = whole.substr(0, bar);
  if (bar != std::string::npos) read.platform = whole.substr(bar + 1);
  ForEachChild(element, [&](const XmlElement& child, const std::string& name) {
    if (name == "Tool") AddTool(read.tools, child);
  });
  return read;
}

void ReadFiles(const XmlElement& parent, std::vector<std::string>& filters, std::vector<VcFile>& files);

// A file may hold files: those that a designer made of it.
void ReadFile(const XmlElement& element, std::vector<std::string>& filters, std::vector<VcFile>& files) {
  if (filters.size() > kDeepestFilter) throw Exception("its files stand too deep inside one another");
  VcFile file;
  file.path = element.Attribute("RelativePath");
  file.filters = filters;
  ForEachChild(element, [&](const XmlElement& child, const std::string& name) {
    if (name == "FileConfiguration") file.configurations.push_back(ReadConfiguration(child));
  });
  filters.push_back(file.path);
  files.push_back(std::move(file));
  ReadFiles(element, filters, files);
  filters.pop_back();
}

void ReadFiles(const XmlElement& parent, std::vector<std::string>& filters, std::vector<VcFile>& files) {
  if (filters.size() > kDeepestFilter) throw Exception("its filters stand too deep inside one another");
  ForEachChild(parent, [&](const XmlElement& child, const std::string& name) {
    if (name == "File") ReadFile(child, filters, files);
    if (name != "Filter") return;
    filters.push_back(child.Attribute("Name"));
    ReadFiles(child, filters, files);
    filters.pop_back();
  });
}

void ReadReferences(const XmlElement& parent, VcProject& project) {
  ForEachChild(parent, [&](const XmlElement& child, const std::string& name) {
    if (name == "ProjectReference") {
      project.references.push_back({child.Attribute("ReferencedProjectIdentifier"),
                                    child.Attribute("RelativePathToProject"), child.Attribute("Name")});
    } else if (name == "AssemblyReference") {
      project.assemblies.push_back(child.Attribute("RelativePath"));
    }
  });
}

// "8.00", and "8,00" where the author's system writes a comma.
int VersionOf(std::string text) {
  const std::string written = text;
  std::erase_if(text, [](char c) { return c == '.' || c == ','; });
  const int version = ToInteger(Trim(text)).value_or(0);
  if (version < 700 || version > 900) throw Exception("its version \"" + written + "\" is not known");
  return version;
}

XmlElement RootOf(const XmlDocument& document, const char* name) {
  const XmlElement root = document.Root();
  if (!root || root.Name() != name) {
    throw Exception("it is no Visual C++ file of 2002 to 2008: its outermost element is \"" +
                    (root ? root.Name() : std::string()) + "\", not \"" + name + "\"");
  }
  return root;
}

}  // namespace

VcProject ReadVcProject(std::string& bytes) {
  XmlDocument document;
  document.Parse(bytes);
  const XmlElement root = RootOf(document, "VisualStudioProject");
  VcProject project;
  project.version = VersionOf(root.Attribute("Version"));
  project.name = root.Attribute("Name");
  project.guid = root.Attribute("ProjectGUID");
  project.keyword = root.Attribute("Keyword");
  project.rootNamespace = root.Attribute("RootNamespace");
  ForEachChild(root, [&](const XmlElement& part, const std::string& name) {
    std::vector<std::string> filters;
    if (name == "Files") ReadFiles(part, filters, project.files);
    if (name == "References") ReadReferences(part, project);
    ForEachChild(part, [&](const XmlElement& child, const std::string& kind) {
      if (kind == "Platform") project.platforms.push_back(child.Attribute("Name"));
      if (kind == "Configuration") project.configurations.push_back(ReadConfiguration(child));
      if (kind == "ToolFile") project.toolFiles.push_back(child.Attribute("RelativePath"));
      if (kind == "DefaultToolFile") project.toolFiles.push_back(child.Attribute("FileName"));
      if (kind == "Global") project.globals.emplace_back(child.Attribute("Name"), child.Attribute("Value"));
    });
  });
  return project;
}

VcSheet ReadVcSheet(std::string& bytes) {
  XmlDocument document;
  document.Parse(bytes);
  const XmlElement root = RootOf(document, "VisualStudioPropertySheet");
  VcSheet sheet;
  sheet.values = ValuesOf(root);
  sheet.name = Take(sheet.values, "Name");
  ForEachChild(root, [&](const XmlElement& child, const std::string& name) {
    if (name == "Tool") AddTool(sheet.tools, child);
    if (name == "UserMacro") sheet.macros.emplace_back(child.Attribute("Name"), child.Attribute("Value"));
  });
  return sheet;
}

}  // namespace qx
