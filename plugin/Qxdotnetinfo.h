// The host's table of installed .NET framework versions.
#pragma once

#include <string>

#include "plugin/Qxtypes.h"

namespace qx {

class IQXDotNetFramework : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{AD61C27E-8FB0-4051-9C9D-4E5F6071820C}");
  using Base = IInterface;
  // The folder that holds MSBuild.exe of this version, with or without a trailing delimiter.
  virtual std::string GetInstallFolder() = 0;

 protected:
  ~IQXDotNetFramework() = default;
};

class IQXDotNetInfo : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{BE72D38F-90C1-4162-8DAE-5F607182930D}");
  using Base = IInterface;
  // Looks a version up by its text ("v2.0"); null when it is not installed.
  virtual InterfacePtr<IQXDotNetFramework> FindVersion(const std::string& version) = 0;

 protected:
  ~IQXDotNetInfo() = default;
};

QX_API InterfacePtr<IQXDotNetInfo> QXDotNetInfo();

}  // namespace qx
