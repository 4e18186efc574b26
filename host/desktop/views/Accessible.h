// What a screen reader is told about widgets beyond what they say by themselves. One source a system.
#pragma once

class wxStaticText;
class wxString;
class wxWindow;

namespace qx::desktop {

// What the widget is called, as text without accelerator marks.
void SetAccessibleName(wxWindow& widget, const wxString& name);
// The name that was set; empty when none was.
wxString AccessibleName(const wxWindow& widget);

// The label names the widget, and its accelerator leads there. The label stands right before the widget among
// its siblings.
void LetLabel(wxStaticText& label, wxWindow& widget);
// The widget that the label's accelerator leads to; null: none.
wxWindow* LabelledBy(const wxStaticText& label);

}  // namespace qx::desktop
