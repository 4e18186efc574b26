// What a C# or Visual Basic project file says about one of its configurations: both the XML of Visual Studio
// 2002 and 2003 (everything in attributes) and that of 2005 (MSBuild). Reads files, starts nothing.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

enum class NetLanguage { CSharp, VisualBasic, JSharp };
enum class NetForm {
  Attributes,  // Visual Studio .NET 2002 and 2003
  MsBuild,     // 2005
};

// Which configuration of a project is asked for.
struct NetSelection {
  std::string configuration;  // "Release"
  std::string platform;       // "Any CPU" or "AnyCPU"; of no meaning to the older form
  // Given from outside (MSBuild's /p:), they win over the file.
  std::map<std::string, std::string> properties;
  std::string solutionFile;  // empty: unknown
};

struct NetReference {
  std::string name;               // the assembly's simple name, or the project's
  std::string hintPath;           // as written, from the project's folder; may be empty
  std::string projectGuid;        // of a reference to a project
  std::string projectFile;        // the same in the form of 2005, as written
  std::string comGuid;            // of a type library
  std::optional<bool> copyLocal;  // none: as the product decides by itself

  bool IsProject() const { return !projectGuid.empty() || !projectFile.empty(); }
};

struct NetFile {
  std::string path;         // where it lies, as written, from the project's folder
  std::string place;        // where the project shows it: the same, or a link's name
  std::string action;       // "Compile", "EmbeddedResource", "Content", "None" ...
  std::string dependsOn;    // a form's source, by its name in the folder of `place`
  std::string logicalName;  // of a resource that was given one
};

// A text that may not be known: then `doubt` says why, and `value` is what it is without what is not known.
struct NetText {
  std::string value;
  std::string doubt;  // empty: the value is certain
};

struct NetProject {
  std::string file;  // the project file's path on disk
  NetForm form = NetForm::Attributes;
  NetLanguage language = NetLanguage::CSharp;
  std::string guid;
  std::string type;            // of the older form: "Local" or "Web"
  std::string productVersion;  // "7.0.9466", "7.10.3077", "8.0.50727"

  // Of the older form: every name. Of the newer: every pair that a condition compares with, "Debug|AnyCPU".
  std::vector<std::string> configurations;
  bool hasConfiguration = false;  // whether the one that was asked for is among them

  // How they are in the configuration that was asked for. Paths as written.
  NetText assemblyName, outputType, outputPath;
  NetText fileName;  // only where the project itself decides about the output's name
  std::string rootNamespace, startupObject, icon, documentationFile, platformTarget;
  std::string keyFile, keyContainer;
  std::string preBuildEvent, postBuildEvent, runPostBuildEvent;  // lines end with LF
  std::string defines, noWarn;                                   // as written
  std::string imports;                                      // Visual Basic: namespaces, separated by commas
  std::string optionStrict, optionExplicit, optionCompare;  // Visual Basic: "On", "Off", "Binary", "Text"
  std::string codePage;
  bool debug = false, optimise = false, allowUnsafe = false, checkOverflow = false, noStandardLibrary = false;
  bool warningsAsErrors = false, delaySign = false, sign = false;
  int warningLevel = 4;

  std::vector<NetReference> references;
  std::vector<NetFile> files;

  // Elements and attributes ("Config@Name") that the table of NetFormTable.h does not know, each once.
  std::vector<std::string> unfamiliar;
};

// Gives a file's bytes, by its absolute path with native delimiters; none: it cannot be read.
using ReadNetFile = std::function<std::optional<std::string>(const std::string& path)>;

// `bytes` is the whole file named `file` and is used up; `read` is asked for what it imports. Raises
// Exception with "Error parsing project file : " and the reason when it is no project.
NetProject ParseNetProject(std::string& bytes, const std::string& file, const NetSelection& selection,
                           const ReadNetFile& read);
// The same from disk. Raises as ReadFile does, too.
NetProject ReadNetProject(const std::string& file, const NetSelection& selection);

// By the file's extension, letter case aside; none for any other.
std::optional<NetLanguage> NetLanguageOf(std::string_view file);
// The platform as C# and Visual Basic projects of 2005 name it: "Any CPU" is "AnyCPU", any other stays.
std::string NetPlatformName(std::string_view platform);

}  // namespace qx
