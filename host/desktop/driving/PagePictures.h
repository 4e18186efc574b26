// Pictures of pages as they stand on the screen, for whoever looks after their looks.
#pragma once

#include <string>

#include "host/desktop/views/PagesWindow.h"

namespace qx::desktop {

// What the window shows, in a file STEM.png (STEM.bmp on Windows). One source a system. Raises Exception
// naming the file.
void SavePicture(wxWindow& window, const std::string& stem);

// One file, named like the page, for each page in the folder. The window is shown and an event loop is active.
void SavePictures(PagesWindow& window, PageDialog& pages, const std::string& folder);

}  // namespace qx::desktop
