#include "host/cli/RunReports.h"

#include <filesystem>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

namespace fs = std::filesystem;

fs::path ToPath(const std::string& name) {
  return IsValidUtf8(name) ? fs::path(std::u8string(name.begin(), name.end())) : fs::path(name);
}

// Whether both name one file, by another name, a link or in other letters too. Both absolute.
bool IsSameFile(const std::string& a, const std::string& b) {
  const std::string there = FindAsFarAsThere(a), other = FindAsFarAsThere(b);
  if (there == other || (SystemPassesOverSpelling() && SameText(there, other))) return true;
  std::error_code ignored;
  return fs::equivalent(ToPath(there), ToPath(other), ignored);
}

// The texts of an action that may name files: its text and list properties, expanded. What cannot be expanded is
// the action's own to complain of.
std::vector<std::string> TextsOf(TQXAction& action) {
  std::vector<std::string> texts;
  const auto add = [&](const std::string& text) {
    try {
      texts.push_back(action.ExpandExpression(text, true));
    } catch (const Exception&) {
      texts.push_back(text);
    }
  };
  for (const PublishedProperty& property : action.GetActionClass()->properties) {
    if (property.storage == PropertyStorage::Secret) continue;
    const PropertyValue value = property.get(action);
    if (const auto* text = std::get_if<std::string>(&value)) add(*text);
    if (const auto* list = std::get_if<TStringList>(&value)) {
      for (const std::string& item : list->Items()) add(item);
    }
  }
  return texts;
}

}  // namespace

RunReports::RunReports(const Invocation& invocation, const std::vector<std::string>& inputs) {
  for (const std::string& text : invocation.Values("--report")) {
    const auto [name, file] = SplitAssignment(text);
    const ReportFormat* const format = FindReportFormat(name);
    if (format == nullptr)
      throw Exception("There is no report \"" + name + "\"; there are " + ReportFormatNames());
    if (file.empty()) throw Exception("--report " + text + " names no file: write " + name + "=FILE");
    const std::string path = ExpandPath("", file);
    if (!FolderExists(FolderPart(path)))
      throw Exception("Cannot write " + path + ": there is no folder " + FolderPart(path));
    Refuse(path, "another report");
    reports_.push_back({format, path});
  }
  if (AreWanted() && invocation.Has("--dry-run"))
    throw Exception("A dry run builds nothing to report of: leave out --report or --dry-run");
  for (const std::string& input : inputs) {
    if (!input.empty()) Refuse(input, "a file that the run uses");
  }
}

void RunReports::Refuse(const std::string& input, const std::string& what) const {
  for (const Report& report : reports_) {
    if (IsSameFile(report.file, input))
      throw Exception("The report " + report.file + " would be written over " + what +
                      (input == report.file ? "" : ", " + input) + ": name another file");
  }
}

void RunReports::RefuseFilesOf(const OpenProject& project) const {
  if (!AreWanted()) return;
  const std::string folder = FolderPart(project.File());
  for (int i = 0; i < project.ActionCount(); ++i) {
    TQXAction* const action = project.Action(i);
    if (action == nullptr) continue;
    for (const std::string& text : TextsOf(*action)) {
      if (!text.empty() && text.find('\0') == std::string::npos)
        Refuse(ExpandPath(folder, text), "a file of action " + std::to_string(i + 1));
    }
  }
}

std::vector<std::string> RunReports::Files() const {
  std::vector<std::string> files;
  for (const Report& report : reports_) files.push_back(report.file);
  return files;
}

bool RunReports::Write(const RunRecord& record) const {
  bool written = true;
  for (const Report& report : reports_) {
    try {
      ReplaceFile(report.file, report.format->write(record));
    } catch (const Exception& fault) {
      Session::Complain(fault.Message());
      written = false;
    }
  }
  return written;
}

}  // namespace qx::cli
