// The physical folder of a web project by the metabase of its server: the walk from the URL's folder up to
// the virtual directory that holds it. Binding is left to the caller, so that a test can hand in a metabase
// of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/registry/ComObject.h"

namespace qx {

// Binds one node of the metabase by its path ("IIS://server/w3svc/1/ROOT/Site"); null when there is none.
using MetabaseBinder = std::function<std::unique_ptr<ComObject>(const std::string& path)>;

// The path of the URL's document on its server's disk; of a server other than `machineName` (compared
// exactly) and localhost (in any letter case) the path through the drive's administrative share. Raises
// Exception "Unable to resolve to physical path - ..." when no virtual directory holds it.
std::string ResolveInMetabase(const std::string& url, std::int32_t siteNumber, const std::string& machineName,
                              const MetabaseBinder& bind);

}  // namespace qx
