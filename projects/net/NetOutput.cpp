#include "projects/net/NetOutput.h"

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

struct OutputType {
  const char* name;
  std::string_view extension;
};
constexpr OutputType kOutputTypes[] = {
    {"Exe", ".exe"}, {"WinExe", ".exe"}, {"Library", ".dll"}, {"Module", ".netmodule"}};

std::string WithoutCertainty(const char* what, const NetText& text) {
  return std::string(what) + " is not certain: " + text.doubt;
}

}  // namespace

std::string_view NetOutputExtension(std::string_view outputType) {
  for (const OutputType& type : kOutputTypes) {
    if (SameText(type.name, outputType)) return type.extension;
  }
  return {};
}

std::string NetPath(const NetProject& project, std::string_view written) {
  return FindAsFarAsThere(ExpandPath(FolderPart(project.file), written));
}

NetOutput WhereOutputLies(const NetProject& project) {
  const auto unknown = [](std::string reason) { return NetOutput{"", std::move(reason)}; };
  if (project.form == NetForm::Attributes && !project.hasConfiguration) {
    return unknown("the project has no such configuration");
  }
  if (!project.outputPath.doubt.empty()) return unknown(WithoutCertainty("OutputPath", project.outputPath));
  if (project.form == NetForm::MsBuild && project.outputPath.value.empty()) {
    return unknown("the project sets no OutputPath for this configuration and platform");
  }
  std::string name = project.fileName.value;
  if (!project.fileName.doubt.empty()) return unknown(WithoutCertainty("The file's name", project.fileName));
  if (name.empty()) {
    for (const NetText* text : {&project.assemblyName, &project.outputType}) {
      const char* what = text == &project.assemblyName ? "AssemblyName" : "OutputType";
      if (!text->doubt.empty()) return unknown(WithoutCertainty(what, *text));
      if (text->value.empty()) return unknown(std::string(what) + " is not set");
    }
    const std::string_view extension = NetOutputExtension(project.outputType.value);
    if (extension.empty()) return unknown("OutputType \"" + project.outputType.value + "\" is not known");
    name = project.assemblyName.value + std::string(extension);
  }
  return {NetPath(project, WithTrailingDelimiter(project.outputPath.value) + name), ""};
}

}  // namespace qx
