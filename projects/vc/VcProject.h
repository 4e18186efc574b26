// A Visual C++ project file (.vcproj of 7.00 to 9.00) or property sheet (.vsprops) as it is written: its
// configurations, tools, files and references, nothing inherited and no macro expanded (VcSettings.h does
// that). Text to values: looks at no other file.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qx {

// Attributes by name, as written.
using VcValues = std::map<std::string, std::string>;
// What a configuration, a file or a sheet says of each tool ("VCLinkerTool"); the name itself is left out.
using VcTools = std::map<std::string, VcValues>;

struct VcConfiguration {
  std::string name, platform;  // "Release" "Win32": the two halves of its Name
  VcValues values;             // OutputDirectory, ConfigurationType ...
  VcTools tools;
};

struct VcFile {
  std::string path;                             // RelativePath
  std::vector<std::string> filters;             // from the outermost to the one it stands in
  std::vector<VcConfiguration> configurations;  // what is special to it
};

struct VcReference {
  std::string guid, path, name;  // each as far as it is written
};

struct VcProject {
  std::string name, guid, keyword, rootNamespace;
  int version = 0;  // 700, 710, 800, 900
  std::vector<std::string> platforms;
  std::vector<VcConfiguration> configurations;
  std::vector<VcFile> files;            // in the order of the document, those of filters too
  std::vector<VcReference> references;  // to projects
  std::vector<std::string> assemblies;  // references to .NET assemblies, which only managed C++ has
  std::vector<std::string> toolFiles;   // .rules files
  std::vector<std::pair<std::string, std::string>> globals;
};

struct VcSheet {
  std::string name;
  VcValues values;  // InheritedPropertySheets too
  VcTools tools;
  std::vector<std::pair<std::string, std::string>> macros;  // UserMacro, in their order
};

// The buffer is used up. Raises Exception with the reason: no XML, another kind of file, a version that is
// not known, filters inside one another without end.
VcProject ReadVcProject(std::string& bytes);
VcSheet ReadVcSheet(std::string& bytes);

}  // namespace qx
