#include <array>

#include "platform/CodePages.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/TextFile.h"
#include "tools/vsinspect/Json.h"
#include "tools/vsinspect/Reports.h"
#include "versioning/Qxvc7versioninfo.h"
#include "versioning/VersionBlock.h"

namespace qx {
namespace {

// Plain values behind the interface that the reader fills.
class VersionInfo final : public Implements<IQXVC7VersionInfo> {
 public:
  std::int32_t GetBuildVer() override { return build_; }
  std::int32_t GetCodePage() override { return codePage_; }
  bool GetIsDebug() override { return debug_; }
  bool GetIsDLL() override { return dll_; }
  bool GetIsPreRelease() override { return preRelease_; }
  bool GetIsPrivate() override { return private_; }
  bool GetIsSpecial() override { return special_; }
  std::int32_t GetLocale() override { return locale_; }
  std::int32_t GetMajorVer() override { return major_; }
  std::int32_t GetMinorVer() override { return minor_; }
  std::int32_t GetReleaseVer() override { return release_; }
  std::string GetVersionInfoKeys() override { return keys_; }
  void SetBuildVer(std::int32_t value) override { build_ = value; }
  void SetCodePage(std::int32_t value) override { codePage_ = value; }
  void SetIsDebug(bool value) override { debug_ = value; }
  void SetIsDLL(bool value) override { dll_ = value; }
  void SetIsPreRelease(bool value) override { preRelease_ = value; }
  void SetIsPrivate(bool value) override { private_ = value; }
  void SetIsSpecial(bool value) override { special_ = value; }
  void SetLocale(std::int32_t value) override { locale_ = value; }
  void SetMajorVer(std::int32_t value) override { major_ = value; }
  void SetMinorVer(std::int32_t value) override { minor_ = value; }
  void SetReleaseVer(std::int32_t value) override { release_ = value; }
  void SetVersionInfoKeys(const std::string& value) override { keys_ = value; }
  bool GetIncludeCompileDate() override { return compileDate_; }
  void SetIncludeCompileDate(bool value) override { compileDate_ = value; }

 private:
  std::int32_t major_ = 0, minor_ = 0, release_ = 0, build_ = 0, locale_ = 0, codePage_ = 0;
  bool debug_ = false, preRelease_ = false, special_ = false, private_ = false, dll_ = false;
  bool compileDate_ = false;
  std::string keys_;
};

// The values in the order in which both forms show them.
struct NumberField {
  const char* name;
  std::int32_t (IQXVC7VersionInfo::*get)();
};
struct TruthField {
  const char* name;
  bool (IQXVC7VersionInfo::*get)();
};
constexpr std::array<NumberField, 4> kVersions = {{{"majorVersion", &IQXVC7VersionInfo::GetMajorVer},
                                                   {"minorVersion", &IQXVC7VersionInfo::GetMinorVer},
                                                   {"releaseVersion", &IQXVC7VersionInfo::GetReleaseVer},
                                                   {"buildVersion", &IQXVC7VersionInfo::GetBuildVer}}};
constexpr std::array<TruthField, 5> kFlags = {{{"isDebug", &IQXVC7VersionInfo::GetIsDebug},
                                               {"isPreRelease", &IQXVC7VersionInfo::GetIsPreRelease},
                                               {"isSpecial", &IQXVC7VersionInfo::GetIsSpecial},
                                               {"isPrivate", &IQXVC7VersionInfo::GetIsPrivate},
                                               {"isDLL", &IQXVC7VersionInfo::GetIsDLL}}};
constexpr std::array<NumberField, 2> kLanguage = {
    {{"locale", &IQXVC7VersionInfo::GetLocale}, {"codePage", &IQXVC7VersionInfo::GetCodePage}}};

// The page that a script's bytes are written in: the one that it names before its block, else the system's, else that
// of its strings where this can be one of bytes.
std::optional<std::uint32_t> PageOf(std::string_view script, const std::string& file,
                                    std::int32_t ofStrings) {
  constexpr std::int32_t kUtf16 = 1200;
  if (const auto named = NamedCodePage(script.substr(0, FindVersionBlock(script, file).begin))) return named;
  if (IsValidUtf8(script)) return kUtf8CodePage;
  if (const auto system = SystemCodePage()) return system;
  if (ofStrings <= 0 || ofStrings == kUtf16) return std::nullopt;
  return static_cast<std::uint32_t>(ofStrings);
}

// The reader gives texts as the bytes that they stand in; whoever looks at them wants to read them.
void DecodeKeys(IQXVC7VersionInfo& info, const std::string& file) {
  const std::string script = ReadFile(file);
  if (EncodingOf(script) != TextEncoding::Bytes) return;
  const auto page = PageOf(script, file, info.GetCodePage());
  if (!page) return;
  std::vector<std::string> keys = SplitLines(info.GetVersionInfoKeys());
  for (std::string& key : keys) key = DecodeFromCodePage(key, *page).value_or(key);
  info.SetVersionInfoKeys(JoinLines(keys));
}

std::string AsJson(IQXVC7VersionInfo& info) {
  Json json;
  for (const NumberField& field : kVersions) json[field.name] = (info.*field.get)();
  for (const TruthField& field : kFlags) json[field.name] = (info.*field.get)();
  for (const NumberField& field : kLanguage) json[field.name] = (info.*field.get)();
  json["keys"] = JsonTexts(SplitLines(info.GetVersionInfoKeys()));
  return JsonLine(json);
}

std::string Text(IQXVC7VersionInfo& info, const std::string& file) {
  std::string out = file + "\nversion   ";
  for (const NumberField& field : kVersions) {
    out += std::to_string((info.*field.get)()) + (&field == &kVersions.back() ? "\n" : ".");
  }
  out += "flags    ";
  for (const TruthField& field : kFlags) {
    if ((info.*field.get)()) out.append(" ").append(field.name);
  }
  out += "\n";
  for (const NumberField& field : kLanguage) {
    out += std::string(field.name).append(10 - std::string_view(field.name).size(), ' ');
    out += std::to_string((info.*field.get)()) + "\n";
  }
  out += "keys\n";
  for (const std::string& line : SplitLines(info.GetVersionInfoKeys())) out += "    " + line + "\n";
  return out;
}

}  // namespace

std::string VersionInfoReport(const std::string& file, Form form) {
  const auto info = MakeInterface<VersionInfo>();
  GetVersionInfoParser(InterfacePtr<IQXApplicationServices>(), file)->ReadVersionInfo(*info);
  DecodeKeys(*info, file);
  return form == Form::AsJson ? AsJson(*info) : Text(*info, file);
}

}  // namespace qx
