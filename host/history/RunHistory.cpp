#include "host/history/RunHistory.h"

#include <algorithm>
#include <filesystem>
#include <utility>

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

// New pieces that are the old bytes still, from their beginning on, are digested once for both.
KeptFile Digested(const PlannedWrite& write) {
  KeptFile file{std::string(write.path), "", ""};
  if (!write.before || !write.after) {
    if (write.before) file.before = Sha256(*write.before);
    if (write.after) file.after = Sha256(*write.after);
    return file;
  }
  std::string_view before = *write.before;
  DigestTail after = *write.after;
  while (!after.empty() && after.front().data() == before.data() && after.front().size() <= before.size()) {
    before.remove_prefix(after.front().size());
    after = after.subspan(1);
  }
  const DigestTail tails[] = {{&before, 1}, after};
  std::vector<std::string> digests =
      Sha256Behind(write.before->substr(0, write.before->size() - before.size()), tails);
  file.before = std::move(digests[0]);
  file.after = std::move(digests[1]);
  return file;
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

void RunJournal::Write(std::span<const std::string_view> pieces) try {
  if (out_ == nullptr) {
    CreateFolders(FolderPart(file_));
    out_ = std::make_unique<AppendedFile>(file_);
    out_->Append(head_);
  }
  for (const std::string_view piece : pieces) out_->Append(piece);
  out_->Flush();
} catch (const Exception& error) {
  throw Exception("Cannot keep what this run changes: " + error.Message() +
                  " (the host setting History=0 keeps nothing)");
}

void RunJournal::Keep(std::span<const PlannedWrite> writes, std::span<const KeptNumber> numbers) {
  std::string text;
  for (const KeptNumber& number : numbers) text += RecordLine(number);
  std::vector<DigestedContent> contents;
  for (const PlannedWrite& write : writes) {
    KeptFile file = Digested(write);
    if (write.before && kept_.insert(file.before).second) contents.push_back({file.before, *write.before});
    text += RecordLine(file);
  }
  const PackedContents packed = contents.empty() ? PackedContents() : PackContents(contents);
  const std::string_view pieces[] = {packed.lines, packed.Block(), text};
  Write(pieces);
}

void RunJournal::End(KeptResult result, double seconds, std::span<const KeptNumber> numbers,
                     std::span<const KeptVersion> versions) {
  std::string text;
  for (const KeptNumber& number : numbers) text += RecordLine(number);
  for (const KeptVersion& version : versions) text += RecordLine(version);
  text += RecordEnd(result, seconds);
  const std::string_view piece = text;
  Write({&piece, 1});
}

}  // namespace qx
