#include "host/desktop/views/Binding.h"

#include <wx/stattext.h>
#include <wx/window.h>

#include <exception>

#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

bool ShowEnabled(const ControlView& view) {
  if (view.window->IsThisEnabled() == view.control->Enabled()) return false;
  view.window->Enable(view.control->Enabled());
  return true;
}

bool ShowCaption(const ControlView& view) {
  if (view.window->GetLabel() == ToWx(view.control->caption)) return false;
  view.window->SetLabel(ToWx(view.control->caption));
  return true;
}

bool ShowHint(const ControlView& view) {
  if (view.window->GetToolTipText() == ToWx(view.control->hint)) return false;
  view.window->SetToolTip(ToWx(view.control->hint));
  return true;
}

// Edits, lists and their like have a caption of their own nowhere on the screen.
bool ShowsCaption(const TControl& control) {
  return control.Kind() == "label" || control.Kind() == "heading" || control.Kind() == "group" ||
         control.Kind() == "button" || control.Kind() == "checkBox" || control.Kind() == "radioButton";
}

}  // namespace

void Binding::Perform(Effect effect, const std::function<void()>& operation) {
  if (isShowing_ || isOver_) return;
  bool failed = false;
  try {
    operation();
  } catch (const std::exception& raised) {
    failed = true;
    Show();  // what was done before it failed, so that the user sees it behind the message
    fault(raised.what());
  }
  const bool differed = Show();
  if ((effect == Effect::Edits || differed || failed) && edited) edited();
}

void Binding::Clear() {
  isOver_ = true;
  views_.clear();
}

bool Binding::Show() {
  if (isShowing_) return false;
  isShowing_ = true;
  bool differed = false;
  bool moves = false;
  for (const ControlView& view : views_) {
    if (view.control != nullptr) {
      if (ShowsCaption(*view.control) && ShowCaption(view)) moves = differed = true;
      differed = ShowEnabled(view) || differed;
      differed = ShowHint(view) || differed;
    }
    if (view.show) differed = view.show() || differed;
  }
  isShowing_ = false;
  if (moves && resized) resized();
  if (shown) shown();
  return differed;
}

}  // namespace qx::desktop
