#include "versioning/WebProjects.h"

#include <algorithm>

#include "platform/files/Paths.h"
#include "weblocation/Qxresolveiisdirectory.h"

namespace qx {
namespace {

// The detection methods by their numbers, the order of the action's property.
constexpr std::int32_t kMetabase = 0;
constexpr std::int32_t kShare = 1;
constexpr std::int32_t kWebDav = 2;

}  // namespace

WebProjects::~WebProjects() {
  if (client_ != nullptr) client_->Disconnect();
}

std::string WebProjects::FindProjectFile(const std::string& url) {
  switch (settings_.projLocationDetectMethod) {
    case kMetabase:
      return GetPhysicalDirFromIISDir(url, settings_.wmiWebsiteNum);
    case kShare:
      return BuildShareName(url, settings_.sharePath);
    case kWebDav:
      break;
    default:
      return {};
  }
  if (client_ == nullptr) {
    auto client = std::make_unique<TQXWebDavClient>();
    client->userName = settings_.webDavUsername;
    if (settings_.webDavPassword) client->password = settings_.webDavPassword();
    client_ = std::move(client);
  }
  std::string local;
  GetProjectFileUsingWebDAV(client_.get(), url, remoteBase_, local);
  return local;
}

bool WebProjects::AreFetched() const { return settings_.projLocationDetectMethod == kWebDav; }

std::string WebProjects::RemoteFolderOf(const std::string& reference) const {
  std::string below = FolderPart(reference);
  std::replace(below.begin(), below.end(), '\\', '/');
  // A project file may not lead out of its own folder (docs/deliberate.md).
  if (IsAbsolute(reference))
    throw Exception("Refused to fetch \"" + reference + "\": it is no file of the project");
  if (below.ends_with('/')) below.pop_back();
  const bool needsSlash = !remoteBase_.empty() && !below.empty();
  return remoteBase_ + (needsSlash ? "/" : "") + below;
}

std::string WebProjects::Fetch(const std::string& reference) {
  std::string local;
  GetFileUsingWebDAV(client_.get(), RemoteFolderOf(reference), FilePart(reference), local);
  return local;
}

// The file alone: its ".bak" stays beside the local copy and goes with it (docs/deliberate.md).
void WebProjects::Put(const std::string& localFile, const std::string& reference) {
  PutFileUsingWebDAV(client_.get(), localFile, RemoteFolderOf(reference));
}

}  // namespace qx
