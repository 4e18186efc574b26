#include "host/runtime/DryRun.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/runtime/CommandLine.h"
#include "host/runtime/UnifiedDiff.h"
#include "platform/Paths.h"
#include "platform/Texts.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

fs::path ToPath(const std::string& name) {
  return IsValidUtf8(name) ? fs::path(std::u8string(name.begin(), name.end())) : fs::path(name);
}

// The file as it is on disk, past what the dry run has recorded; none when there is no file.
std::optional<std::string> BytesOnDisk(const std::string& path) {
  std::ifstream file(ToPath(path), std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// The folder with links followed, as the recorded paths have it.
std::string RealFolder(const std::string& folder) {
  std::error_code error;
  const fs::path real = fs::canonical(ToPath(folder), error);
  if (error) return WithTrailingDelimiter(folder);
  const std::u8string name = real.u8string();
  return WithTrailingDelimiter(std::string(name.begin(), name.end()));
}

std::string NameInDiff(const std::string& path, const std::string& folder) {
  std::string name = path.starts_with(folder) ? path.substr(folder.size()) : path;
  std::replace(name.begin(), name.end(), '\\', '/');
  return name.substr(std::min(name.find_first_not_of('/'), name.size()));
}

}  // namespace

std::string DryRun::Report(const OpenProject& project) const {
  std::string report;
  for (const ProcessRehearsal::Command& command : processes_.Commands()) {
    const std::string folder = command.directory.empty() ? "this folder" : command.directory;
    report += "Would run in " + folder + ":\n    " + QuoteArgument(command.executable) + " " +
              command.parameters + "\n";
  }
  const std::string real = RealFolder(FolderPart(project.File()));
  for (const WriteCapture::Change& change : writes_.Changes()) {
    std::optional<std::string> before = BytesOnDisk(change.path);
    std::error_code ignored;
    const bool isProject = fs::equivalent(ToPath(change.path), ToPath(project.File()), ignored);
    if (before && isProject) before = project.WithoutSecrets(std::move(*before));
    report += UnifiedDiff(NameInDiff(change.path, real), before, change.bytes);
  }
  return report;
}

}  // namespace qx
