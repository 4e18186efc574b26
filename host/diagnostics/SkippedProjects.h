// Projects that the user had the engine skip: its warnings of them, taken over into what an action reports of a run.
// No program is looked for of such a project.
#pragma once

#include <span>
#include <string_view>

#include "host/diagnostics/DiagnosticLine.h"
#include "plugin/Qxrunreport.h"

namespace qx {

// The code of the engine's warning that it skips a project as the setting Engine.Skip asks; the warning's file is
// the project's.
inline constexpr std::string_view kEngineSkipCode = "QXE0002";

// Makes those projects of the action's report that were skipped so, unless their program is as it should be.
void TakeSkipped(RunReport& report, int action, std::span<const Diagnostic> told);

}  // namespace qx
