#include "host/desktop/driving/PagePictures.h"

#include <wx/evtloop.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

// Long enough for the toolkit to draw what has changed: it does so with the clock of the screen.
void LetDraw() {
  constexpr long kMilliseconds = 400;
  wxEventLoopBase* loop = wxEventLoopBase::GetActive();
  const wxStopWatch watch;
  while (watch.Time() < kMilliseconds) {
    while (loop->Pending()) loop->Dispatch();
    loop->ProcessIdle();
    wxMilliSleep(5);
  }
}

}  // namespace

void SavePictures(PagesWindow& window, PageDialog& pages, const std::string& folder) {
  for (int page = 0; page < pages.Count(); ++page) {
    window.GoTo(page);
    LetDraw();
    SavePicture(window, WithTrailingDelimiter(folder) + pages.Name(page));
  }
}

}  // namespace qx::desktop
