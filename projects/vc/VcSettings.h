// A Visual C++ project in one configuration, worked out: what its property sheets hand down, every macro in its
// place, what is special to a file, and where the output lies. The same on Windows and outside; starts nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "projects/vc/VcMacros.h"
#include "projects/vc/VcProject.h"

namespace qx {

// Which configuration of which project, and how to look around.
struct VcPlace {
  std::string projectFile;              // absolute path on disk
  std::string solutionFile;             // absolute; empty: the project is built by itself
  std::string configuration, platform;  // "Release" "Win32", letter case aside
  VcMacros::Environment environment;    // empty: nothing is set
  // The bytes of a property sheet, by its absolute path; none: it cannot be read.
  std::function<std::optional<std::string>(const std::string& path)> readSheet;
};

// The environment and the files of this process.
VcPlace PlaceOnDisk(std::string projectFile, std::string solutionFile, std::string configuration,
                    std::string platform);

enum class VcType { Makefile = 0, Application = 1, DynamicLibrary = 2, StaticLibrary = 4, Utility = 10 };

// How paths stand in macros: as this system has them, or as the commands of a project expect them, which
// outside Windows run under Wine ("Z:\home\...").
enum class VcPaths { Native, ForCommands };

class VcSettings {
 public:
  // Reads the property sheets. Raises Exception: no such configuration, a sheet that is not there or is none,
  // a circle of sheets or macros, an unknown type.
  VcSettings(VcProject project, VcPlace place);

  const VcProject& Project() const { return project_; }
  const VcPlace& Place() const { return place_; }
  const std::string& ProjectFolder() const { return folder_; }  // with its delimiter
  VcType Type() const { return type_; }
  // The name in $(ProjectName): of the project, else of its file.
  const std::string& ProjectName() const { return name_; }
  // Every sheet that was read, by its path: the project is to be read anew when one changes.
  const std::vector<std::string>& Sheets() const { return sheets_; }

  // An attribute of the configuration itself ("CharacterSet"); empty: nowhere said.
  std::string Attribute(std::string_view name) const;
  // An attribute of a tool; none: nowhere said. `file`: with what is special to it.
  std::optional<std::string> Said(std::string_view tool, std::string_view name, const VcFile* file = nullptr,
                                  VcPaths paths = VcPaths::Native) const;
  // The same, empty where nothing is said.
  std::string Text(std::string_view tool, std::string_view name, const VcFile* file = nullptr) const;
  // None: not said. Letter case aside "true", "1" and "-1" are yes.
  std::optional<bool> Flag(std::string_view tool, std::string_view name, const VcFile* file = nullptr) const;
  // A list with all that is inherited: where $(Inherit) stands, else behind its own; $(NoInherit) ends it.
  std::vector<std::string> List(std::string_view tool, std::string_view name, VcList kind,
                                const VcFile* file = nullptr) const;

  bool IsExcluded(const VcFile& file) const;
  // Whether anything of a tool is said for this file alone.
  bool IsSpecial(const VcFile& file) const;
  // The tool that a file's own settings name; empty: none, its extension decides.
  std::string ToolOf(const VcFile& file) const;

  // A text of the project with its macros expanded.
  std::string Expand(std::string_view text, const VcFile* file = nullptr,
                     VcPaths paths = VcPaths::Native) const;
  // The absolute path, with native delimiters, of a text that is relative to the project. Looks at no file.
  std::string FullPath(std::string_view text) const;

  std::string OutputFolder() const;        // absolute, with its delimiter
  std::string IntermediateFolder() const;  // the same
  // The absolute path of the program or library; empty for types that make none.
  std::string OutputFile() const;
  // Of a DLL: the import library; empty when the project asks for none.
  std::string ImportLibrary() const;

  // Macros that nobody knew, so far. Their places are empty in what was asked.
  const std::set<std::string>& UnknownMacros() const { return unknown_; }

 private:
  std::string Written(std::string_view name) const;
  void ReadSheets(const std::string& list, const std::string& folder, std::vector<std::string>& open);
  void SetMacros();
  void SetTarget();
  void SetPath(const char* stem, const std::string& path);
  void ForEachTool(std::string_view tool, const VcFile* file,
                   const std::function<bool(const VcValues&)>& visit) const;
  const VcConfiguration* SpecialOf(const VcFile& file) const;

  VcProject project_;
  VcPlace place_;
  std::string folder_, name_;
  VcType type_ = VcType::Application;
  std::vector<VcConfiguration> layers_;  // the most special first
  std::vector<std::string> sheets_;
  VcMacros native_, commands_;
  mutable std::set<std::string> unknown_;
};

// Where the output lies, for those who want nothing else.
struct VcOutput {
  std::string path;           // absolute; empty: unknown, or there is none
  std::string importLibrary;  // of a DLL
  std::string reason;         // why the path is empty
};
// Raises nothing: what is wrong with the file or its sheets is a reason.
VcOutput OutputOfVcProject(const VcPlace& place);

// Reads the file of a place. Raises Exception "FILE: reason".
VcSettings OpenVcProject(const VcPlace& place);

// Of the type of a configuration, "1"; none: unknown.
std::optional<VcType> VcTypeOf(std::string_view text);

}  // namespace qx
