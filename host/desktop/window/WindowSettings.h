// What the desktop remembers between two uses: files opened lately, and where its windows and their parts
// stood. Kept in desktop.ini in the host's configuration folder; nothing a build depends on is in it.
#pragma once

#include <wx/string.h>

#include <memory>
#include <string>
#include <vector>

class wxFileConfig;
class wxTopLevelWindow;

namespace qx::desktop {

// User-interface thread. A file that cannot be read or written is passed over: nothing is lost but places.
class WindowSettings {
 public:
  // `file` is where they are kept.
  explicit WindowSettings(const std::string& file);
  ~WindowSettings();
  WindowSettings(const WindowSettings&) = delete;
  WindowSettings& operator=(const WindowSettings&) = delete;

  // Files opened lately, the latest first.
  std::vector<std::string> RecentFiles() const;
  void AddRecentFile(const std::string& file);
  void RemoveRecentFile(const std::string& file);

  // Puts a window where one of that name stood last, if that is still on a screen; else it is shown where it
  // is now. For a window that was not shown yet.
  void Restore(const wxString& name, wxTopLevelWindow& window) const;
  void Keep(const wxString& name, const wxTopLevelWindow& window);

  // Numbers by name, such as the place of a sash.
  long Number(const wxString& name, long otherwise) const;
  void SetNumber(const wxString& name, long value);

  // Writes what changed.
  void Save();

 private:
  void WriteRecentFiles(const std::vector<std::string>& files);

  std::string file_;
  std::unique_ptr<wxFileConfig> config_;
};

}  // namespace qx::desktop
