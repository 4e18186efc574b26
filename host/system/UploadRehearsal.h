// A rehearsal of what goes to web servers: while one is alive, nothing is put there by the thread that made it, and
// no server is told who asks. What would have been put is written down instead. For dry runs.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qx {

class UploadRehearsal {
 public:
  struct Upload {
    std::string url;                    // as people read it: nothing in it is encoded
    std::optional<std::string> before;  // what the server has; none: nobody has asked
    std::string after;
  };

  // One at a time on a thread; ends on the same thread.
  UploadRehearsal();
  ~UploadRehearsal();
  UploadRehearsal(const UploadRehearsal&) = delete;
  UploadRehearsal& operator=(const UploadRehearsal&) = delete;

  // While one is alive, its thread rehearses too; the rehearsal outlives it.
  class Joined {
   public:
    explicit Joined(const UploadRehearsal& rehearsal);
    ~Joined();
    Joined(const Joined&) = delete;
    Joined& operator=(const Joined&) = delete;
  };

  // The last state of each, in the order of first put. Any thread.
  std::vector<Upload> Uploads() const;

  struct Script;

 private:
  std::unique_ptr<Script> script_;
};

// For web clients: whether the calling thread rehearses.
bool UploadsAreRehearsed();
// Takes it down.
void RehearseUpload(const UploadRehearsal::Upload& upload);
// What would have been put there already.
std::optional<std::string> RehearsedUpload(const std::string& url);

}  // namespace qx
