// Putting files back as they were before a run, as far as nobody has changed them since.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/history/RunHistory.h"

namespace qx {

// Whether the path of a kept file is an address on a web server.
bool IsOnServer(std::string_view path);

// How files on web servers are read and put back. Both raise Exception, with the reason why they cannot.
class ServerFiles {
 public:
  virtual std::string Read(const std::string& url) = 0;
  // Only onto what was read last.
  virtual void Put(const std::string& url, std::string_view bytes) = 0;

 protected:
  ~ServerFiles() = default;
};

// What becomes of one file of a run.
enum class RestoreStep {
  Restored,      // it is as it was before the run
  Removed,       // the run made it
  AlreadyThere,  // it was so already
  Changed,       // somebody changed it since: it is left alone
  Lost,          // its content is not kept, or damaged
  Unknown,       // on a server, which nobody asked
  Aside,  // on a server, where it cannot be put back: its content is written to a file on this computer
};

struct RestoredFile {
  std::string path;
  RestoreStep step = RestoreStep::AlreadyThere;
  std::string reason, aside;  // of Aside: why, and that file
};

// How it is done.
struct RestoreWay {
  bool force = false;              // files that were changed since are restored too
  ServerFiles* servers = nullptr;  // null: no server is asked
  std::string asideFolder;         // for what no server takes; with its delimiter
};

// What restoring would do; nothing is written, and no server asked.
std::vector<RestoredFile> PlanRestore(const RunHistory& history, int run, bool force);
// Does it, file by file. What `force` overwrites is to be kept by whoever observes the writes. Raises as ReplaceFile.
std::vector<RestoredFile> Restore(const RunHistory& history, int run, const RestoreWay& way);

// How many of a run's files are as it left them, of those that it was to change.
struct StampedCount {
  std::size_t stamped = 0, all = 0;
  std::size_t onServers = 0;  // which are in neither: nobody asks there
};
StampedCount CountStamped(const KeptRun& record);

}  // namespace qx
