// How the build goes, above its log: a bar while it goes on, then the verdict and the summary, red where it is red, and
// what to do about a run that could not begin.
#pragma once

#include <wx/panel.h>

#include <functional>
#include <optional>
#include <vector>

#include "host/desktop/core/RunStory.h"

class wxButton;
class wxGauge;
class wxStaticBitmap;
class wxStaticText;

namespace qx::desktop {

class RunPanel final : public wxPanel {
 public:
  explicit RunPanel(wxWindow* parent);

  // A build goes on; `done` from 0 to 1, none: nobody knows.
  void ShowProgress(const wxString& text, std::optional<double> done);
  // What has come of it. `way` is what a button leads to; an empty one: no button.
  struct Way {
    wxString caption;
    std::function<void()> go;
  };
  void ShowStory(const RunStory& story, Way way = {});
  // There is nothing to tell.
  void Clear();

  // It wants another height, or none.
  std::function<void()> OnHeight;

 private:
  void ShowLines(const std::vector<SummaryLine>& lines);
  void Settle();

  wxStaticBitmap* picture_;
  wxStaticText* verdict_;
  wxGauge* gauge_;
  wxButton* button_;
  wxPanel* lines_;
  Way way_;
  int width_ = 0;
};

}  // namespace qx::desktop
