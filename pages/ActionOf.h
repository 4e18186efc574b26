// What the host hands to a page, as the class that the page edits.
#pragma once

#include "plugin/Qxproperties.h"

namespace qx {

// Raises Exception for an object of another class: the page was registered for the wrong one.
template <class Class>
Class& ActionOf(TPersistent& object) {
  if (Class* action = dynamic_cast<Class*>(&object)) return *action;
  throw Exception("Invalid class typecast");
}

}  // namespace qx
