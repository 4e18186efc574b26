#include "options/Qxvsdotnetoptions.h"

#include "platform/registry/Registry.h"
#include "plugin/Qxservices.h"

namespace qx {
namespace {

constexpr const char* kPath2002 = "MSDevPath";
constexpr const char* kPath2003 = "MSDevPath2003";
constexpr const char* kPath2005 = "MSDevPath2005";
constexpr const char* kDefaultVersion = "DefVSVersion";
constexpr const char* kMSTest = "MSTestLocation";

using O = TVSDotNetOptions;
constexpr PublishedProperty kProperties[] = {
    Property<&O::GetDevEnvLocation, &O::SetDevEnvLocation>("DevEnvLocation"),
    Property<&O::GetDevEnv2003Location, &O::SetDevEnv2003Location>("DevEnv2003Location"),
    Property<&O::GetDevEnv2005Location, &O::SetDevEnv2005Location>("DevEnv2005Location"),
    Property<&O::GetDefaultVSVersion, &O::SetDefaultVSVersion>("DefaultVSVersion"),
    Property<&O::GetMSTestLocation, &O::SetMSTestLocation>("MSTestLocation"),
};

// Where the setup of this version left its folder; empty without an error when it did not.
std::string DetectInstallation(const char* version) {
  const std::string key = std::string("SOFTWARE\\Microsoft\\VisualStudio\\") + version;
  return ReadMachineText(key, "InstallDir").value_or("");
}

}  // namespace

TVSDotNetOptions::TVSDotNetOptions() : TQXOptionsObject(Class()) {}

std::string TVSDotNetOptions::GetName() { return "Visual Studio.Net"; }
std::string TVSDotNetOptions::GetCategory() { return "Compilers"; }
std::string TVSDotNetOptions::GetOptionKey() { return "VisualStudioDotNet"; }

const TQXOptionsClass& TVSDotNetOptions::Class() {
  static constexpr TQXOptionsClass record{
      "TVSDotNetOptions",
      &GetName,
      &GetCategory,
      &GetOptionKey,
      kProperties,
      []() -> std::unique_ptr<TQXOptionsObject> { return std::make_unique<TVSDotNetOptions>(); }};
  return record;
}

// What is stored goes into the fields and leaves the object unmodified; what is detected goes through the
// setters, so that the host saves it. A folder that was saved empty is looked for again (docs/deliberate.md).
void TVSDotNetOptions::LoadOptions(IQXOptionsReader& reader) {
  TQXOptionsObject::LoadOptions(reader);
  devEnvLocation_ = reader.ReadString(kPath2002, "");
  if (devEnvLocation_.empty()) SetDevEnvLocation(DetectInstallation("7.0"));
  devEnv2003Location_ = reader.ReadString(kPath2003, "");
  if (devEnv2003Location_.empty()) SetDevEnv2003Location(DetectInstallation("7.1"));
  devEnv2005Location_ = reader.ReadString(kPath2005, "");
  if (devEnv2005Location_.empty()) SetDevEnv2005Location(DetectInstallation("8.0"));
  // Only the low byte counts, also of an ordinal that no version has: stores written by others rely on it
  // (docs/deliberate.md).
  const std::int32_t ordinal =
      reader.ReadInteger(kDefaultVersion, static_cast<std::int32_t>(kFirstDefaultVersion));
  defaultVSVersion_ = static_cast<TVSDotNetVersion>(static_cast<std::uint32_t>(ordinal) & 0xFFu);
  msTestLocation_ = reader.ReadString(kMSTest, "");
}

void TVSDotNetOptions::SaveOptions(IQXOptionsWriter& writer) {
  TQXOptionsObject::SaveOptions(writer);
  writer.WriteString(kPath2002, devEnvLocation_);
  writer.WriteString(kPath2003, devEnv2003Location_);
  writer.WriteString(kPath2005, devEnv2005Location_);
  writer.WriteInteger(kDefaultVersion, static_cast<std::int32_t>(defaultVSVersion_));
  writer.WriteString(kMSTest, msTestLocation_);
}

bool TVSDotNetOptions::QueryInterface(const TGUID& iid, void** out) {
  if (iid != IQXVSDotNetOptions::IID) return TQXOptionsObject::QueryInterface(iid, out);
  *out = static_cast<IQXVSDotNetOptions*>(this);
  return true;
}

InterfacePtr<IQXVSDotNetOptions> VSDotNetOptions() {
  TQXOptionsObject* found =
      QXOptionsServices().FindOptions(TVSDotNetOptions::GetCategory(), TVSDotNetOptions::GetName());
  return Query<IQXVSDotNetOptions>(found);
}

void RegisterOptions() {
  QXOptionsServices().RegisterOptions(TVSDotNetOptions::Class(), "DEVENV");
  QXScriptingServices().RegisterFunction("VSDotNetOptions", [](IQXScriptCall& call) {
    const InterfacePtr<IQXVSDotNetOptions> options = VSDotNetOptions();
    call.SetResult(dynamic_cast<TQXOptionsObject*>(options.get()));
  });
  QXScriptingServices().RegisterEnumeration("TVSDotNetVersion", ValueNames<TVSDotNetVersion>);
}

}  // namespace qx
