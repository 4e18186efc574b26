// Project files of Visual Studio .NET 2002 and 2003:
//   <VisualStudioProject><CSHARP ...>
//     <Build><Settings ...><Config ...>...</Settings><References><Reference .../></References></Build>
//     <Files><Include><File .../></Include></Files>
#include <algorithm>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"
#include "projects/net/NetForms.h"

namespace qx {
namespace {

struct Root {
  const char* element;
  NetLanguage language;
};
constexpr Root kRoots[] = {{"CSHARP", NetLanguage::CSharp},
                           {"VisualBasic", NetLanguage::VisualBasic},
                           {"VISUALJSHARP", NetLanguage::JSharp}};

using Texts = std::string NetProject::*;
using Flags = bool NetProject::*;

template <class Member>
struct Setting {
  const char* attribute;
  Member member;
};

// Of Settings, the same in every configuration.
constexpr Setting<Texts> kTexts[] = {{"RootNamespace", &NetProject::rootNamespace},
                                     {"StartupObject", &NetProject::startupObject},
                                     {"ApplicationIcon", &NetProject::icon},
                                     {"AssemblyOriginatorKeyFile", &NetProject::keyFile},
                                     {"AssemblyKeyContainerName", &NetProject::keyContainer},
                                     {"PreBuildEvent", &NetProject::preBuildEvent},
                                     {"PostBuildEvent", &NetProject::postBuildEvent},
                                     {"RunPostBuildEvent", &NetProject::runPostBuildEvent},
                                     {"OptionStrict", &NetProject::optionStrict},
                                     {"OptionExplicit", &NetProject::optionExplicit},
                                     {"OptionCompare", &NetProject::optionCompare}};
// Of a Config.
constexpr Setting<Texts> kConfigTexts[] = {{"DefineConstants", &NetProject::defines},
                                           {"NoWarn", &NetProject::noWarn},
                                           {"DocumentationFile", &NetProject::documentationFile}};
constexpr Setting<Flags> kConfigFlags[] = {{"DebugSymbols", &NetProject::debug},
                                           {"Optimize", &NetProject::optimise},
                                           {"AllowUnsafeBlocks", &NetProject::allowUnsafe},
                                           {"CheckForOverflowUnderflow", &NetProject::checkOverflow},
                                           {"NoStdLib", &NetProject::noStandardLibrary},
                                           {"TreatWarningsAsErrors", &NetProject::warningsAsErrors}};

bool IsTrue(const XmlElement& element, const char* attribute) {
  return SameText(element.Attribute(attribute), kTrue);
}

void NoteAttributes(const XmlElement& element, NetProject& project) {
  const std::string name = element.Name();
  for (const auto& [attribute, value] : element.Attributes())
    NoteIfUnfamiliar(project, name + "@" + attribute);
}

template <class Visitor>
void ForEachChild(const XmlElement& parent, const char* name, Visitor&& visit) {
  for (XmlElement child = parent.FirstChild(name); child; child = child.NextSibling(name)) visit(child);
}

// Event lines come as "&#xd;&#xa;".
std::string WithLineFeeds(std::string text) {
  std::erase(text, '\r');
  return text;
}

void AddDefine(std::string& defines, const char* name) {
  if (!defines.empty()) defines += ';';
  defines += name;
}

void ReadConfig(const XmlElement& config, NetProject& project) {
  for (const auto& [attribute, member] : kConfigTexts) project.*member = config.Attribute(attribute);
  for (const auto& [attribute, member] : kConfigFlags) project.*member = IsTrue(config, attribute);
  if (project.language == NetLanguage::VisualBasic) {
    // Its flag has the opposite sense, and two defines have boxes of their own.
    project.checkOverflow = !IsTrue(config, "RemoveIntegerChecks");
    if (IsTrue(config, "DefineDebug")) AddDefine(project.defines, "DEBUG=True");
    if (IsTrue(config, "DefineTrace")) AddDefine(project.defines, "TRACE=True");
  }
  project.outputPath = {config.Attribute("OutputPath"), ""};
  project.warningLevel = ToInteger(config.Attribute("WarningLevel")).value_or(project.warningLevel);
  project.hasConfiguration = true;
}

// An exact name wins over one that differs in letter case.
XmlElement FindConfig(const XmlElement& settings, const std::string& name) {
  XmlElement similar;
  for (XmlElement at = settings.FirstChild("Config"); at; at = at.NextSibling("Config")) {
    const std::string found = at.Attribute("Name");
    if (found == name) return at;
    if (!similar && SameText(found, name)) similar = at;
  }
  return similar;
}

void ReadSettings(const XmlElement& settings, const NetSelection& selection, NetProject& project) {
  NoteAttributes(settings, project);
  for (const auto& [attribute, member] : kTexts) project.*member = settings.Attribute(attribute);
  project.preBuildEvent = WithLineFeeds(project.preBuildEvent);
  project.postBuildEvent = WithLineFeeds(project.postBuildEvent);
  project.delaySign = IsTrue(settings, "DelaySign");
  project.sign = !project.keyFile.empty() || !project.keyContainer.empty();
  project.assemblyName = {settings.Attribute("AssemblyName"), ""};
  project.outputType = {settings.Attribute("OutputType"), ""};
  ForEachChild(settings, "Config", [&](const XmlElement& config) {
    NoteAttributes(config, project);
    project.configurations.push_back(config.Attribute("Name"));
  });
  if (const XmlElement config = FindConfig(settings, selection.configuration)) ReadConfig(config, project);
}

NetReference ReadReference(const XmlElement& element) {
  NetReference reference;
  reference.name = element.Attribute("AssemblyName");
  if (reference.name.empty()) reference.name = element.Attribute("Name");
  reference.hintPath = element.Attribute("HintPath");
  reference.projectGuid = element.Attribute("Project");
  reference.comGuid = element.Attribute("Guid");
  const std::string copyLocal = element.Attribute("Private");
  if (!copyLocal.empty()) reference.copyLocal = SameText(copyLocal, kTrue);
  return reference;
}

NetFile ReadFileElement(const XmlElement& element) {
  NetFile file;
  file.place = element.Attribute("RelPath");
  file.path = element.Attribute("Link");  // where a linked file really lies
  if (file.path.empty()) file.path = file.place;
  file.action = element.Attribute("BuildAction");
  file.dependsOn = element.Attribute("DependentUpon");
  return file;
}

void ReadBody(const XmlElement& body, const NetSelection& selection, NetProject& project) {
  NoteAttributes(body, project);
  project.guid = body.Attribute("ProjectGuid");
  project.type = body.Attribute("ProjectType");
  project.productVersion = body.Attribute("ProductVersion");
  const XmlElement build = body.FirstChild("Build");
  if (const XmlElement settings = build.FirstChild("Settings")) ReadSettings(settings, selection, project);
  ForEachChild(build.FirstChild("References"), "Reference", [&](const XmlElement& element) {
    NoteAttributes(element, project);
    project.references.push_back(ReadReference(element));
  });
  ForEachChild(build.FirstChild("Imports"), "Import", [&](const XmlElement& element) {
    NoteAttributes(element, project);
    if (!project.imports.empty()) project.imports += ',';
    project.imports += element.Attribute("Namespace");
  });
  const XmlElement include = body.FirstChild("Files").FirstChild("Include");
  ForEachChild(include, "File", [&](const XmlElement& element) {
    NoteAttributes(element, project);
    project.files.push_back(ReadFileElement(element));
  });
  ForEachChild(include, "Folder", [&](const XmlElement& element) { NoteAttributes(element, project); });
}

}  // namespace

void ReadAttributesForm(const XmlElement& root, const NetSelection& selection, NetProject& project) {
  project.form = NetForm::Attributes;
  for (const auto& [element, language] : kRoots) {
    const XmlElement body = root.FirstChild(element);
    if (!body) continue;
    project.language = language;
    return ReadBody(body, selection, project);
  }
  const XmlElement other = root.FirstChild();
  throw Exception("there is no CSHARP or VisualBasic element" +
                  (other ? ", but \"" + other.Name() + "\"" : std::string()));
}

}  // namespace qx
