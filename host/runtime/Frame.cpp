// The bases of property pages and property editors: a page that does nothing by itself.
#include "plugin/Qxframe.h"

namespace qx {

TFrame::TFrame() = default;
TFrame::~TFrame() = default;

void TFrame::InitFrame() {}
void TFrame::InitPage() {}
void TFrame::ReadActionData(TPersistent&) {}
void TFrame::WriteActionData(TPersistent&) {}
void TFrame::OnPageActivate() {}
void TFrame::OnPageDeActivate() {}
int TFrame::GetHelpContext() const { return 0; }

TQXPropertyEditor::~TQXPropertyEditor() = default;
TShowActionPropertiesEditor::~TShowActionPropertiesEditor() = default;
std::string TShowActionPropertiesEditor::GetPageName() const { return {}; }

}  // namespace qx
