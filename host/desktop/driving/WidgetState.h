// What the screen says of a control: everything that the page driver tells, read from the widget.
#pragma once

#include <nlohmann/json.hpp>

class wxWindow;

namespace qx::desktop {

// `page` is the widget of the whole page. The tab number is the widget's place among its siblings, -1 for one
// that the Tab key passes by.
nlohmann::ordered_json StateOfWidget(const wxWindow& widget, const wxWindow& page);

}  // namespace qx::desktop
