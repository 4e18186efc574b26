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

std::string_view NetOutputExtension(std::string_view output_type) {
  for (const OutputType& type : kOutputTypes) {
    if (SameText(type.name, output_type)) return type.extension;
  }
  return {};
}

std::string NetPath(const NetProject& project, std::string_view written) {
  return FindAsFarAsThere(ExpandPath(FolderPart(project.file), written));
}

NetOutput WhereOutputLies(const NetProject& project) {
  const auto unknown = [](std::string reason) { return NetOutput{"", std::move(reason)}; };
  if (project.form == NetForm::Attributes && !project.has_configuration) {
    return unknown("the project has no such configuration");
  }
  if (!project.output_path.doubt.empty()) return unknown(WithoutCertainty("OutputPath", project.output_path));
  if (project.form == NetForm::MsBuild && project.output_path.value.empty()) {
    return unknown("the project sets no OutputPath for this configuration and platform");
  }
  std::string name = project.file_name.value;
  if (!project.file_name.doubt.empty())
    return unknown(WithoutCertainty("The file's name", project.file_name));
  if (name.empty()) {
    for (const NetText* text : {&project.assembly_name, &project.output_type}) {
      const char* what = text == &project.assembly_name ? "AssemblyName" : "OutputType";
      if (!text->doubt.empty()) return unknown(WithoutCertainty(what, *text));
      if (text->value.empty()) return unknown(std::string(what) + " is not set");
    }
    const std::string_view extension = NetOutputExtension(project.output_type.value);
    if (extension.empty()) return unknown("OutputType \"" + project.output_type.value + "\" is not known");
    name = project.assembly_name.value + std::string(extension);
  }
  return {NetPath(project, WithTrailingDelimiter(project.output_path.value) + name), ""};
}

}  // namespace qx
