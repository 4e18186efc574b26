// Any text as a URL and as a name: what is split holds together again, and a name that is taken stays in its folder.
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "weblocation/TemporaryName.h"
#include "weblocation/Url.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckUrl(std::string_view text) {
  const qx::Url url = qx::SplitUrl(text);
  const std::string all = url.protocol + url.host + url.port + url.path + url.document;
  Require(all.find('\\') == std::string::npos);
  Require(url.document.find_first_of("/#?") == std::string::npos);
  Require(url.host.find('/') == std::string::npos && url.port.find('/') == std::string::npos);
  Require(url.path.empty() || url.path.back() == '/');
  if (url.protocol.empty()) Require(url.host.empty() && url.port.empty());
  if (!url.protocol.empty()) Require(url.path.starts_with('/'));
}

void CheckName(std::string_view name) {
  try {
    qx::RequireTemporaryName(name);
  } catch (const qx::Exception& e) {
    Require(!e.Message().empty());
    return;
  }
  const std::string path = qx::ExpandPath("/temporary/folder/", name);
  Require(qx::FolderPart(path) == qx::ExpandPath("/", "temporary/folder/"));
  Require(qx::FilePart(path) == name);
}

void CheckFolder(std::string_view folder) {
  try {
    qx::RequireRemoteFolder(folder);
  } catch (const qx::Exception&) {
    return;
  }
  const std::string root = qx::ExpandPath("/", "remote/site/");
  Require(qx::ExpandPath(root, "./" + std::string(folder) + "/").starts_with(root));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckUrl(text);
  CheckName(text);
  CheckFolder(text);
  return 0;
}
