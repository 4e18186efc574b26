#include "host/diagnostics/DiagnosticLog.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "host/diagnostics/Baseline.h"

namespace qx {
namespace {

constexpr std::size_t kPiece = std::size_t{64} << 10;
// So many numbers before lines, and projects within projects, are told apart: no build has as many at a time.
constexpr std::size_t kMostNumbers = 4096;

// By which a line is known again that MSBuild tells a second time.
std::string KeyOf(const Diagnostic& diagnostic) {
  std::string key;
  key += NameOf(diagnostic.severity).front();
  for (const std::string_view text : {diagnostic.code, diagnostic.file, diagnostic.message})
    (key += text) += '\n';
  return key += std::to_string(diagnostic.line) + "," + std::to_string(diagnostic.column);
}

}  // namespace

std::string_view TextStore::Keep(std::string_view text) {
  if (text.empty()) return {};
  if (text.size() > left_) {
    const std::size_t size = std::max(kPiece, text.size());
    pieces_.push_back(std::make_unique_for_overwrite<char[]>(size));
    next_ = pieces_.back().get();
    left_ = size;
  }
  std::memcpy(next_, text.data(), text.size());
  const std::string_view kept(next_, text.size());
  next_ += text.size();
  left_ -= text.size();
  size_ += text.size();
  return kept;
}

NameTable::Slot& NameTable::SlotFor(std::string_view name, std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    Slot& slot = slots_[at];
    if (slot.entry == 0 || (slot.hash == hash && entries_[slot.entry - 1].name == name)) return slot;
  }
}

void NameTable::Grow() {
  const std::vector<Slot> old =
      std::exchange(slots_, std::vector<Slot>(std::max<std::size_t>(64, slots_.size() * 4)));
  for (const Slot& slot : old) {
    if (slot.entry != 0) SlotFor(entries_[slot.entry - 1].name, slot.hash) = slot;
  }
}

NameTable::Entry& NameTable::Find(std::string_view name, TextStore& texts) {
  if (entries_.size() * 2 >= slots_.size()) Grow();
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
  Slot& slot = SlotFor(name, hash);
  if (slot.entry == 0) {
    entries_.push_back({texts.Keep(name), 0});
    slot = {hash, static_cast<std::uint32_t>(entries_.size())};
  }
  return entries_[slot.entry - 1];
}

void DiagnosticLog::Take(const LogRecord& record) {
  found_.clear();
  if (record.kind != LogKind::Message && record.kind != LogKind::Status) return;
  if (record.action != action_) BeginAction(record.action);
  std::size_t number = 0;
  ForEachOutputLine(record, [&](std::string_view line) { TakeLine(line, number++); });
}

void DiagnosticLog::BeginAction(int action) {
  action_ = action;
  ++beginnings_;
  current_ = {};
  entered_.clear();
  byNumber_.clear();
  repeats_ = false;
  told_.clear();
  firstOfAction_ = kept_.size();
}

void DiagnosticLog::TakeLine(std::string_view line, std::size_t number) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (MayBeProjectMark(line)) {
    if (const auto mark = ReadProjectMark(line)) return TakeMark(*mark);
  }
  if (!MayBeDiagnostic(line)) return;
  auto diagnostic = ReadDiagnostic(line);
  if (!diagnostic || (repeats_ && WasToldBefore(*diagnostic))) return;
  diagnostic->action = action_;
  if (diagnostic->project.empty()) {
    diagnostic->project = ProjectOf(line);
  } else {
    diagnostic->project = KeptName(diagnostic->project).name;
  }
  diagnostic->isKnown = baseline_ != nullptr && baseline_->Holds(*diagnostic);
  auto& count = diagnostic->isKnown                       ? counts_.known
                : diagnostic->severity == Severity::Error ? counts_.errors
                                                          : counts_.warnings;
  ++count;
  found_.push_back({number, *diagnostic});
  Keep(*diagnostic, line);
}

void DiagnosticLog::TakeMark(const ProjectMark& mark) {
  const std::string_view name = Named(mark.project);
  switch (mark.kind) {
    case MarkKind::Begins:
      current_ = name;
      break;
    case MarkKind::Enters:
      if (entered_.size() < kMostNumbers) entered_.push_back(name);
      break;
    case MarkKind::Leaves: {
      // An end that was lost on the way takes those within along.
      const auto found = std::find(entered_.rbegin(), entered_.rend(), name);
      if (found != entered_.rend()) entered_.erase(std::prev(found.base()), entered_.end());
      return;
    }
    case MarkKind::Closes:
      current_ = {};
      entered_.clear();
      byNumber_.clear();
      return;
    case MarkKind::Repeats:
      repeats_ = true;
      for (std::size_t i = firstOfAction_; i < kept_.size(); ++i) told_.insert(KeyOf(kept_[i]));
      return;
  }
  repeats_ = false;
  const int number = mark.projectNumber > 0 ? mark.projectNumber : mark.number;
  if (number > 0 && (byNumber_.size() < kMostNumbers || byNumber_.contains(number))) byNumber_[number] = name;
}

bool DiagnosticLog::WasToldBefore(const Diagnostic& diagnostic) {
  return IsCut() || told_.contains(KeyOf(diagnostic));
}

std::string_view DiagnosticLog::ProjectOf(std::string_view line) const {
  if (!byNumber_.empty()) {
    const auto found = byNumber_.find(TakeBuildNumber(line));
    if (found != byNumber_.end()) return found->second;
  }
  return CurrentProject();
}

NameTable::Entry& DiagnosticLog::KeptName(std::string_view project) { return names_.Find(project, texts_); }

std::string_view DiagnosticLog::Named(std::string_view project) {
  if (project.empty()) return {};
  NameTable::Entry& entry = KeptName(project);
  if (entry.begun != beginnings_ && projects_.size() < kMostKept) projects_.push_back({action_, entry.name});
  entry.begun = beginnings_;
  return entry.name;
}

// One copy of the line serves all of its parts.
void DiagnosticLog::Keep(const Diagnostic& diagnostic, std::string_view line) {
  if (kept_.size() >= kMostKept || texts_.Size() >= kMostBytes) return;
  // Room for all at once: memory that nobody has written to costs nothing, and moving it all again does.
  if (kept_.empty()) kept_.reserve(kMostKept);
  const std::string_view copy = texts_.Keep(line);
  Diagnostic& kept = kept_.emplace_back(diagnostic);
  for (std::string_view* text : {&kept.code, &kept.file, &kept.message}) {
    if (!text->empty()) *text = {copy.data() + (text->data() - line.data()), text->size()};
  }
}

}  // namespace qx
