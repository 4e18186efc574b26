// The command `script`.
#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/script/Script.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

constexpr int kScriptFailed = 1;

Script ScriptOf(const Invocation& invocation) {
  if (const auto text = invocation.Value("-e")) return {"-e", *text, invocation.operands};
  if (invocation.operands.empty())
    throw Exception("qxhost script needs FILE or -e TEXT; see qxhost help script");
  const std::string& file = invocation.operands.front();
  return {file, ReadFile(ExpandPath("", file)), {invocation.operands.begin() + 1, invocation.operands.end()}};
}

}  // namespace

int RunScriptFile(Session& session, const Invocation& invocation) {
  const Script script = ScriptOf(invocation);
  Catalogue& catalogue = session.Packages();
  try {
    RunScript(catalogue, script, [&session](std::string_view line) { session.PrintExact(line); });
  } catch (const Exception& fault) {
    Session::Complain(fault.Message());
    return kScriptFailed;
  }
  catalogue.SaveOptions();
  return 0;
}

}  // namespace qx::cli
