#include "actions/StampCheck.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/Texts.h"
#include "platform/files/FileRewrite.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxutils.h"
#include "solution/Vsnetsln.h"
#include "versioning/AssemblyAttributes.h"
#include "versioning/AssemblyInfoPlace.h"
#include "versioning/SourceText.h"
#include "versioning/WebProjects.h"

namespace qx {
namespace {

// The property that switches an attribute's stamping on.
struct AttributeRow {
  AssemblyAttribute attribute;
  const char* property;
  const char* name;  // in AssemblyInfo files
};
constexpr AttributeRow kAttributes[] = {
    {AssemblyAttribute::Title, "UpdateAssemblyTitle", "AssemblyTitle"},
    {AssemblyAttribute::Comment, "UpdateAssemblyComment", "AssemblyComment"},
    {AssemblyAttribute::Company, "UpdateAssemblyCompany", "AssemblyCompany"},
    {AssemblyAttribute::Description, "UpdateAssemblyDescription", "AssemblyDescription"},
    {AssemblyAttribute::Copyright, "UpdateAssemblyCopyright", "AssemblyCopyright"},
    {AssemblyAttribute::Trademark, "UpdateAssemblyTradeMark", "AssemblyTrademark"},
    {AssemblyAttribute::Product, "UpdateAssemblyProductName", "AssemblyProduct"},
    {AssemblyAttribute::FileVersion, "UpdateAssemblyFileVersion", "AssemblyFileVersion"},
    {AssemblyAttribute::Version, "UpdateAssemblyVersion", "AssemblyVersion"},
};
constexpr std::string_view kProcessing = "Processing Entry : ";
constexpr std::string_view kAdding = "Adding Entry : ";

using NewValues = PerAttribute<std::optional<std::string>>;

CheckFinding AboutFile(CheckSeverity severity, const std::string& file, std::string message,
                       std::string hint = {}) {
  return {severity, FilePart(file), std::move(message), file, std::move(hint)};
}

// Asked once and not for each file. A text that cannot be expanded is told of by its property.
NewValues ValuesOf(TQXCustomVSDotNetAction& action) {
  NewValues values;
  for (const AttributeRow& row : kAttributes) {
    try {
      values[static_cast<std::size_t>(row.attribute)] = NewAttributeValue(action, row.attribute);
    } catch (const std::exception&) {
    }
  }
  return values;
}

// The projects that an action is to stamp, in the order in which it does.
std::vector<InterfacePtr<IVSDotNetProject>> ChosenProjects(IVSDotNetSolution& solution,
                                                           const TStringList* chosen,
                                                           const TStringList* filter, const char* property,
                                                           CheckReport& report) {
  std::vector<InterfacePtr<IVSDotNetProject>> found;
  const auto projects = solution.GetProjects();
  if (chosen == nullptr) {
    for (int i = 0; i < projects->GetCount(); ++i) found.push_back(projects->GetItem(i));
    return found;
  }
  for (const std::string& id : chosen->Items()) {
    if (filter != nullptr && filter->IndexOf(id) < 0) continue;
    if (auto project = projects->FindByGUID(id)) {
      found.push_back(std::move(project));
    } else {
      report.findings.push_back({CheckSeverity::Warning, property,
                                 "The project " + id + " is no longer in the solution", "",
                                 "choose the projects anew"});
    }
  }
  return found;
}

// Stamps the text of one file and lets the result go.
class TryStamp {
 public:
  TryStamp(const NewValues& values, CheckReport& report) : values_(values), report_(report) {}

  // `opened`: the file, where it has been opened already.
  void Run(const std::string& file, const std::string& extension, CheckedStamp& stamp,
           std::optional<FileRewrite> opened) {
    const FileRewrite rewrite = opened ? *std::move(opened) : FileRewrite(file);
    const SourceText source(rewrite.Bytes(), file, PlainAscii::IsUtf8);
    const WrittenVersions versions = ReadWrittenVersions(source.Text());
    stamp.assemblyFrom = versions.assembly;
    stamp.fileFrom = versions.file;
    found_.clear();
    added_.clear();
    StampAssemblyInfo(
        source.Text(), extension,
        [this](AssemblyAttribute attribute) { return values_[static_cast<std::size_t>(attribute)]; },
        [&](const std::string& value, std::string_view name) { return source.Fit(value, name); },
        [this](const std::string& line) { Note(line); });
    if (const std::string reason = rewrite.WhyNotWritable(); !reason.empty()) throw Exception(reason);
    TellOfMissing(file, source.Text());
  }

 private:
  void Note(std::string_view line) {
    if (line.starts_with(kProcessing)) found_.push_back(NameIn(line.substr(kProcessing.size())));
    if (line.starts_with(kAdding)) added_.push_back(NameIn(line.substr(kAdding.size())));
  }
  // "AssemblyTitleAttribute" is "AssemblyTitle"; an added entry's name ends at its blank.
  static std::string NameIn(std::string_view text) {
    text = text.substr(0, text.find(' '));
    constexpr std::string_view kEnding = "Attribute";
    if (text.ends_with(kEnding)) text.remove_suffix(kEnding.size());
    return std::string(text);
  }

  void TellOfMissing(const std::string& file, std::string_view text) {
    const auto warn = [&](std::string message, std::string hint) {
      report_.findings.push_back(
          AboutFile(CheckSeverity::Warning, file, std::move(message), std::move(hint)));
    };
    if (!added_.empty() && FindWord(text, "assembly", ':') == std::string_view::npos) {
      return warn("The file has no line with an assembly attribute: what is appended, no compiler takes",
                  "write [assembly: AssemblyVersion(\"1.0.0.0\")] into it, or the like in its language");
    }
    const bool needsNamespace = HasExtension(file, ".cs") || HasExtension(file, ".vb");
    if (!added_.empty() && needsNamespace && LowerCase(text).find("system.reflection") == std::string::npos) {
      warn(Join(added_, ", ") + " would be appended, but the file does not name System.Reflection",
           "write the attribute, or using System.Reflection, into it");
    } else if (!added_.empty()) {
      report_.findings.push_back(
          AboutFile(CheckSeverity::Info, file, Join(added_, ", ") + " would be appended"));
    }
    for (const AttributeRow& row : kAttributes) {
      const auto has = [&](const std::vector<std::string>& names) {
        return std::find(names.begin(), names.end(), row.name) != names.end();
      };
      if (values_[static_cast<std::size_t>(row.attribute)] && !has(found_) && !has(added_))
        warn("It has no line for " + std::string(row.name) + ", and none is ever appended",
             "write the attribute into it, or switch " + std::string(row.property) + " off");
    }
  }

  const NewValues& values_;
  CheckReport& report_;
  std::vector<std::string> found_, added_;
};

bool IsOnTheWeb(const std::string& path) { return LowerCase(path).find("http://") != std::string::npos; }

// The project's file, as the updater finds it; empty, with a finding, where that would fail or is not tried.
std::string FindProjectFile(const std::string& path, const std::string& solutionFolder,
                            WebProjects& webProjects, CheckReport& report) {
  const auto tell = [&](CheckSeverity severity, const std::string& message, std::string hint) {
    report.findings.push_back({severity, "ProjLocationDetectMethod", message, path, std::move(hint)});
    return std::string();
  };
  const bool isWeb = IsOnTheWeb(path);
  if (isWeb && webProjects.AreFetched())
    return tell(CheckSeverity::Info, "The project lies on a web server; only the run looks there", "");
  try {
    const std::string file =
        isWeb ? webProjects.FindProjectFile(path) : ExpandRelativePath(solutionFolder, path);
    if (FileExists(file)) return file;
    return tell(CheckSeverity::Error, "Unable to find : " + file,
                "choose how the project is found, or leave it out of the stamping");
  } catch (const std::exception& error) {
    return tell(CheckSeverity::Error, error.what(), "choose another way to find the project");
  }
}

// Whether the run stamps what a project refers to; says so of what lies outside the solution's folder.
bool IsStamped(const std::string& reference, const std::string& folder, const std::string& tree,
               bool isNoLink, const CheckedStamp& stamp, CheckReport& report) {
  const bool leaves = LeavesTree(reference, folder, tree, isNoLink);
  const bool isStamped = IsAssemblyInfoFile(reference, folder, tree, isNoLink);
  if (isStamped && leaves) {
    report.findings.push_back(AboutFile(
        CheckSeverity::Info, stamp.file,
        stamp.project + " refers to it, which lies outside the solution's folder: it is stamped there"));
  } else if (!isStamped) {
    report.findings.push_back(AboutFile(CheckSeverity::Warning, stamp.file,
                                        stamp.project + " refers to it as its AssemblyInfo file: it is none" +
                                            (leaves ? ", lies outside the solution's folder," : "") +
                                            " and is not stamped",
                                        "let the project file name its AssemblyInfo file"));
  }
  return isStamped;
}

}  // namespace

void CheckAssemblyInfos(TQXCustomVSDotNetAction& action, IVSDotNetSolution& solution, CheckReport& report) {
  const VSDotNetSettings& settings = action.Settings();
  const bool isSelection = settings.applyAssemblyInfoTo == TVSDotNetBuildType::btSelectedProjects;
  const bool isFiltered = settings.buildType == TVSDotNetBuildType::btSelectedProjects;
  const auto projects =
      ChosenProjects(solution, isSelection ? &settings.assemblySelectedProjects : nullptr,
                     isFiltered ? &settings.selectedProjects : nullptr, "AssemblySelectedProjects", report);
  WebProjects webProjects(action.GetProjectLocation());
  const NewValues values = ValuesOf(action);
  TryStamp tryStamp(values, report);
  const std::string folder = FolderPart(ExpandPath("", solution.GetFileName()));
  for (const auto& project : projects) {
    // Nearly every file stands under the very name that leads to it: it is opened by that, and looked for where
    // that fails.
    std::string decoded, bytes, file = ExpandPath(folder, project->GetPath());
    if (IsOnTheWeb(project->GetPath()) || !TryReadFile(file, bytes)) {
      file = FindProjectFile(project->GetPath(), folder, webProjects, report);
      if (file.empty()) continue;
      TryReadFile(file, bytes);
    }
    const std::string reference = AssemblyInfoReference(DecodeText(bytes, decoded));
    if (reference.empty()) continue;
    const std::string info = ExpandPath(FolderPart(file), reference);
    auto opened = FileRewrite::OpenAsNamed(info);
    CheckedStamp stamp{opened ? info : ExpandRelativePath(FolderPart(file), reference), project->GetName(),
                       "AssemblyInfo", "", ""};
    const std::string tree = IsOnTheWeb(project->GetPath()) ? FolderPart(file) : folder;
    if (!IsStamped(reference, FolderPart(file), tree, opened.has_value(), stamp, report)) continue;
    try {
      tryStamp.Run(stamp.file, LowerCase(ExtensionOf(reference)), stamp, std::move(opened));
    } catch (const std::exception& error) {
      report.findings.push_back(
          AboutFile(CheckSeverity::Error, stamp.file, error.what(),
                    "the run would fail at this file: let it be there, be writable, and hold the texts"));
    }
    report.stamps.push_back(std::move(stamp));
  }
}

void CheckResourceScripts(TQXCustomVSDotNetAction& action, IVSDotNetSolution& solution, CheckReport& report) {
  const VSDotNetSettings& settings = action.Settings();
  const bool isSelection = settings.applyResourceInfoTo == TVSDotNetBuildType::btSelectedProjects;
  const auto projects = ChosenProjects(solution, isSelection ? &settings.resourceSelectedProjects : nullptr,
                                       nullptr, "ResourceSelectedProjects", report);
  const auto expand = [&](const std::string& text) {
    try {
      return action.ExpandText(text);
    } catch (const std::exception&) {
      return text;  // told of by the property
    }
  };
  for (const auto& project : projects) {
    const std::string script = project->GetVersionInfoFile();
    if (script.empty()) continue;
    CheckedStamp stamp{script, project->GetName(), "ResourceScript", "", ""};
    try {
      stamp.fileFrom = TryVersionUpdate(script, action, expand);
    } catch (const std::exception& error) {
      report.findings.push_back(
          AboutFile(CheckSeverity::Error, script, error.what(),
                    "the run would fail at this file: mend it, or leave the project out"));
    }
    report.stamps.push_back(std::move(stamp));
  }
}

}  // namespace qx
