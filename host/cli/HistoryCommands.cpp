// history and restore.
#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>
#include <set>

#include "host/actions/PropertyText.h"
#include "host/cli/Commands.h"
#include "host/cli/Report.h"
#include "host/cli/Session.h"
#include "host/history/Restore.h"
#include "host/history/RunHistory.h"
#include "host/keeping/Keeping.h"
#include "host/keeping/WebServers.h"
#include "host/settings/HostSettings.h"
#include "host/system/HostProgram.h"
#include "host/system/Stopping.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

constexpr int kNotAll = 1;
constexpr int kStopped = 5;

std::string InUtc(std::int64_t seconds) {
  const std::time_t time = seconds;
  char text[32];
  return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&time)));
}

// A run that goes on has no end in its record, as one that was cut off.
bool GoesOn(const std::string& project) {
  try {
    const FileLock lock(project);
  } catch (const FileInUse&) {
    return true;
  } catch (const Exception&) {
    // Nobody can hold it.
  }
  return false;
}

std::vector<KeptRun> RunsOf(const std::string& project) {
  const RunHistory history(project);
  std::vector<KeptRun> runs;
  for (const int number : history.Numbers()) {
    auto record = history.Read(number);
    if (record) runs.push_back(*std::move(record));
  }
  if (!runs.empty() && runs.front().result == KeptResult::CutOff && GoesOn(project)) runs.erase(runs.begin());
  return runs;
}

Json AsJson(const KeptRun& run) {
  Json versions = Json::array(), files = Json::array();
  for (const KeptVersion& version : run.versions) {
    versions.push_back(
        {{"action", version.action}, {"name", version.name}, {"from", version.from}, {"to", version.to}});
  }
  for (const KeptFile& file : run.files)
    files.push_back({{"path", file.path}, {"before", file.before}, {"after", file.after}});
  return {{"run", run.run},
          {"started", InUtc(run.started)},
          {"seconds", run.seconds},
          {"result", NameOf(run.result)},
          {"versions", std::move(versions)},
          {"files", std::move(files)}};
}

std::string AsText(const KeptRun& run) {
  std::string text = std::to_string(run.run) + "  " + TimeForPeople(run.started) + "  " +
                     std::string(NameOf(run.result)) + ", " + std::to_string(run.files.size()) +
                     (run.files.size() == 1 ? " file changed\n" : " files changed\n");
  for (const KeptVersion& version : run.versions)
    text += "    " + version.name + " " + version.from + " -> " + version.to + "\n";
  for (const KeptFile& file : run.files) text += "    " + file.path + "\n";
  return text;
}

// Keeps what --force overwrites, as a run of its own: it can be had back, too.
class ForcedKeeper final : public WriteObserver {
 public:
  ForcedKeeper(const RunHistory& history, std::set<std::string> paths)
      : journal_(history, std::time(nullptr), {}), paths_(std::move(paths)) {}
  void BeforeWrites(std::span<const PlannedWrite> writes) override {
    for (const PlannedWrite& write : writes) {
      if (!paths_.contains(std::string(write.path))) continue;
      journal_.Keep({&write, 1}, {});
      hasKept_ = true;
    }
  }
  void End() {
    if (hasKept_) journal_.End(KeptResult::Succeeded, 0, {}, {});
  }

 private:
  RunJournal journal_;
  std::set<std::string> paths_;
  bool hasKept_ = false;
};

// The run's number that the command line names, else the newest.
int RunFor(const RunHistory& history, const Invocation& invocation) {
  const std::vector<int> runs = history.Numbers();
  if (runs.empty()) throw Exception("No run of this build project is kept; see the host setting History");
  const auto wanted = invocation.Value("--run");
  if (!wanted) return runs.front();
  const int run = std::stoi(*wanted);
  if (std::find(runs.begin(), runs.end(), run) == runs.end())
    throw Exception("Run " + *wanted + " is not kept (there are " + std::to_string(runs.back()) + " to " +
                    std::to_string(runs.front()) + ")");
  return run;
}

// Says what became of each file; false when one was left alone.
bool Tell(Session& session, const std::vector<RestoredFile>& files, int run, bool dry) {
  bool all = true;
  for (const RestoredFile& file : files) {
    const std::string since = "since run " + std::to_string(run);
    switch (file.step) {
      case RestoreStep::Restored:
        session.Print((dry ? "would restore " : "restored ") + file.path + "\n");
        break;
      case RestoreStep::Removed:
        session.Print((dry ? "would remove " : "removed ") + file.path + "\n");
        break;
      case RestoreStep::AlreadyThere:
        break;
      case RestoreStep::Changed:
        Session::Complain(file.path + " was changed " + since + " and is left alone; --force restores it");
        all = false;
        break;
      case RestoreStep::Unknown:
        session.Print("would restore " + file.path + ", unless it was changed since\n");
        break;
      case RestoreStep::Aside:
        Session::Complain(file.path + " is not put back: " + file.reason + "; what it was is in " +
                          file.aside);
        all = false;
        break;
      case RestoreStep::Lost:
        Session::Complain(file.path + ": its content of before run " + std::to_string(run) + " is not kept");
        all = false;
        break;
    }
  }
  return all;
}

// Opens the build project only where its logins are needed: what lies on this disk is had back without it.
std::vector<RestoredFile> RestoreWithLogins(Session& session, const Invocation& invocation,
                                            const RunHistory& history, int run,
                                            const std::vector<RestoredFile>& planned) {
  const std::string file = Session::ProjectFile(invocation);
  RestoreWay way{invocation.Has("--force"), nullptr, FolderPart(file)};
  const bool needsServers = std::any_of(planned.begin(), planned.end(), [](const RestoredFile& one) {
    return one.step == RestoreStep::Unknown;
  });
  if (!needsServers) return Restore(history, run, way);
  OpenProject project = session.Open(file, invocation);
  SetCurrentFolder(FolderPart(file));
  WebServers servers(project);
  way.servers = &servers;
  return Restore(history, run, way);
}

// Takes the build project's numbers back that nobody has changed since; false when one was left alone.
bool RestoreNumbers(Session& session, OpenProject& project, const KeptRun& run, bool dry, bool force) {
  bool all = true;
  for (const KeptNumber& number : run.numbers) {
    TQXAction* action = number.action <= project.ActionCount() ? project.Action(number.action - 1) : nullptr;
    const PublishedProperty* property =
        action == nullptr ? nullptr : FindProperty(action->GetActionClass()->properties, number.property);
    if (property == nullptr) continue;
    const std::string now = PropertyToText(*property, property->get(*action));
    if (now == number.before) continue;
    if (now != number.after && !force) {
      Session::Complain(project.File() + ": " + number.property + " was changed since run " +
                        std::to_string(run.run) + " and is left alone; --force takes it back");
      all = false;
      continue;
    }
    if (!dry) property->set(*action, PropertyFromText(*property, number.before));
    session.Print((dry ? "would set " : "set ") + number.property + "=" + number.before + "\n");
  }
  if (!dry && !run.numbers.empty()) Session::Save(project);
  return all;
}

}  // namespace

int ShowHistory(Session& session, const Invocation& invocation) {
  const std::vector<KeptRun> runs = RunsOf(Session::ProjectFile(invocation));
  if (invocation.Has("--json")) {
    Json list = Json::array();
    for (const KeptRun& run : runs) list.push_back(AsJson(run));
    session.Print(AsLines({{"runs", std::move(list)}}));
    return 0;
  }
  for (const KeptRun& run : runs) session.Print(AsText(run));
  if (runs.empty()) session.Print("No run is kept.\n");
  return 0;
}

int RestoreRun(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  const bool dry = invocation.Has("--dry-run"), force = invocation.Has("--force");
  std::unique_ptr<FileLock> lock;
  if (!dry) lock = std::make_unique<FileLock>(file, PatienceOf(invocation));
  const RunHistory history(file);
  const int run = RunFor(history, invocation);
  const auto record = history.Read(run);
  if (!record) throw Exception(history.FileOf(run) + " is no record of a run");
  const auto folders = dry ? std::vector<std::unique_ptr<FileLock>>()
                           : LockFolders(record->folders, file, PatienceOf(invocation));

  std::vector<RestoredFile> files = PlanRestore(history, run, false);
  std::set<std::string> changed;
  for (const RestoredFile& one : files) {
    if (one.step == RestoreStep::Changed || (force && one.step == RestoreStep::Unknown))
      changed.insert(one.path);
  }
  if (dry) {
    if (force) files = PlanRestore(history, run, true);
  } else {
    ForcedKeeper keeper(history, std::move(changed));
    try {
      const WritesObserved observed(keeper);
      files = RestoreWithLogins(session, invocation, history, run, files);
    } catch (const Exception&) {
      if (!StopIsAsked()) throw;
      keeper.End();
      Session::Complain(file + ": stopped by the user; qxhost restore goes on where it ended");
      return kStopped;
    }
    keeper.End();
  }
  bool all = Tell(session, files, run, dry);
  if (invocation.Has("--numbers")) {
    OpenProject project = session.Open(file, invocation);
    all = RestoreNumbers(session, project, *record, dry, force) && all;
  }
  return all ? 0 : kNotAll;
}

}  // namespace qx::cli
