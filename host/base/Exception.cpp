// The one exception type of the contract: its two members live here, so that every module shares one type.
#include "plugin/Qxtypes.h"

namespace qx {

Exception::Exception(std::string message) : message_(std::move(message)) {}

Exception::~Exception() = default;

}  // namespace qx
