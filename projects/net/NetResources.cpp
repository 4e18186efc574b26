#include "projects/net/NetResources.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

// The languages that .NET 1.0 to 2.0 know; a region or script may follow ("de-AT", "sr-SP-Cyrl", "zh-CHS").
constexpr std::string_view kLanguages =
    " af am ar arn as az ba be bg bn bo br bs ca co cs cy da de div dv el en es et eu fa fi fil fo fr fy ga "
    "gl gsw gu ha he hi hr hsb hu hy id ig ii is it iu ja ka kk kl km kn ko kok ky lb lo lt lv mi mk ml mn "
    "moh mr ms mt nb ne nl nn no nso ny oc or pa pl prs ps pt qut quz rm ro ru rw sa sah se si sk sl sma smj "
    "smn sms sq sr sv sw syr ta te tg th tk tn tr tt tzm ug uk ur uz vi wen wo xh yo zh zu ";

bool IsLetters(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
}

bool IsSubtag(std::string_view text) {
  return text.size() >= 2 && text.size() <= 4 && IsLetters(text);  // "AT", "CHS", "Cyrl"
}

bool IsCulture(std::string_view text) {
  const std::size_t hyphen = text.find('-');
  const std::string language = LowerCase(text.substr(0, hyphen));
  if (language.empty() || !IsLetters(language) ||
      kLanguages.find(" " + language + " ") == std::string_view::npos) {
    return false;
  }
  if (hyphen == std::string_view::npos) return true;
  text.remove_prefix(hyphen + 1);
  for (int parts = 0; parts < 2; ++parts) {
    const std::size_t end = text.find('-');
    if (!IsSubtag(text.substr(0, end))) return false;
    if (end == std::string_view::npos) return true;
    text.remove_prefix(end + 1);
  }
  return false;
}

std::string_view WithoutExtension(std::string_view name) { return name.substr(0, name.rfind('.')); }

// A folder's name as a part of a namespace: "2nd try" is "_2nd_try".
std::string Identifier(std::string_view folder) {
  std::string out;
  for (const char c : folder) {
    const auto byte = static_cast<unsigned char>(c);
    const bool fits = IsLetters({&c, 1}) || (c >= '0' && c <= '9') || c == '_' || c == '.' || byte >= 0x80;
    out += fits ? c : '_';
  }
  if (!out.empty() && out[0] >= '0' && out[0] <= '9') out.insert(0, 1, '_');
  return out;
}

// "Root.Folder." of a file in that folder of the project. Visual Basic names no folders, and what is shown
// above the project's folder has none.
std::string Prefix(const NetProject& project, std::string_view place) {
  std::string prefix = project.rootNamespace;
  if (!prefix.empty()) prefix += '.';
  if (project.language == NetLanguage::VisualBasic) return prefix;
  std::string_view folder = place.substr(0, place.size() - FilePart(place).size());
  while (!folder.empty()) {
    const auto end = std::ranges::find_if(folder, IsDelimiter);
    const std::string_view part = folder.substr(0, static_cast<std::size_t>(end - folder.begin()));
    folder.remove_prefix(part.size() + 1);
    if (part.empty() || part == "." || part == "..") continue;
    prefix += Identifier(part) + ".";
  }
  return prefix;
}

}  // namespace

std::string CultureOfName(std::string_view fileName) {
  const std::string name = FilePart(fileName);
  const std::string_view stem = WithoutExtension(name);
  const std::size_t point = stem.rfind('.');
  if (point == std::string_view::npos) return {};
  const std::string_view culture = stem.substr(point + 1);
  return IsCulture(culture) ? std::string(culture) : std::string();
}

NetResourceName NameOfResource(const NetProject& project, const NetFile& file,
                               std::string_view classOfSource) {
  const std::string name = FilePart(file.place);
  const bool isResx = HasExtension(name, ".resx");
  NetResourceName resource;
  // The older product looks at no other file's name for a culture.
  if (isResx || project.form == NetForm::MsBuild) resource.culture = CultureOfName(name);
  const std::string suffix = resource.culture.empty() ? std::string() : "." + resource.culture;
  if (!file.logicalName.empty()) {
    resource.name = file.logicalName;
    return resource;
  }
  const std::string extension = ExtensionOf(name);
  std::string stem(WithoutExtension(name));
  stem.resize(stem.size() - suffix.size());
  if (!isResx) {
    resource.name = Prefix(project, file.place) + stem + extension;
    return resource;
  }
  std::string full;
  if (classOfSource.empty()) {
    full = Prefix(project, file.place) + stem;
  } else {
    full = classOfSource;
    if (project.language == NetLanguage::VisualBasic && !project.rootNamespace.empty()) {
      full = project.rootNamespace + "." + full;
    }
  }
  resource.name = full + suffix + ".resources";
  return resource;
}

}  // namespace qx
