#include "engine/dotnet/Freshness.h"

#include <filesystem>
#include <system_error>

#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {

namespace fs = std::filesystem;

bool IsFresh(const std::string& file, const std::vector<std::string>& inputs) {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(file, error);
  if (error) return false;
  for (const std::string& input : inputs) {
    const fs::file_time_type other = fs::last_write_time(input, error);
    if (error || other > time) return false;
  }
  return true;
}

bool IsSameCopy(const std::string& from, const std::string& to) {
  std::error_code error;
  const auto size = fs::file_size(from, error);
  if (error || fs::file_size(to, error) != size || error) return false;
  const fs::file_time_type time = fs::last_write_time(from, error);
  return !error && fs::last_write_time(to, error) == time && !error;
}

void CopyWithTime(const std::string& from, const std::string& to) {
  CreateFolders(FolderPart(to));
  CopyFileAside(from, to);
  std::error_code ignored;
  fs::last_write_time(to, fs::last_write_time(from, ignored), ignored);
}

void MoveIntoPlace(const std::string& from, const std::string& to) {
  CreateFolders(FolderPart(to));
  std::error_code error;
  fs::rename(from, to, error);
  if (error) throw Exception("Cannot write " + to + ": " + error.message());
}

}  // namespace qx
