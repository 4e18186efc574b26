#include "versioning/Qxvc7versioninfo.h"

#include <ctime>

#include "platform/DateText.h"
#include "platform/Texts.h"
#include "platform/files/FileRewrite.h"
#include "platform/files/Files.h"
#include "versioning/SourceText.h"
#include "versioning/VersionBlock.h"

namespace qx {
namespace {

VersionValues ValuesOf(IQXVC7VersionInfo& info) {
  VersionValues values;
  values.numbers = {info.GetMajorVer(), info.GetMinorVer(), info.GetReleaseVer(), info.GetBuildVer()};
  values.flags = {info.GetIsDebug(), info.GetIsPreRelease(), info.GetIsSpecial(), info.GetIsPrivate()};
  values.isDll = info.GetIsDLL();
  values.locale = info.GetLocale();
  values.codePage = info.GetCodePage();
  values.keys = SplitLines(info.GetVersionInfoKeys());
  if (info.GetIncludeCompileDate()) {
    const std::time_t now = std::time(nullptr);
    SetCompileDate(values.keys, LongDateText(now) + " " + ShortTimeText(now));
  }
  return values;
}

// In this order, for setters may change their neighbours. A script without a block empties the keys alone
// (docs/deliberate.md).
void Apply(const VersionReading& reading, IQXVC7VersionInfo& info) {
  if (reading.numbers) {
    info.SetMajorVer((*reading.numbers)[0]);
    info.SetMinorVer((*reading.numbers)[1]);
    info.SetReleaseVer((*reading.numbers)[2]);
    info.SetBuildVer((*reading.numbers)[3]);
  }
  if (reading.flags) {
    info.SetIsDebug(reading.flags->isDebug);
    info.SetIsPreRelease(reading.flags->isPreRelease);
    info.SetIsSpecial(reading.flags->isSpecial);
    info.SetIsPrivate(reading.flags->isPrivate);
  }
  if (reading.isDll) info.SetIsDLL(*reading.isDll);
  if (reading.locale) info.SetLocale(*reading.locale);
  if (reading.codePage) info.SetCodePage(*reading.codePage);
  info.SetVersionInfoKeys(JoinLines(reading.keys));
}

// Calls take(rewrite, source, script, place, block): the opened file, its text, and the block that is to stand in
// the place of its first one.
template <class Taker>
void WithNewBlock(const std::string& fileName, IQXVC7VersionInfo& info, const Expander& expand,
                  Taker&& take) {
  FileRewrite rewrite(fileName);
  SourceText source(rewrite.Bytes(), fileName, PlainAscii::IsSystemCodePage);
  const std::string_view script = source.NormalText();
  const VersionBlockPlace place = FindVersionBlock(script, fileName);
  const auto namedPage = [&] { return NamedCodePage(script.substr(0, place.begin)); };

  const VersionValues values = ValuesOf(info);
  std::vector<VersionString> strings = BlockStrings(values, expand);
  for (VersionString& string : strings) {
    const std::string key = string.key;
    string.key = source.Fit(key, key, namedPage);
    string.text = source.Fit(string.text, key, namedPage);
  }
  take(rewrite, source, script, place, WriteVersionBlock(values, strings));
}

class TQXVC7VersionInfoParser final : public Implements<IQXVC7VersionInfoParser> {
 public:
  TQXVC7VersionInfoParser(std::string fileName, Expander expand)
      : fileName_(std::move(fileName)), expand_(std::move(expand)) {}

  void ReadVersionInfo(IQXVC7VersionInfo& info) override {
    std::string decoded;
    const std::string bytes = ReadFile(fileName_);
    Apply(ReadVersionBlock(DecodeText(bytes, decoded), fileName_), info);
  }

  bool UpdateVersionInfo(IQXVC7VersionInfo& info) override {
    WithNewBlock(fileName_, info, expand_,
                 [](FileRewrite& rewrite, const SourceText& source, std::string_view script,
                    const VersionBlockPlace& place, const std::string& block) {
                   std::string oldStorage, newStorage;
                   const auto oldBytes = source.Encode({script}, oldStorage);
                   const auto newBytes = source.Encode(
                       {script.substr(0, place.begin), block, script.substr(place.end)}, newStorage);
                   // The script as it was before the first run of all, unlike the ".bak" of AssemblyInfo files
                   // (docs/deliberate.md).
                   rewrite.Commit(".orig", BackupRule::FirstTime, oldBytes, newBytes);
                 });
    return true;
  }

 private:
  std::string fileName_;
  Expander expand_;
};

}  // namespace

InterfacePtr<IQXVC7VersionInfoParser> GetVersionInfoParser(TCustomQXAction& action,
                                                           const std::string& fileName) {
  return MakeInterface<TQXVC7VersionInfoParser>(
      fileName, [&action](const std::string& text) { return action.ExpandExpression(text, true); });
}

InterfacePtr<IQXVC7VersionInfoParser> GetVersionInfoParser(InterfacePtr<IQXApplicationServices> services,
                                                           const std::string& fileName) {
  return MakeInterface<TQXVC7VersionInfoParser>(
      fileName, [services](const std::string& text) { return services->ExpandExpression(text, true); });
}

std::string TryVersionUpdate(const std::string& fileName, IQXVC7VersionInfo& info, const Expander& expand) {
  std::string dotted;
  WithNewBlock(fileName, info, expand,
               [&](const FileRewrite& rewrite, const SourceText&, std::string_view script,
                   const VersionBlockPlace&, const std::string&) {
                 if (const std::string reason = rewrite.WhyNotWritable(); !reason.empty())
                   throw Exception(reason);
                 const VersionReading reading = ReadVersionBlock(script, fileName);
                 if (!reading.numbers) return;
                 for (const std::int32_t number : *reading.numbers)
                   dotted += (dotted.empty() ? "" : ".") + std::to_string(number);
               });
  return dotted;
}

}  // namespace qx
