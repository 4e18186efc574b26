// The tiny package's pages: one of its action with a control of every kind, one of its options.
#pragma once

#include "plugin/Qxframe.h"

namespace qx::tiny {

const TFrameClass& TinyFrameClass();
const TFrameClass& TinyOptionsFrameClass();

}  // namespace qx::tiny
