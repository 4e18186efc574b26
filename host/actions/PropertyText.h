// The persistent form of property values: True/False, decimal numbers, value names; and the ways in which the
// host reads and writes the published properties of an object.
#pragma once

#include <string>
#include <string_view>

#include "plugin/Qxaction.h"
#include "plugin/Qxproperties.h"

namespace qx {

// The text of a value; a list's items joined by ";" (for people; the build project writes items one by one).
std::string PropertyToText(const PublishedProperty& property, const PropertyValue& value);

// The value of a text, as the command line and the build project give it. Words are read without regard to
// letter case; a list's items are separated by ";". Raises Exception that names property, text and the
// nearest valid value: "UseEnv: \"Flase\" is no value of it; supported: False, True (nearest: False)".
PropertyValue PropertyFromText(const PublishedProperty& property, std::string_view text);

// The property of that name, letter case aside, an exact match first; null when there is none.
const PublishedProperty* FindProperty(PropertyTable table, std::string_view name);
// The same; raises Exception that names the nearest property.
const PublishedProperty& NeedProperty(PropertyTable table, std::string_view name);

// Reads the stored properties in the order of declaration; what the reader does not have keeps its value.
// Last come secrets: a clear text is newer than the encrypted form beside it, unless it is empty.
void ReadProperties(TPersistent& object, PropertyTable table, IQXStateReader& reader);
// Writes the stored properties in the order of declaration; secrets and those that are not stored are left out.
void WriteProperties(TPersistent& object, PropertyTable table, IQXStateWriter& writer);

}  // namespace qx
