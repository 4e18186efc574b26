#include "projects/net/NetProject.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "projects/net/NetFormTable.h"
#include "projects/net/NetForms.h"

namespace qx {
namespace {

constexpr std::size_t kMostUnfamiliar = 1000;

struct Kind {
  const char* extension;
  NetLanguage language;
};
constexpr Kind kKinds[] = {{".csproj", NetLanguage::CSharp},
                           {".vbproj", NetLanguage::VisualBasic},
                           {".vjsproj", NetLanguage::JSharp}};

void Read(std::string& bytes, const NetSelection& selection, const ReadNetFile& read, NetProject& project) {
  XmlDocument document;
  document.Parse(bytes, XmlTexts::Kept);
  const XmlElement root = document.Root();
  const std::string name = root ? root.Name() : std::string();
  if (name == "VisualStudioProject") return ReadAttributesForm(root, selection, project);
  if (name == "Project") return ReadMsBuildForm(root, selection, read, project);
  throw Exception("the document element is \"" + name + "\", not VisualStudioProject or Project");
}

}  // namespace

std::optional<NetLanguage> NetLanguageOf(std::string_view file) {
  for (const Kind& kind : kKinds) {
    if (HasExtension(file, kind.extension)) return kind.language;
  }
  return std::nullopt;
}

std::string NetPlatformName(std::string_view platform) {
  return SameText(platform, "Any CPU") ? "AnyCPU" : std::string(platform);
}

void NoteIfUnfamiliar(NetProject& project, const std::string& name) {
  if (FindNetFormEntry(project.form, name) != nullptr || project.unfamiliar.size() >= kMostUnfamiliar) return;
  if (std::ranges::find(project.unfamiliar, name) == project.unfamiliar.end())
    project.unfamiliar.push_back(name);
}

NetProject ParseNetProject(std::string& bytes, const std::string& file, const NetSelection& selection,
                           const ReadNetFile& read) {
  NetProject project;
  project.file = file;
  project.language = NetLanguageOf(file).value_or(NetLanguage::CSharp);
  try {
    Read(bytes, selection, read, project);
  } catch (const Exception& error) {
    throw Exception("Error parsing project file : " + error.Message());
  }
  return project;
}

NetProject ReadNetProject(const std::string& file, const NetSelection& selection) {
  const std::string found = FindExisting(ExpandPath("", file));
  std::string bytes = ReadFile(found.empty() ? file : found);
  const ReadNetFile read = [](const std::string& path) -> std::optional<std::string> {
    std::string imported;
    const std::string existing = FindExisting(path);
    if (existing.empty() || !TryReadFile(existing, imported)) return std::nullopt;
    return imported;
  };
  return ParseNetProject(bytes, found.empty() ? file : found, selection, read);
}

}  // namespace qx
