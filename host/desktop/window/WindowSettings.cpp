#include "host/desktop/window/WindowSettings.h"

#include <wx/display.h>
#include <wx/fileconf.h>
#include <wx/log.h>
#include <wx/toplevel.h>

#include <algorithm>
#include <chrono>

#include "host/desktop/views/WxText.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx::desktop {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostRecentFiles = 9;

// A window that moves within that time of being made was not moved by its user.
constexpr std::chrono::seconds kAppearing{2};

// GTK asks how large a window's frame will be before it shows the window, and has forgotten its place by
// then: the window appears in a corner, which is told as a move, and is put where it belongs from there. A
// window that is moved before it has settled shrinks, unless its size is asked for anew; and the toolkit asks
// for no size that it takes for the window's own.
void PlaceWhenShown(wxTopLevelWindow& window) {
  window.Bind(wxEVT_MOVE, [&window, place = window.GetRect(), begin = Clock::now(),
                           isPlaced = false](wxMoveEvent& event) mutable {
    event.Skip();
    if (isPlaced || Clock::now() - begin > kAppearing) return;
    if (!window.IsShown() || window.GetPosition() == place.GetPosition()) return;
    isPlaced = true;
    window.CallAfter([&window, place] {
      window.SetSize(wxRect(place.GetPosition(), place.GetSize() + wxSize(1, 1)));
      window.SetSize(place);
    });
  });
}

// Screens come and go: the place on the one it is on mostly, else on the first, as large as that one allows.
wxRect FittedIntoScreens(wxRect place) {
  const int number = wxDisplay::GetFromPoint(place.GetPosition() + place.GetSize() / 2);
  const wxRect area = wxDisplay(number == wxNOT_FOUND ? 0u : static_cast<unsigned>(number)).GetClientArea();
  place.SetSize({std::min(place.width, area.width), std::min(place.height, area.height)});
  place.x = std::clamp(place.x, area.x, area.x + area.width - place.width);
  place.y = std::clamp(place.y, area.y, area.y + area.height - place.height);
  return place;
}

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
  if (place.width > 0 && place.height > 0) window.SetSize(FittedIntoScreens(place));
  if (Number(group + "Maximized", 0) != 0) return window.Maximize();
  PlaceWhenShown(window);
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
