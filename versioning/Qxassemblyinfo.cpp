#include "versioning/Qxassemblyinfo.h"

#include <algorithm>
#include <exception>
#include <span>
#include <unordered_map>

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

// A folder for references whose own is not on this system.
const std::string kNowhere = WithTrailingDelimiter(ExpandPath("", "/nowhere"));

bool IsJoined(std::string_view whole, std::span<const std::string_view> pieces) {
  for (const std::string_view piece : pieces) {
    if (!whole.starts_with(piece)) return false;
    whole.remove_prefix(piece.size());
  }
  return whole.empty();
}

class TQXAssemblyInfoUpdater final : public Implements<IQXAssemblyInfoUpdater> {
 public:
  TQXAssemblyInfoUpdater(InterfacePtr<IVSDotNetSolution> solution, IAssemblyInfoSource& source,
                         InterfacePtr<IQXActionLogMessage> log)
      : solution_(std::move(solution)),
        source_(source),
        solutionFolder_(FolderPart(ExpandPath("", solution_->GetFileName()))),
        log_(std::move(log)),
        location_(source.GetProjectLocation()) {}

  void UpdateAll() override {
    const auto projects = solution_->GetProjects();
    std::vector<std::string> ids;
    for (int i = 0; i < projects->GetCount(); ++i) ids.push_back(projects->GetItem(i)->GetGUID());
    Process(ids);
  }

  void UpdateSelected(const TStringList& projectIds, const TStringList* filter) override {
    std::vector<std::string> ids;
    for (const std::string& id : projectIds.Items()) {
      if (filter == nullptr || filter->IndexOf(id) >= 0) ids.push_back(id);
    }
    Process(ids);
  }

 private:
  // A file that was stamped, and is carried out with the others.
  struct Stamped {
    std::string path;
    bool changed = false;
    bool isFetched = false;      // from a web server
    std::size_t backupLine = 0;  // of the log: which tells of its backup
    std::size_t lineCount = 0;   // of the log, up to and with this file
  };

  void Log(const std::string& line) { lines_.push_back(line); }

  // The files are written together; the log comes out as if each were written when it is its turn: a file that
  // cannot be written ends it.
  void Process(const std::vector<std::string>& ids) {
    RewritesTogether rewrites;
    std::exception_ptr fault;
    try {
      ProcessEach(ids, rewrites);
    } catch (...) {
      fault = std::current_exception();
    }
    try {
      rewrites.Place();
    } catch (...) {
      fault = std::current_exception();
    }
    const std::size_t placed = rewrites.PlacedCount();
    if (placed < stamped_.size()) {
      lines_.resize(stamped_[placed].lineCount);
      lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(stamped_[placed].backupLine));
    }
    for (const std::string& line : lines_) log_->AppendDetail(line);
    lines_.clear();
    for (const Stamped& file : stamped_) {
      if (&file - stamped_.data() < static_cast<std::ptrdiff_t>(placed) && !file.isFetched)
        source_.FileStamped(file.path, file.path + ".bak", file.changed);
    }
    stamped_.clear();
    if (fault) std::rethrow_exception(fault);
  }

  void ProcessEach(const std::vector<std::string>& ids, RewritesTogether& rewrites) {
    Log(std::to_string(ids.size()) + " projects to process.");
    const auto projects = solution_->GetProjects();
    WebProjects webProjects(location_);
    // As FindByGUID, the first of its identifier, without a search a project.
    std::unordered_map<std::string, InterfacePtr<IVSDotNetProject>> byId;
    for (int i = 0; i < projects->GetCount(); ++i) {
      const auto project = projects->GetItem(i);
      byId.try_emplace(project->GetGUID(), project);
    }
    for (const std::string& id : ids) {
      const auto found = byId.find(id);
      if (found == byId.end()) {
        Log("ProjectID : " + id + " - not found in solution");
        continue;
      }
      ProcessProject(found->second->GetPath(), webProjects, rewrites);
    }
  }

  void ProcessProject(const std::string& path, WebProjects& webProjects, RewritesTogether& rewrites) {
    // "https://" is taken for a file, which is missing (docs/deliberate.md).
    const bool isWeb = LowerCase(path).find("http://") != std::string::npos;
    std::string file = isWeb ? webProjects.FindProjectFile(path) : ExpandPath(solutionFolder_, path);
    std::string bytes, decoded;
    bool isRead = TryReadFile(file, bytes);
    if (!isRead && !isWeb) {  // it may stand there in another letter case
      file = ExpandRelativePath(solutionFolder_, path);
      isRead = TryReadFile(file, bytes);
    }
    if (!isRead && !FileExists(file)) throw Exception("ERROR : Unable to find : " + file);
    Log("Processing Project File : " + file);
    if (!isRead) bytes = ReadFile(file);  // on a share, or under a name with the other delimiter
    const std::string reference = AssemblyInfoReference(DecodeText(bytes, decoded));
    if (reference.empty()) return;
    if (isWeb && webProjects.AreFetched()) {
      // Seen from the project's folder on the server, of which no more is known.
      if (!IsAssemblyInfoFile(reference, kNowhere, kNowhere, true)) return;
      const std::string fetched = webProjects.Fetch(reference);
      ProcessFile(fetched, ExtensionOf(fetched), std::nullopt, true);
      rewrites.Place();
      webProjects.Put(fetched, reference);
      return;
    }
    const std::string info = ExpandPath(FolderPart(file), reference);
    auto rewrite = FileRewrite::OpenAsNamed(info);
    if (!IsAssemblyInfoFile(reference, FolderPart(file), isWeb ? FolderPart(file) : solutionFolder_,
                            rewrite.has_value())) {
      return;
    }
    const std::string stamped = rewrite ? info : ExpandRelativePath(FolderPart(file), reference);
    ProcessFile(stamped, LowerCase(ExtensionOf(reference)), std::move(rewrite), false);
  }

  // `rewrite`: the file, where it has been opened already. The backup's line comes before those of the entries and
  // is said only when the backup is made: an older one may stand there.
  void ProcessFile(const std::string& path, const std::string& extension, std::optional<FileRewrite> rewrite,
                   bool isFetched) {
    Log("Processing AssemblyInfo File : " + path);
    if (!rewrite) rewrite.emplace(path);
    std::vector<std::string> entries;
    const auto logEntries = [&] {
      for (const std::string& line : entries) Log(line);
    };
    bool changed = false;
    try {
      changed = StampFile(path, extension, *rewrite, entries);
    } catch (...) {
      logEntries();
      throw;
    }
    const std::size_t backupLine = lines_.size();
    Log("Backingup AssemblyInfo File : " + path + " to :" + path + ".bak");
    logEntries();
    stamped_.push_back({path, changed, isFetched, backupLine, lines_.size()});
  }

  bool StampFile(const std::string& path, const std::string& extension, FileRewrite& rewrite,
                 std::vector<std::string>& entries) {
    SourceText source(rewrite.Bytes(), path, PlainAscii::IsUtf8);
    const std::string stamped = StampAssemblyInfo(
        source.Text(), extension,
        [this](AssemblyAttribute attribute) { return NewAttributeValue(source_, attribute); },
        [&](const std::string& value, std::string_view name) { return source.Fit(value, name); },
        [&](const std::string& line) { entries.push_back(line); });

    std::string oldStorage, newStorage;
    const auto oldBytes = source.Encode({source.NormalText()}, oldStorage);
    const auto newBytes = source.Encode({stamped}, newStorage);
    const bool changed = !IsJoined(rewrite.Bytes(), newBytes);
    // The file as this run found it: stamped, if one before stamped it (docs/deliberate.md).
    rewrite.Commit(".bak", BackupRule::EveryTime, oldBytes, newBytes);
    return changed;
  }

  InterfacePtr<IVSDotNetSolution> solution_;
  IAssemblyInfoSource& source_;
  std::string solutionFolder_;  // absolute, with its trailing delimiter
  InterfacePtr<IQXActionLogMessage> log_;
  ProjectLocationSettings location_;
  std::vector<std::string> lines_;  // of the log
  std::vector<Stamped> stamped_;    // in the order of their commits
};

}  // namespace

std::optional<std::string> NewAttributeValue(IAssemblyInfoSource& source, AssemblyAttribute attribute) {
  if (!source.IsAttributeUpdated(attribute)) return std::nullopt;
  const bool linked = attribute == AssemblyAttribute::FileVersion && source.IsFileVersionLinked();
  std::string value =
      source.ExpandText(source.GetAttributeText(linked ? AssemblyAttribute::Version : attribute));
  const bool isVersion =
      attribute == AssemblyAttribute::FileVersion || attribute == AssemblyAttribute::Version;
  if (isVersion) std::replace(value.begin(), value.end(), '|', '.');
  return value;
}

InterfacePtr<IQXAssemblyInfoUpdater> GetAssemblyInfoUpdater(InterfacePtr<IVSDotNetSolution> solution,
                                                            IAssemblyInfoSource& source,
                                                            InterfacePtr<IQXActionLogMessage> log) {
  return MakeInterface<TQXAssemblyInfoUpdater>(std::move(solution), source, std::move(log));
}

}  // namespace qx
