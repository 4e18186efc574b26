// The command-line builder that the host hands to actions which run one program.
#pragma once

#include "plugin/Qxexecuteaction.h"

namespace qx {

// An empty one.
InterfacePtr<ICommandLineBuilder> CreateCommandLineBuilder();

}  // namespace qx
