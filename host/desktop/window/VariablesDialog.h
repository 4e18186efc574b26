// The variables of a build project in a grid that can be edited.
#pragma once

#include <wx/window.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace qx::desktop {

using ProjectVariables = std::vector<std::pair<std::string, std::string>>;

// Shows them until the user gives up, or confirms and `set` takes what the grid holds; rows without a name
// are left out. `set` tells why when it takes nothing.
void EditVariablesIn(wxWindow* parent, const ProjectVariables& variables,
                     const std::function<bool(const ProjectVariables&)>& set);

}  // namespace qx::desktop
