// Keeps the widgets of a dialog's pages and their control models together. Models do not tell when they
// change, so every operation of the user runs here, and afterwards every widget of every page is compared
// with its model and set where it differs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "plugin/Qxcontrols.h"

class wxWindow;

namespace qx::desktop {

// A control and the widget that shows it; null for a widget that stands for no control.
struct ControlView {
  TControl* control;
  wxWindow* window;  // the toolkit's; named like the control
  // Sets what differs from the model; whether anything did. Nothing that it sets is taken for the user's.
  std::function<bool()> show;
};

// User-interface thread. Outlives no widget that reports to it, which is why the dialog owns it.
class Binding {
 public:
  // What an operation of the user does to the project, as far as it can be told beforehand.
  enum class Effect { Edits, MayEdit };

  // Runs an operation of the user and shows what came of it. What it raises is told through `fault`. While
  // widgets are being set nothing runs: what they report then is an echo.
  void Perform(Effect effect, const std::function<void()>& operation);
  // Compares every widget with its model; whether any differed.
  bool Show();

  void Add(ControlView view) { views_.push_back(std::move(view)); }
  // From now on nothing is shown and nothing that widgets report is done: they are about to go.
  void Clear();

  // Takes what a page's handler raised; shows an error unless somebody else wants it.
  std::function<void(const std::string&)> fault = QXShowError;
  std::function<void()> edited;   // the user has changed something; may be null
  std::function<void()> shown;    // widgets and models agree again; may be null
  std::function<void()> resized;  // a caption has changed: what stands beside it moves; may be null

 private:
  std::vector<ControlView> views_;
  bool isShowing_ = false;
  bool isOver_ = false;
};

}  // namespace qx::desktop
