#include "projects/ProjectKind.h"

#include <algorithm>
#include <array>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

struct KindNames {
  ProjectKind kind;
  std::string_view name, key;
};
constexpr std::array kNames = {
    KindNames{ProjectKind::VisualCpp, "Visual C++", "vc"},
    KindNames{ProjectKind::CSharp, "C#", "cs"},
    KindNames{ProjectKind::VisualBasic, "Visual Basic", "vb"},
    KindNames{ProjectKind::JSharp, "J#", "jsharp"},
    KindNames{ProjectKind::Setup, "Setup", "setup"},
    KindNames{ProjectKind::Web, "Web", "web"},
    KindNames{ProjectKind::Folder, "Folder", "folder"},
    KindNames{ProjectKind::Other, "Other", "other"},
};

struct KindOfText {
  std::string_view text;
  ProjectKind kind;
};
constexpr std::array kExtensions = {
    KindOfText{".vcproj", ProjectKind::VisualCpp}, KindOfText{".csproj", ProjectKind::CSharp},
    KindOfText{".vbproj", ProjectKind::VisualBasic}, KindOfText{".vjsproj", ProjectKind::JSharp},
    KindOfText{".vdproj", ProjectKind::Setup}};
constexpr std::array kTypes = {KindOfText{"{2150E333-8FDC-42A3-9474-1A3956D46DE8}", ProjectKind::Folder},
                               KindOfText{"{E24C65DC-7377-472B-9ABA-BC803B73C61A}", ProjectKind::Web}};

const KindNames& NamesOf(ProjectKind kind) { return *std::ranges::find(kNames, kind, &KindNames::kind); }

}  // namespace

ProjectKind KindOfProject(std::string_view path, std::string_view typeGuid) {
  for (const KindOfText& type : kTypes) {
    if (SameText(type.text, typeGuid)) return type.kind;
  }
  const std::string lower = LowerCase(path);
  if (lower.find("http://") != std::string::npos || lower.find("https://") != std::string::npos) {
    return ProjectKind::Web;
  }
  for (const KindOfText& extension : kExtensions) {
    if (HasExtension(path, extension.text)) return extension.kind;
  }
  return ProjectKind::Other;
}

std::string_view NameOfKind(ProjectKind kind) { return NamesOf(kind).name; }
std::string_view KeyOfKind(ProjectKind kind) { return NamesOf(kind).key; }

}  // namespace qx
