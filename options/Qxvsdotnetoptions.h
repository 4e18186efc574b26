// The package's global settings: where each Visual Studio and MSTest.exe lie and which version a new action
// uses. One object, owned by the host, shared by actions, pages and scripts; empty folders are looked up in
// the registry when the host loads it. RegisterOptions tells the host of them.
#pragma once

#include <cstdint>
#include <string>

#include "plugin/Qxoptions.h"

namespace qx {

// Stored by ordinal, so the order is part of the saved format. A damaged store may give an ordinal beyond the
// last one: such a version has no name and no compiler, and counts as later than vs2005.
enum class TVSDotNetVersion : std::uint8_t { vs2002, vs2003, vs2005 };

template <>
inline constexpr std::array<std::string_view, 3> ValueNames<TVSDotNetVersion>{"vs2002", "vs2003", "vs2005"};

// What a new action uses where no options object is registered, and what an unstored default version reads as.
inline constexpr TVSDotNetVersion kFirstDefaultVersion = TVSDotNetVersion::vs2003;

// The settings as the rest of the package sees them. Folders come and go exactly as the registry or the user
// gave them, with or without a trailing delimiter. A setter tells the host to save, but only when the value
// differs (letter case counts).
class IQXVSDotNetOptions : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{3B0C6C57-6C59-4E0F-9E0A-1D54A7E2C611}");
  using Base = IInterface;

  virtual std::string GetDevEnvLocation() = 0;
  virtual void SetDevEnvLocation(const std::string& value) = 0;
  virtual std::string GetDevEnv2003Location() = 0;
  virtual void SetDevEnv2003Location(const std::string& value) = 0;
  virtual std::string GetDevEnv2005Location() = 0;
  virtual void SetDevEnv2005Location(const std::string& value) = 0;
  virtual TVSDotNetVersion GetDefaultVSVersion() = 0;
  virtual void SetDefaultVSVersion(TVSDotNetVersion value) = 0;
  virtual std::string GetMSTestLocation() = 0;  // MSTest.exe itself, with its folder
  virtual void SetMSTestLocation(const std::string& value) = 0;

 protected:
  ~IQXVSDotNetOptions() = default;
};

class TVSDotNetOptions final : public TQXOptionsObject, public IQXVSDotNetOptions {
 public:
  TVSDotNetOptions();

  // The class-level answers, and the record by which the host knows the class.
  static std::string GetName();       // "Visual Studio.Net"
  static std::string GetCategory();   // "Compilers"
  static std::string GetOptionKey();  // "VisualStudioDotNet"
  static const TQXOptionsClass& Class();
  TVSDotNetOptions* GetImplementation() { return this; }

  void LoadOptions(IQXOptionsReader& reader) override;
  void SaveOptions(IQXOptionsWriter& writer) override;

  std::string GetDevEnvLocation() override { return devEnvLocation_; }
  void SetDevEnvLocation(const std::string& value) override { Change(devEnvLocation_, value); }
  std::string GetDevEnv2003Location() override { return devEnv2003Location_; }
  void SetDevEnv2003Location(const std::string& value) override { Change(devEnv2003Location_, value); }
  std::string GetDevEnv2005Location() override { return devEnv2005Location_; }
  void SetDevEnv2005Location(const std::string& value) override { Change(devEnv2005Location_, value); }
  TVSDotNetVersion GetDefaultVSVersion() override { return defaultVSVersion_; }
  void SetDefaultVSVersion(TVSDotNetVersion value) override { Change(defaultVSVersion_, value); }
  std::string GetMSTestLocation() override { return msTestLocation_; }
  void SetMSTestLocation(const std::string& value) override { Change(msTestLocation_, value); }

  bool QueryInterface(const TGUID& iid, void** out) override;
  std::int32_t _AddRef() override { return -1; }
  std::int32_t _Release() override { return -1; }

 private:
  template <class Value>
  void Change(Value& stored, const Value& value) {
    if (stored == value) return;
    stored = value;
    SetModified();
  }

  std::string devEnvLocation_;
  std::string devEnv2003Location_;
  std::string devEnv2005Location_;
  TVSDotNetVersion defaultVSVersion_ = kFirstDefaultVersion;
  std::string msTestLocation_;
};

// The registered options object, found through the host's options service each time; null when the host holds
// none. Nobody keeps it.
InterfacePtr<IQXVSDotNetOptions> VSDotNetOptions();

// Registers the options class, the script function "VSDotNetOptions" and the enumeration for scripts. May be
// called again: the host's services keep one of each.
void RegisterOptions();

}  // namespace qx
