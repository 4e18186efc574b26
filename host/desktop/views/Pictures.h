// The pictures of the desktop: its own as vector drawings in the colours of the theme, and those that
// packages register for their actions.
#pragma once

#include <wx/bmpbndl.h>

#include <string>
#include <vector>

namespace qx::desktop {

enum class Picture {
  New,
  Open,
  Save,
  Undo,
  Redo,
  Delete,
  Duplicate,
  Up,
  Down,
  Pages,
  Validate,
  Run,
  Stop,
  Rehearse,
  Options,
  Action,   // an action without a picture of its own
  Folder,   // a category of the catalogue
  Running,  // states of a run
  Succeeded,
  Failed,
  Browse,  // on a button in a field
  Refresh,
};

enum class PictureLook { Coloured, Disabled };

// 16 device-independent pixels unless said otherwise; sharp at every scale.
wxBitmapBundle PictureOf(Picture picture, int size = 16, PictureLook look = PictureLook::Coloured);

// The picture that a package registered under a name: NAME.svg in "Resources" below one of the folders that
// packages were loaded from, else the picture of an action without one.
wxBitmapBundle PackagePicture(const std::vector<std::string>& folders, const std::string& name,
                              int size = 16);

// Whether the theme's windows are dark, so that colours beside the theme's own fit.
bool IsDark();

}  // namespace qx::desktop
