// Where the files of a web project are reached, a project known only by its URL. The one place that has to
// change when a way of reaching them is added.
#pragma once

#include <string>

#include "versioning/Qxassemblyinfo.h"

namespace qx {

// The local path of the project file behind a URL, by the settings' detection method; empty for a method that
// is none. Raises Exception naming the URL when the file cannot be reached: this package has no such method
// yet.
std::string LocateWebProject(const std::string& url, const ProjectLocationSettings& settings);

}  // namespace qx
