// The model of a Visual Studio .NET solution: projects, solution configurations, dependencies. OpenSolution
// reads a file of any format version of 2002, 2003 and 2005 into it; nothing changes it afterwards.
// Every interface may be used on any thread; an object lives as long as an interface to it is held.
#pragma once

#include <string>

#include "plugin/Qxstrings.h"
#include "plugin/Qxtypes.h"

namespace qx {

// The classes behind the interfaces are private to the unit.
class TVSDotNetObject;

// Root of the model's interfaces. The slots stand in the order of declaration, after the three of IInterface.
class IVSDotNetObject : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{2F39A06C-B1BB-4982-8B17-16BD323C3104}");
  using Base = IInterface;
  // The object behind the interface; it belongs to whoever holds the interface.
  virtual TVSDotNetObject* GetImplementation() = 0;

 protected:
  ~IVSDotNetObject() = default;
};

class IVSDotNetSolutionConfiguration : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{23623B1A-9FFC-42D1-B182-ABDBF8FE5C3E}");
  using Base = IVSDotNetObject;
  // "Debug" in a solution of 2002 or 2003, "Debug|Win32" in one of 2005: always the whole text.
  virtual std::string GetName() = 0;

 protected:
  ~IVSDotNetSolutionConfiguration() = default;
};

class IVSDotNetSolutionConfigurations : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{C89A7462-AB5B-4990-AE22-657F5885BF16}");
  using Base = IVSDotNetObject;
  // In file order; null when the index is out of range.
  virtual InterfacePtr<IVSDotNetSolutionConfiguration> GetItem(int index) = 0;
  virtual int GetCount() = 0;

 protected:
  ~IVSDotNetSolutionConfigurations() = default;
};

// Declared for the interface's users; nothing implements it, and nothing ever did.
class IVSDotNetSolutionContext : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{85911E20-8447-41EA-ABC3-51D7FDD7D313}");
  using Base = IVSDotNetObject;

 protected:
  ~IVSDotNetSolutionContext() = default;
};

// Declared only.
class IVSDotNetSolutionContexts : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{97BD9D68-3394-4B1A-BAC1-14D8CB0CB167}");
  using Base = IVSDotNetObject;

 protected:
  ~IVSDotNetSolutionContexts() = default;
};

// Declared only.
class IVSDotNetProjectConfiguration : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{31E59676-0C3B-485A-B795-318031B78BA1}");
  using Base = IVSDotNetObject;

 protected:
  ~IVSDotNetProjectConfiguration() = default;
};

// Declared only; a query for it on a list of dependencies succeeds, see there.
class IVSDotNetProjectConfigurations : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{64AB0A38-E598-4B75-8BFF-046136023A1C}");
  using Base = IVSDotNetObject;

 protected:
  ~IVSDotNetProjectConfigurations() = default;
};

// The identifiers of the projects that a project depends on, in file order.
class IVSDotNetProjectDependancies : public IVSDotNetObject {
 public:
  // The identifier of IVSDotNetProjectConfigurations too: users query by it, so both keep it
  // (docs/deliberate.md).
  static constexpr TGUID IID = Guid("{64AB0A38-E598-4B75-8BFF-046136023A1C}");
  using Base = IVSDotNetObject;
  // Empty when the index is out of range.
  virtual std::string GetItem(int index) = 0;
  virtual int GetCount() = 0;
  // The list itself, the object's own.
  virtual TStringList& GetList() = 0;

 protected:
  ~IVSDotNetProjectDependancies() = default;
};

class IVSDotNetProject : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{5F6E88B3-1648-4592-97D6-47F311D29717}");
  using Base = IVSDotNetObject;
  virtual std::string GetName() = 0;
  // As the solution has it: relative to the solution's folder, or the URL of a web project.
  virtual std::string GetPath() = 0;
  // Both with their braces, in the solution's letter case.
  virtual std::string GetGUID() = 0;
  virtual std::string GetTypeGUID() = 0;
  // Never null.
  virtual InterfacePtr<IVSDotNetProjectDependancies> GetDependencies() = 0;
  // By the path's extension, ".vcproj" in any letter case.
  virtual bool IsVCProject() = 0;
  // Full paths of the project's resource scripts; the list belongs to the project.
  virtual const TStringList& GetRCFiles() = 0;
  // The first of them that holds a version resource; empty when none does.
  virtual std::string GetVersionInfoFile() = 0;

 protected:
  ~IVSDotNetProject() = default;
};

class IVSDotNetProjects : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{CD778EC7-463D-4E33-9665-2A81BAB601F8}");
  using Base = IVSDotNetObject;
  // In file order; null when the index is out of range.
  virtual InterfacePtr<IVSDotNetProject> GetItem(int index) = 0;
  virtual int GetCount() = 0;
  // The first project of exactly that identifier or path, letter case included; else null.
  virtual InterfacePtr<IVSDotNetProject> FindByGUID(const std::string& text) = 0;
  virtual InterfacePtr<IVSDotNetProject> FindByPath(const std::string& text) = 0;

 protected:
  ~IVSDotNetProjects() = default;
};

class IVSDotNetSolution : public IVSDotNetObject {
 public:
  static constexpr TGUID IID = Guid("{669C6844-EE16-4561-9AA0-0AABD6697C9E}");
  using Base = IVSDotNetObject;
  // Null when the file has no section of solution configurations.
  virtual InterfacePtr<IVSDotNetSolutionConfigurations> GetConfigurations() = 0;
  virtual InterfacePtr<IVSDotNetProjects> GetProjects() = 0;
  // Both always empty.
  virtual std::string GetReservedText1() = 0;
  virtual std::string GetReservedText2() = 0;
  // As it was given to OpenSolution.
  virtual std::string GetFileName() = 0;

 protected:
  ~IVSDotNetSolution() = default;
};

// Reads a solution file, and of its C++ projects what the version stamping needs. Projects whose files are
// missing are left out without a word. Raises Exception: the file cannot be read; "Invalid Solution File
// Format : LINE"; "Error parsing project string"; "List index out of bounds (N)" when the file ends too
// early; "Error parsing project file : REASON" for a C++ project whose XML cannot be read.
InterfacePtr<IVSDotNetSolution> OpenSolution(const std::string& fileName);

}  // namespace qx
