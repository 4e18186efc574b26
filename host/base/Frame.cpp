// The bases of property pages and property editors: a page that owns its controls and does nothing by itself.
#include "plugin/Qxframe.h"

#include "platform/Texts.h"

namespace qx {

TFrame::TFrame() : root_(std::make_unique<TPanel>()) {}
TFrame::~TFrame() = default;

void TFrame::InitFrame() {}
void TFrame::InitPage() {}
void TFrame::ReadActionData(TPersistent&) {}
void TFrame::WriteActionData(TPersistent&) {}
void TFrame::OnPageActivate() {}
void TFrame::OnPageDeActivate() {}
int TFrame::GetHelpContext() const { return 0; }

TControl* TFrame::FindControl(std::string_view name) const {
  for (TControl* control : order_)
    if (SameText(control->name, name)) return control;
  return nullptr;
}

void TFrame::Adopt(TControl& parent, std::unique_ptr<TControl> control) {
  control->parent_ = &parent;
  controls_.push_back(std::move(control));
  order_.push_back(controls_.back().get());
  parent.children_.push_back(order_.back());
}

TQXOptionsFrame::~TQXOptionsFrame() = default;
void TQXOptionsFrame::InitPage(IQXOptionPageOwner&) {}

TQXPropertyEditor::~TQXPropertyEditor() = default;
TShowActionPropertiesEditor::~TShowActionPropertiesEditor() = default;
std::string TShowActionPropertiesEditor::GetPageName() const { return {}; }

}  // namespace qx
