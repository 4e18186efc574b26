#include "versioning/WebProjects.h"

#include <algorithm>
#include <vector>

#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "weblocation/Qxresolveiisdirectory.h"

namespace qx {
namespace {

// The detection methods by their numbers, the order of the action's property.
constexpr std::int32_t kMetabase = 0;
constexpr std::int32_t kShare = 1;
constexpr std::int32_t kWebDav = 2;

// A folder as it is asked for: slashes between the names, none behind the last, and without the names "." that
// clients take out and servers need not know.
std::string WithoutDots(std::string folder) {
  std::replace(folder.begin(), folder.end(), '\\', '/');
  std::vector<std::string_view> names;
  for (std::string_view rest = folder;;) {
    const std::string_view name = rest.substr(0, rest.find('/'));
    if (name != ".") names.push_back(name);
    if (name.size() == rest.size()) break;
    rest.remove_prefix(name.size() + 1);
  }
  if (!names.empty() && names.back().empty()) names.pop_back();
  return Join(names, "/");
}

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
  // A project file may not lead out of its own folder (docs/deliberate.md).
  if (IsAbsolute(reference))
    throw Exception("Refused to fetch \"" + reference + "\": it is no file of the project");
  const std::string below = WithoutDots(FolderPart(reference));
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
