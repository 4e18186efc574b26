// The words of a build project's file. For the sources of BuildProject alone.
#pragma once

#include "host/xml/XmlFile.h"

namespace qx::build_project {

inline constexpr const char* kRoot = "BuildProject";
inline constexpr const char* kVariables = "Variables";
inline constexpr const char* kVariable = "Variable";
inline constexpr const char* kActions = "Actions";
inline constexpr const char* kAction = "Action";
inline constexpr const char* kProperty = "Property";
inline constexpr const char* kItem = "Item";
inline constexpr const char* kName = "name";
inline constexpr const char* kType = "type";
inline constexpr const char* kEnabled = "enabled";
inline constexpr const char* kYes = "True";
inline constexpr const char* kNo = "False";
inline constexpr const char* kEncoding = XmlFile::kEncodingName;

}  // namespace qx::build_project
