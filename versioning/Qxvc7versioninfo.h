// The version resource of C++ projects: the values of a VERSIONINFO block, and the parser that reads a
// resource script's block into them or replaces it by one made from them. A thin face; the rules stand in
// VersionBlock.h. Everything here is used on one thread at a time; failures are raised as Exception.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "plugin/Qxaction.h"
#include "plugin/Qxservices.h"
#include "plugin/Qxtypes.h"

namespace qx {

// The version values, 26 operations in slot order. Implemented by the build action and by its version page.
class IQXVC7VersionInfo : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{3E9D7C52-64B8-4B0D-9C1E-5A7F0E8B2D31}");
  using Base = IInterface;

  virtual std::int32_t GetBuildVer() = 0;  // fourth number of FILEVERSION
  virtual std::int32_t GetCodePage() = 0;  // of the string block and the translation, 1252
  virtual bool GetIsDebug() = 0;
  virtual bool GetIsDLL() = 0;
  virtual bool GetIsPreRelease() = 0;
  virtual bool GetIsPrivate() = 0;
  virtual bool GetIsSpecial() = 0;
  virtual std::int32_t GetLocale() = 0;    // language identifier, 0x0409
  virtual std::int32_t GetMajorVer() = 0;  // first number of FILEVERSION
  virtual std::int32_t GetMinorVer() = 0;
  virtual std::int32_t GetReleaseVer() = 0;
  // The string values: "Key=Value" lines, each ended by CR LF; values before the host's expansion.
  virtual std::string GetVersionInfoKeys() = 0;

  virtual void SetBuildVer(std::int32_t value) = 0;
  virtual void SetCodePage(std::int32_t value) = 0;
  virtual void SetIsDebug(bool value) = 0;
  virtual void SetIsDLL(bool value) = 0;
  virtual void SetIsPreRelease(bool value) = 0;
  virtual void SetIsPrivate(bool value) = 0;
  virtual void SetIsSpecial(bool value) = 0;
  virtual void SetLocale(std::int32_t value) = 0;
  virtual void SetMajorVer(std::int32_t value) = 0;
  virtual void SetMinorVer(std::int32_t value) = 0;
  virtual void SetReleaseVer(std::int32_t value) = 0;
  virtual void SetVersionInfoKeys(const std::string& value) = 0;

  // Whether writing adds a "Compile Date" string value.
  virtual bool GetIncludeCompileDate() = 0;
  virtual void SetIncludeCompileDate(bool value) = 0;

 protected:
  ~IQXVC7VersionInfo() = default;
};

// Works on one resource script, the file it was made for.
class IQXVC7VersionInfoParser : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{A84F1B06-2C3D-4E95-8F70-61D2B9C4E732}");
  using Base = IInterface;

  // Sets what the first VERSIONINFO block says, the keys last (to nothing when there are none); numbers,
  // flags, type, locale and code page that the block does not mention are left as they were. Raises
  // "Unexpected BEGIN" and its like for a malformed block, with nothing set; an error of the file read for a
  // missing file.
  virtual void ReadVersionInfo(IQXVC7VersionInfo& info) = 0;
  // Replaces the first VERSIONINFO block, or appends one; True when the file was written. The file as it was
  // before the first update stays in FILE.orig. Every error leaves the file untouched.
  virtual bool UpdateVersionInfo(IQXVC7VersionInfo& info) = 0;

 protected:
  ~IQXVC7VersionInfoParser() = default;
};

// A parser that expands string values through the action, nested expressions too. The action must outlive it.
InterfacePtr<IQXVC7VersionInfoParser> GetVersionInfoParser(TCustomQXAction& action,
                                                           const std::string& fileName);
// A parser for code without an action (a page).
InterfacePtr<IQXVC7VersionInfoParser> GetVersionInfoParser(InterfacePtr<IQXApplicationServices> services,
                                                           const std::string& fileName);

// What UpdateVersionInfo would do with a script, up to the writing: raises what would keep it from that. Gives the
// numbers that stand there now, dotted; empty: none. `expand` is asked for the string values.
std::string TryVersionUpdate(const std::string& fileName, IQXVC7VersionInfo& info,
                             const std::function<std::string(const std::string&)>& expand);

}  // namespace qx
