#include "programs/ProgramFile.h"
#include "tools/vsinspect/Json.h"
#include "tools/vsinspect/Reports.h"

namespace qx {
namespace {

// A program as scripts look at it: one language, texts that are empty where the program says nothing.
struct Summary {
  std::string assemblyName, assemblyVersion, fileVersion, productVersion, language;
  int codePage = 0;
  const StringTable* strings = nullptr;  // the first table of the version resource
};

std::string LanguageName(const Translation& translation) { return UpperHex(translation.language, 4); }

Summary Summarise(const ProgramFile& program) {
  Summary summary;
  if (program.assembly) {
    summary.assemblyName = program.assembly->name;
    summary.assemblyVersion = DottedVersion(program.assembly->version);
  }
  if (!program.version) return summary;
  const VersionResource& version = *program.version;
  if (version.fixed) {
    summary.fileVersion = DottedVersion(version.fixed->file);
    summary.productVersion = DottedVersion(version.fixed->product);
  }
  if (!version.tables.empty()) summary.strings = &version.tables.front();
  std::optional<Translation> said;
  if (summary.strings != nullptr) said = summary.strings->translation;
  if (!said && !version.translations.empty()) said = version.translations.front();
  if (said) {
    summary.language = LanguageName(*said);
    summary.codePage = said->codePage;
  }
  return summary;
}

// Of a name that stands twice the first counts: it may not stand twice in an object.
Json Strings(const StringTable& table) {
  Json strings = Json::object();
  for (const auto& [key, text] : table.strings) strings.emplace(AsValidUtf8(key), JsonText(text));
  return strings;
}

// What goes beyond one language.
void AddResource(const VersionResource& version, Json& json) {
  if (version.fixed) {
    json["fixed"] = {{"flagsMask", version.fixed->flagsMask},
                     {"flags", version.fixed->flags},
                     {"os", version.fixed->system},
                     {"type", version.fixed->type},
                     {"subtype", version.fixed->subtype}};
  }
  Json& tables = json["stringTables"] = Json::array();
  for (const StringTable& table : version.tables) {
    tables.push_back({{"key", JsonText(table.key)}, {"strings", Strings(table)}});
  }
  Json& translations = json["translations"] = Json::array();
  for (const Translation& translation : version.translations) {
    translations.push_back({{"language", LanguageName(translation)}, {"codePage", translation.codePage}});
  }
}

std::string AsJson(const ProgramFile& program) {
  const Summary summary = Summarise(program);
  Json json = {{"machine", MachineName(program.machine)},
               {"managed", program.isManaged},
               {"assemblyName", JsonText(summary.assemblyName)},
               {"assemblyVersion", summary.assemblyVersion},
               {"fileVersion", summary.fileVersion},
               {"productVersion", summary.productVersion},
               {"language", summary.language},
               {"codePage", summary.codePage},
               {"strings", summary.strings == nullptr ? Json::object() : Strings(*summary.strings)},
               {"culture", JsonText(program.assembly ? program.assembly->culture : "")}};
  if (program.version) AddResource(*program.version, json);
  return JsonLine(json);
}

std::string Text(const ProgramFile& program, const std::string& file) {
  const Summary summary = Summarise(program);
  std::string out = file + "\n";
  const auto line = [&out](const char* label, const std::string& text) {
    if (!text.empty()) out.append(label).append(text).append("\n");
  };
  line("machine           ", MachineName(program.machine) + (program.isManaged ? ", .NET" : ""));
  line("assembly          ", summary.assemblyName);
  line("assembly version  ", summary.assemblyVersion);
  line("culture           ", program.assembly ? program.assembly->culture : "");
  if (!program.version) return out + "no version resource\n";
  line("file version      ", summary.fileVersion);
  line("product version   ", summary.productVersion);
  for (const StringTable& table : program.version->tables) {
    out += "strings " + table.key + "\n";
    for (const auto& [key, text] : table.strings)
      out.append("    ").append(key).append("=").append(text).append("\n");
  }
  return out;
}

}  // namespace

std::string BinaryReport(const std::string& file, Form form) {
  const ProgramFile program = ReadProgram(file);
  return form == Form::AsJson ? AsJson(program) : Text(program, file);
}

}  // namespace qx
