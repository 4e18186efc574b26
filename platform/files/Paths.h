// Paths as the authors of solution files write them: both delimiters are understood on every system, and
// outside Windows a name that does not match exactly is looked up without regard to case, folder by folder.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace qx {

inline bool IsDelimiter(char c) { return c == '/' || c == '\\'; }
// The system's own delimiter.
char NativeDelimiter();
// Whether the system itself passes over letter case and takes both delimiters, as Windows does. Elsewhere a
// path as its author wrote it has to be looked up before the system or another program knows it.
bool SystemPassesOverSpelling();

// Up to and including the last delimiter (on Windows a drive's colon too); empty when there is none.
std::string FolderPart(std::string_view path);
// What follows the last delimiter.
std::string FilePart(std::string_view path);
// The file part's end from its last point on, as it is written: ".vcproj"; empty when there is none.
std::string ExtensionOf(std::string_view path);
// Whether ExtensionOf is that (".rc": it begins with its only point), letter case aside.
bool HasExtension(std::string_view path, std::string_view extension);
// Adds the system's delimiter when the path does not end in a delimiter; an empty path stays empty.
std::string WithTrailingDelimiter(std::string_view path);

// Begins at a root: "\", "/", "\\server\share" or a drive ("C:\"; outside Windows too, where such a path
// means no file but is not relative to anything either).
bool IsAbsolute(std::string_view path);

// The absolute path of `relative` seen from the folder `base` (from the current folder when `base` is empty
// or relative itself), with "." and ".." resolved by their text alone and delimiters made native. An absolute
// `relative` passes through the same way. Looks at no file.
std::string ExpandPath(std::string_view base, std::string_view relative);

// The path under which a file or folder of that name exists, in native delimiters and, where the name had to
// be looked up without regard to case, in the case it has on disk; empty when nothing of that name exists.
// Of several names that differ in case only the exact one wins, else the first in byte order.
std::string FindExisting(const std::string& path);

// As FindExisting for as many leading folders as are there; what follows them stays as it is, in native
// delimiters. For the path of a file that is still to be written. `path` is absolute.
std::string FindAsFarAsThere(const std::string& path);

// Outside Windows: the folders where network shares are mounted, by "\\server\share" in lower case. Wherever
// this and Files.h take a path, one that begins with a share (delimiters of either kind, letter case aside)
// then means the folder. On Windows it changes nothing. To be called before the threads that ask.
void SetShares(std::map<std::string, std::string> shares);

// FindExisting for many paths at once: a path that exists as it is written costs one question to the system;
// only after a miss are folders listed, each once. One thread; what changes on disk meanwhile may go unseen.
class PathFinder {
 public:
  PathFinder();
  ~PathFinder();
  PathFinder(PathFinder&&) noexcept;

  // Whether a file (not a folder) of that name exists; the path is then made the one it has on disk.
  bool FindFile(std::string& path);
  // As FindExisting.
  std::string Find(const std::string& path);

 private:
  struct Cache;
  std::unique_ptr<Cache> cache_;
};

}  // namespace qx
