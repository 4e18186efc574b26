#include "platform/registry/ComObject.h"

namespace qx {

std::unique_ptr<ComObject> BindComObject(const std::string&) { return nullptr; }

}  // namespace qx
