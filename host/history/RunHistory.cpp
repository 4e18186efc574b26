#include "host/history/RunHistory.h"

#include <algorithm>
#include <filesystem>

#include "host/history/Digest.h"
#include "host/system/HostProgram.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnding = ".run";
constexpr std::size_t kDigitsOfAFolder = 16;

fs::path ToPath(const std::string& name) {
  return IsValidUtf8(name) ? fs::path(std::u8string(name.begin(), name.end())) : fs::path(name);
}

}  // namespace

RunHistory::RunHistory(const std::string& projectFile) : RunHistory(projectFile, StateFolder()) {}

RunHistory::RunHistory(const std::string& projectFile, const std::string& stateFolder) {
  const std::string real = RealPath(projectFile);
  const std::string place = SystemPassesOverSpelling() ? FoldCase(real) : real;
  folder_ = WithTrailingDelimiter(stateFolder + "history") + Sha256(place).substr(0, kDigitsOfAFolder) +
            NativeDelimiter();
}

std::vector<int> RunHistory::Numbers() const {
  std::vector<int> numbers;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(ToPath(folder_), error)) {
    const auto number =
        entry.path().extension() == kEnding ? ToInteger(entry.path().stem().string()) : std::nullopt;
    if (number) numbers.push_back(*number);
  }
  std::sort(numbers.rbegin(), numbers.rend());
  return numbers;
}

std::string RunHistory::FileOf(int run) const { return folder_ + std::to_string(run) + std::string(kEnding); }

std::optional<KeptRun> RunHistory::Read(int run) const {
  std::string bytes;
  if (!TryReadFile(FileOf(run), bytes)) return std::nullopt;
  auto record = ReadKeptRun(bytes);
  if (record) record->run = run;
  return record;
}

void RunHistory::Prune(int kept) const {
  const std::vector<int> numbers = Numbers();
  for (std::size_t i = static_cast<std::size_t>(kept); i < numbers.size(); ++i)
    RemoveFile(FileOf(numbers[i]));
}

RunJournal::RunJournal(const RunHistory& history, std::int64_t started,
                       std::span<const std::string> folders) {
  const std::vector<int> numbers = history.Numbers();
  run_ = numbers.empty() ? 1 : numbers.front() + 1;
  head_ = RecordHead(run_, started, folders);
  file_ = history.FileOf(run_);
}

void RunJournal::Write(const std::string& text) try {
  if (out_ == nullptr) {
    CreateFolders(FolderPart(file_));
    out_ = std::make_unique<AppendedFile>(file_);
    out_->Append(head_ + text);
  } else {
    out_->Append(text);
  }
  out_->Flush();
} catch (const Exception& error) {
  throw Exception("Cannot keep what this run changes: " + error.Message() +
                  " (the host setting History=0 keeps nothing)");
}

void RunJournal::Keep(std::span<const PlannedWrite> writes, std::span<const KeptNumber> numbers) {
  std::string text, files;
  std::vector<DigestedContent> contents;
  for (const PlannedWrite& write : writes) {
    KeptFile file{std::string(write.path), "", ""};
    if (write.before) {
      file.before = Sha256(*write.before);
      if (kept_.insert(file.before).second) contents.push_back({file.before, *write.before});
    }
    if (write.after) file.after = Sha256(*write.after);
    files += RecordLine(file);
  }
  if (!contents.empty()) text += RecordContents(contents);
  for (const KeptNumber& number : numbers) text += RecordLine(number);
  Write(text + files);
}

void RunJournal::End(KeptResult result, double seconds, std::span<const KeptNumber> numbers,
                     std::span<const KeptVersion> versions) {
  std::string text;
  for (const KeptNumber& number : numbers) text += RecordLine(number);
  for (const KeptVersion& version : versions) text += RecordLine(version);
  Write(text + RecordEnd(result, seconds));
}

}  // namespace qx
