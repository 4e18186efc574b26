// Which properties of an action a property grid shows, in which groups and under which captions: what the
// action itself says of them. No toolkit.
#pragma once

#include <string>
#include <vector>

#include "host/actions/Catalogue.h"

namespace qx::desktop {

struct ShownProperty {
  const PublishedProperty* property;  // the class record's
  std::string caption;
  std::string help;  // empty: none
  bool readOnly = false;
  bool opensPages = false;  // it has an editor: a button that opens the property pages
};

struct PropertyGroup {
  std::string caption;
  std::vector<ShownProperty> properties;
};

// The published properties that the action does not hide. The aliases come first, in their order: "[Group]"
// opens a group, "Name=Caption" puts a property into it; names are compared without regard to letter case,
// and a name that is no visible property is passed over. The others follow in the order of declaration under
// their own names, in a group called "Other", or "Properties" when it is the only one. Groups without
// properties are left out.
std::vector<PropertyGroup> GroupsOf(TQXAction& action, const Catalogue& catalogue);

}  // namespace qx::desktop
