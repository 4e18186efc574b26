#include "engine/vc/Libraries.h"

#include <algorithm>
#include <array>

#include "platform/Texts.h"

namespace qx {
namespace {

// Libraries of the old compiler itself, without their extension and in lower case.
constexpr std::array<std::string_view, 22> kUnneeded = {
    "libc",    "libcd",    "libcmt",   "libcmtd",  "msvcrt",   "msvcrtd",         "libcp",    "libcpd",
    "libcpmt", "libcpmtd", "msvcprt",  "msvcprtd", "oldnames", "bufferoverflowu", "delayimp", "libci",
    "libcid",  "msvcirt",  "msvcirtd", "comsupp",  "comsuppw", "unicows"};

std::string Base(const std::string& name) {
  const std::string file = FilePart(name);
  const std::string extension = ExtensionOf(file);
  return SameText(extension, ".lib") ? file.substr(0, file.size() - extension.size()) : file;
}

}  // namespace

std::string FileOfLibrary(const std::string& name) {
  return FilePart(ExtensionOf(name).empty() ? name + ".lib" : name);
}

LibraryFinder::LibraryFinder(std::vector<std::string> folders, const std::vector<const BuiltProject*>& needs,
                             const Toolchain& tools)
    : folders_(std::move(folders)), needs_(needs), tools_(tools) {}

LibraryFinder::Library LibraryFinder::Find(const std::string& name) {
  const std::string withExtension = ExtensionOf(name).empty() ? name + ".lib" : name;
  for (const std::string& folder : folders_) {
    std::string path = ExpandPath(folder, withExtension);
    if (finder_.FindFile(path)) return {Found::File, path};
  }
  // One that is built elsewhere than the project looks: what is meant is clear from the name.
  const std::string file = FilePart(withExtension);
  for (const BuiltProject* need : needs_) {
    for (const std::string* output : {&need->importLibrary, &need->output}) {
      if (!output->empty() && SameText(FilePart(*output), file)) return {Found::File, *output};
    }
  }
  const std::string base = LowerCase(Base(name));
  if (std::find(kUnneeded.begin(), kUnneeded.end(), base) != kUnneeded.end()) return {Found::Unneeded, ""};
  if (!name.ends_with(file) && name != file) return {};
  for (const std::string& folder : tools_.libraryFolders) {
    std::string path = folder + "lib" + base + ".a";
    if (finder_.FindFile(path)) {
      const std::string found = FilePart(path);
      return {Found::Own, "-l" + found.substr(3, found.size() - 5)};
    }
  }
  return {};
}

}  // namespace qx
