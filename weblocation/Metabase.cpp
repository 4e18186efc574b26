#include "weblocation/Metabase.h"

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"
#include "weblocation/Url.h"

namespace qx {
namespace {

constexpr const char* kVirtualDirectory = "IIsWebVirtualDir";

std::unique_ptr<ComObject> BindOrRaise(const MetabaseBinder& bind, const std::string& path) {
  auto object = bind(path);
  if (object == nullptr) throw Exception("Unable to resolve to physical path - no object found");
  return object;
}

// The same file seen from another computer: "D:\Web\x" becomes "\\host\D$\Web\x". Only the first colon is
// replaced (docs/deliberate.md).
std::string ThroughAdministrativeShare(const std::string& host, std::string path) {
  const std::size_t colon = path.find(':');
  if (colon != std::string::npos) path[colon] = '$';
  return "\\\\" + host + "\\" + path;
}

}  // namespace

std::string ResolveInMetabase(const std::string& text, std::int32_t siteNumber,
                              const std::string& machineName, const MetabaseBinder& bind) {
  const Url url = SplitUrl(text);
  const std::string root = "IIS://" + url.host + "/w3svc/" + std::to_string(siteNumber) + "/ROOT";
  const std::string path = root + url.path;
  auto object = BindOrRaise(bind, url.path.empty() ? WithTrailingSlash(path) : WithoutTrailingSlash(path));

  std::string remaining = url.path;
  std::string suffix;  // the folders between the virtual directory and the document, each led by "\"
  while (object->GetText("class") != kVirtualDirectory) {
    remaining = WithoutTrailingSlash(remaining);
    const std::size_t slash = remaining.rfind('/');
    // Above the root there is only the root again.
    if (slash == std::string::npos) throw Exception("Unable to resolve to physical path - no object found");
    suffix.insert(0, "\\" + remaining.substr(slash + 1));
    remaining.resize(slash);
    object = BindOrRaise(bind, root + remaining);
  }
  // Asked again: a metabase that answers otherwise now is reported. The label's empty text is what logs have
  // always shown (docs/deliberate.md).
  const std::string kind = object->GetText("class");
  if (kind != kVirtualDirectory) {
    throw Exception("Unable to resolve to physical path - found " + kind + "\rOriginal IIS uri: ");
  }
  std::string result = object->GetText("Path") + suffix + "\\" + url.document;
  // A name in other letters is another computer, but for localhost (docs/deliberate.md).
  const bool isLocal = url.host == machineName || UpperCase(url.host) == "LOCALHOST";
  return isLocal ? result : ThroughAdministrativeShare(url.host, std::move(result));
}

}  // namespace qx
