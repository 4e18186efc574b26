#include "host/system/UploadRehearsal.h"

#include <algorithm>
#include <mutex>

namespace qx {

struct UploadRehearsal::Script {
  std::mutex mutex;
  std::vector<Upload> uploads;

  std::vector<Upload>::iterator Find(const std::string& url) {
    return std::find_if(uploads.begin(), uploads.end(), [&](const Upload& one) { return one.url == url; });
  }
};

namespace {

// A package puts files through a client that knows no run, so the thread has to say for whom it works.
constinit thread_local UploadRehearsal::Script* rehearsing = nullptr;

}  // namespace

UploadRehearsal::UploadRehearsal() : script_(std::make_unique<Script>()) { rehearsing = script_.get(); }
UploadRehearsal::~UploadRehearsal() { rehearsing = nullptr; }

UploadRehearsal::Joined::Joined(const UploadRehearsal& rehearsal) { rehearsing = rehearsal.script_.get(); }
UploadRehearsal::Joined::~Joined() { rehearsing = nullptr; }

std::vector<UploadRehearsal::Upload> UploadRehearsal::Uploads() const {
  const std::lock_guard guard(script_->mutex);
  return script_->uploads;
}

bool UploadsAreRehearsed() { return rehearsing != nullptr; }

void RehearseUpload(const UploadRehearsal::Upload& upload) {
  const std::lock_guard guard(rehearsing->mutex);
  const auto known = rehearsing->Find(upload.url);
  if (known == rehearsing->uploads.end()) {
    rehearsing->uploads.push_back(upload);
  } else {
    known->after = upload.after;
  }
}

std::optional<std::string> RehearsedUpload(const std::string& url) {
  if (rehearsing == nullptr) return std::nullopt;
  const std::lock_guard guard(rehearsing->mutex);
  const auto known = rehearsing->Find(url);
  if (known == rehearsing->uploads.end()) return std::nullopt;
  return known->after;
}

}  // namespace qx
