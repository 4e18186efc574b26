#include "host/desktop/views/Advice.h"

#include <wx/textctrl.h>

#include <utility>

#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/FaultColour.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

wxTextCtrl* TextOf(const TControl& control, wxWindow& page) {
  wxWindow* widget = wxWindow::FindWindowByName(ToWx(control.name), &page);
  auto* edit = dynamic_cast<ButtonEdit*>(widget);
  return edit == nullptr ? dynamic_cast<wxTextCtrl*>(widget) : &edit->Text();
}

}  // namespace

Advice::Advice(Ask ask, Binding& binding) : ask_(std::move(ask)), binding_(binding) {}

void Advice::Watch(TFrame& page, wxWindow& window) {
  const auto advice = Query<IQXPageAdvice>(&page);
  if (!advice) return;
  pages_.push_back({&page, &*advice});
  for (TControl* control : page.Controls()) {
    auto* edit = dynamic_cast<TEdit*>(control);
    if (edit == nullptr) continue;
    wxTextCtrl* widget = TextOf(*edit, window);
    if (widget == nullptr) continue;
    texts_.push_back({pages_.size() - 1, edit, widget, edit->Text(), {}});
    // A page may ask the user something: not while the focus is on its way.
    widget->Bind(wxEVT_KILL_FOCUS, [this, widget](wxFocusEvent& event) {
      event.Skip();
      widget->CallAfter([this] { LeaveAllWithoutFocus(); });
    });
  }
}

void Advice::Mark() {
  for (Text& text : texts_) {
    std::string wrong = pages_[text.page].advice->WhatIsWrongWith(*text.edit);
    if (wrong.empty() != text.wrong.empty()) {
      text.widget->SetForegroundColour(wrong.empty() ? wxNullColour : FaultColour());
      text.widget->Refresh();
    }
    text.wrong = std::move(wrong);
  }
}

std::string Advice::WrongOn(const TFrame& page) const {
  for (const Text& text : texts_)
    if (pages_[text.page].frame == &page && !text.wrong.empty()) return text.wrong;
  return {};
}

void Advice::Leave(Text& text) {
  if (text.left == text.edit->Text()) return;
  text.left = text.edit->Text();
  PageOffer offer;
  binding_.Perform(Binding::Effect::MayEdit,
                   [&] { offer = pages_[text.page].advice->TextWasLeft(*text.edit); });
  if (offer.question.empty() || !ask_(Question::Offer, offer.question)) return;
  binding_.Perform(Binding::Effect::Edits, offer.accept);
}

void Advice::LeaveAllWithoutFocus() {
  for (Text& text : texts_)
    if (!text.widget->HasFocus()) Leave(text);
}

bool Advice::MayWrite() {
  for (Text& text : texts_) Leave(text);
  for (const Page& page : pages_) {
    const std::string question = page.advice->QuestionBeforeWriting();
    if (!question.empty() && !ask_(Question::Loss, question)) return false;
  }
  return true;
}

}  // namespace qx::desktop
