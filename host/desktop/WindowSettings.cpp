#include "host/desktop/WindowSettings.h"

#include <wx/display.h>
#include <wx/fileconf.h>
#include <wx/log.h>
#include <wx/toplevel.h>

#include <algorithm>

#include "host/desktop/WxText.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx::desktop {
namespace {

constexpr std::size_t kMostRecentFiles = 9;

}  // namespace

// A lock file or a broken one must not bother anybody: the toolkit's log is silent here.
WindowSettings::WindowSettings(const std::string& file) : file_(file) {
  const wxLogNull silence;
  config_ = std::make_unique<wxFileConfig>(wxString(), wxString(), ToWx(file_), wxString(),
                                           wxCONFIG_USE_LOCAL_FILE | wxCONFIG_USE_SUBDIR);
  config_->SetExpandEnvVars(false);
}

WindowSettings::~WindowSettings() {
  const wxLogNull silence;
  config_.reset();  // writes what is left
}

std::vector<std::string> WindowSettings::RecentFiles() const {
  std::vector<std::string> files;
  for (std::size_t i = 1; i <= kMostRecentFiles; ++i) {
    wxString file;
    if (config_->Read(wxString::Format("/Recent/File%zu", i), &file) && !file.empty())
      files.push_back(FromWx(file));
  }
  return files;
}

void WindowSettings::AddRecentFile(const std::string& file) {
  std::vector<std::string> files = RecentFiles();
  std::erase(files, file);
  files.insert(files.begin(), file);
  files.resize(std::min(files.size(), kMostRecentFiles));
  WriteRecentFiles(files);
}

void WindowSettings::RemoveRecentFile(const std::string& file) {
  std::vector<std::string> files = RecentFiles();
  std::erase(files, file);
  WriteRecentFiles(files);
}

void WindowSettings::WriteRecentFiles(const std::vector<std::string>& files) {
  config_->DeleteGroup("/Recent");
  for (std::size_t i = 0; i < files.size(); ++i)
    config_->Write(wxString::Format("/Recent/File%zu", i + 1), ToWx(files[i]));
}

void WindowSettings::Restore(const wxString& name, wxTopLevelWindow& window) const {
  const wxString group = "/" + name + "/";
  const wxRect place(
      static_cast<int>(Number(group + "Left", -1)), static_cast<int>(Number(group + "Top", -1)),
      static_cast<int>(Number(group + "Width", 0)), static_cast<int>(Number(group + "Height", 0)));
  if (place.width > 0 && place.height > 0) {
    const bool visible = wxDisplay::GetFromPoint(place.GetPosition() + wxPoint(50, 10)) != wxNOT_FOUND;
    if (visible)
      window.SetSize(place);
    else
      window.SetSize(place.GetSize());
  }
  if (Number(group + "Maximized", 0) != 0) window.Maximize();
}

void WindowSettings::Keep(const wxString& name, const wxTopLevelWindow& window) {
  const wxString group = "/" + name + "/";
  SetNumber(group + "Maximized", window.IsMaximized() ? 1 : 0);
  if (window.IsMaximized() || window.IsIconized()) return;  // where it was before is what it returns to
  const wxRect place = window.GetRect();
  SetNumber(group + "Left", place.x);
  SetNumber(group + "Top", place.y);
  SetNumber(group + "Width", place.width);
  SetNumber(group + "Height", place.height);
}

long WindowSettings::Number(const wxString& name, long otherwise) const {
  return config_->ReadLong(name, otherwise);
}

void WindowSettings::SetNumber(const wxString& name, long value) {
  if (Number(name, value + 1) != value) config_->Write(name, value);
}

void WindowSettings::Save() {
  const wxLogNull silence;
  try {
    CreateFolders(FolderPart(file_));
  } catch (const Exception&) {  // then there is nowhere to keep them
  }
  config_->Flush();
}

}  // namespace qx::desktop
