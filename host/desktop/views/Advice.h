// What pages tell the person who fills them in: marks what is wrong as it is typed, has a page read again what
// depends on a text once the user has left it, and asks before something is lost. All rules stay in the pages.
#pragma once

#include <wx/string.h>

#include <functional>
#include <string>
#include <vector>

#include "host/desktop/views/Binding.h"
#include "plugin/Qxframe.h"
#include "plugin/Qxpageadvice.h"

class wxTextCtrl;

namespace qx::desktop {

enum class Question { Offer, Loss };

// User-interface thread. Goes before the widgets that it watches.
class Advice {
 public:
  // Asks the user; true: yes.
  using Ask = std::function<bool(Question kind, const std::string& text)>;

  Advice(Ask ask, Binding& binding);

  // From now on the page's texts are watched; its controls are shown on that window. Pages without advice are
  // passed over.
  void Watch(TFrame& page, wxWindow& window);
  bool IsGiven() const { return !pages_.empty(); }

  // Marks the texts that are wrong and leaves the others as they are; to be called when something was shown.
  void Mark();
  // The first thing that is wrong on the page, as Mark saw it; empty: nothing.
  std::string WrongOn(const TFrame& page) const;

  // The user goes on from the text that is being typed. False: something would be lost, and they do not want
  // it to be.
  bool MayWrite();

 private:
  struct Page {
    TFrame* frame;
    IQXPageAdvice* advice;
  };
  struct Text {
    std::size_t page;
    TEdit* edit;
    wxTextCtrl* widget;
    std::string left;   // what the page was told of last
    std::string wrong;  // what is wrong with it
  };

  void Leave(Text& text);
  void LeaveAllWithoutFocus();

  Ask ask_;
  Binding& binding_;
  std::vector<Page> pages_;
  std::vector<Text> texts_;
};

}  // namespace qx::desktop
