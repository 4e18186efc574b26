// Finds what is cut on the screen: texts and values for which their widgets are too small, widgets that reach out
// of what they stand in, windows that reach out of the screen. For tests.
#pragma once

#include <string>
#include <vector>

class wxWindow;

namespace qx::desktop {

// A line for each, "btnOk 'OK': 40x20 of 52x30"; empty: everything is whole. What is scrolled counts as whole.
// User-interface thread.
std::vector<std::string> FindCut(wxWindow& topLevel);

}  // namespace qx::desktop
