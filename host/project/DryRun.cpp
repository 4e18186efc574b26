#include "host/project/DryRun.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/system/TemporaryFolder.h"
#include "platform/CommandLine.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"

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

DryRunResult DryRun::Result(const OpenProject& project) const {
  DryRunResult result{processes_.Commands(), {}, {}};
  for (const UploadRehearsal::Upload& upload : uploads_.Uploads())
    result.uploads.push_back({upload.url, DiffLines(upload.url, upload.before, upload.after)});
  const std::string real = RealFolder(FolderPart(project.File()));
  for (WriteCapture::Change& change : writes_.Changes()) {
    if (IsTemporaryFile(change.path)) continue;
    std::optional<std::string> before = BytesOnDisk(change.path);
    std::error_code ignored;
    const bool isProject = fs::equivalent(ToPath(change.path), ToPath(project.File()), ignored);
    if (before && isProject) before = project.WithoutSecrets(std::move(*before));
    if (before == change.bytes) continue;
    std::string name = NameInDiff(change.path, real);
    std::vector<DiffLine> diff = DiffLines(name, before, change.bytes);
    result.files.push_back({std::move(change.path), std::move(name), std::move(before),
                            std::move(change.bytes), std::move(diff)});
  }
  return result;
}

std::vector<DiffLine> LinesOf(const DryRunResult& result) {
  std::vector<DiffLine> lines;
  for (const ProcessRehearsal::Command& program : result.programs) {
    const std::string folder = program.directory.empty() ? "this folder" : program.directory;
    lines.push_back({DiffKind::Program, "Would run in " + folder + ":"});
    lines.push_back({DiffKind::Plain, "    " + QuoteArgument(program.executable) + " " + program.parameters});
  }
  for (const DryRunResult::Upload& upload : result.uploads) {
    lines.push_back({DiffKind::Program, "Would put " + upload.url + " (asked for without a user name):"});
    for (const DiffLine& line : upload.diff) {
      if (line.kind == DiffKind::OldFile || line.kind == DiffKind::NewFile) continue;
      lines.push_back({line.kind, "    | " + line.text});
    }
  }
  for (const DryRunResult::File& file : result.files) {
    lines.insert(lines.end(), file.diff.begin(), file.diff.end());
  }
  return lines;
}

}  // namespace qx
