#include "versioning/AssemblyInfoPlace.h"

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "versioning/AssemblyAttributes.h"

namespace qx {
namespace {

bool HasTheWord(std::string_view name) {
  return FindWord(name, "assemblyinfo", '.') != std::string_view::npos;
}

// What follows the folder in a path below it; none for any other path.
std::optional<std::string_view> Below(std::string_view path, const std::string& folder) {
  const std::string whole = WithTrailingDelimiter(folder);
  const bool isBelow =
      SystemPassesOverSpelling() ? SameText(path.substr(0, whole.size()), whole) : path.starts_with(whole);
  if (!isBelow) return std::nullopt;
  return path.substr(whole.size());
}

// Whether a file that is no link stands in folders of the tree that are none either: one look at each, where the
// real path takes many. False: it is not known.
bool StandsBelow(const std::string& path, const std::string& tree) {
  const auto below = Below(path, tree);
  if (!below || SystemPassesOverSpelling()) return false;
  const std::size_t begin = path.size() - below->size();
  for (std::size_t at = path.find('/', begin); at != std::string::npos; at = path.find('/', at + 1)) {
    std::error_code error;
    if (std::filesystem::symlink_status(path.substr(0, at), error).type() !=
        std::filesystem::file_type::directory)
      return false;
  }
  return true;
}

}  // namespace

bool IsAssemblyInfoFile(const std::string& reference, const std::string& folder, const std::string& tree,
                        bool isNoLink) {
  const std::string path = ExpandPath(folder, reference);
  const bool isNamedSo = HasTheWord(FilePart(path));
  const auto below = Below(path, ExpandPath("", tree));
  if (!isNamedSo && !(below && HasTheWord(*below))) return false;
  if (isNamedSo && isNoLink) return true;
  const std::string real = RealPath(path);
  return Below(real, RealPath(tree)).has_value() || HasTheWord(FilePart(real));
}

bool LeavesTree(const std::string& reference, const std::string& folder, const std::string& tree,
                bool isNoLink) {
  const std::string path = ExpandPath(folder, reference);
  if (isNoLink && StandsBelow(path, ExpandPath("", tree))) return false;
  return !Below(RealPath(path), RealPath(tree)).has_value();
}

}  // namespace qx
