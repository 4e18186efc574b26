// Makes the widget of a control: one of the toolkit's for each kind, bound to the model in both directions.
#pragma once

#include "host/desktop/views/Binding.h"

namespace qx::desktop {

// Makes the widget inside `parent` and adds it to the binding, which with the model outlives it. Containers
// come empty.
wxWindow* MakeControlView(TControl& control, wxWindow& parent, Binding& binding);

// Takes over what the user is still typing where the toolkit keeps it back: an open cell of a grid.
void FinishEditing(wxWindow& page);

// A choice without a dot on any of its buttons: toolkits give the first one its dot unless another has it.
// Makes that other one, which nobody sees, for the radio buttons of a container; before any of them.
void MakeHiddenChoice(const TControl& container, wxWindow& parent, Binding& binding);

// What a spin edit takes: digits with or without a sign.
bool IsWholeNumber(const std::string& text);

}  // namespace qx::desktop
