// What each command of qxhost does, under the source that it stands in. All return the exit code; a usage error
// or an input that cannot be read leaves as Exception.
#pragma once

namespace qx::cli {

class Session;
struct Invocation;

// RunCommands.cpp: `run`, `validate`. CheckCommand.cpp: `check`.
int RunProject(Session& session, const Invocation& invocation);
int ValidateProject(Session& session, const Invocation& invocation);
int CheckBeforeRun(Session& session, const Invocation& invocation);
// InitCommand.cpp: `init`. ProjectCommands.cpp: `new`, `add`, `set`, `show`, `expand`.
int InitProject(Session& session, const Invocation& invocation);
int NewProject(Session& session, const Invocation& invocation);
int AddAction(Session& session, const Invocation& invocation);
int SetProperties(Session& session, const Invocation& invocation);
int ShowHistory(Session& session, const Invocation& invocation);
int RestoreRun(Session& session, const Invocation& invocation);
int ShowProject(Session& session, const Invocation& invocation);
int ExpandText(Session& session, const Invocation& invocation);
// RearrangeCommands.cpp: `remove`, `move`, `disable`, `enable`, `var`. VersionCommand.cpp: `version`.
int RemoveAction(Session& session, const Invocation& invocation);
int MoveAction(Session& session, const Invocation& invocation);
int DisableAction(Session& session, const Invocation& invocation);
int EnableAction(Session& session, const Invocation& invocation);
int ChangeVariables(Session& session, const Invocation& invocation);
int ShowVersions(Session& session, const Invocation& invocation);
// CatalogueCommands.cpp: `actions`, `package`, `options`.
int ShowActions(Session& session, const Invocation& invocation);
int ShowPackages(Session& session, const Invocation& invocation);
int ShowOptions(Session& session, const Invocation& invocation);
// EditCommand.cpp: `edit`. PageCommands.cpp: `drive`. ScriptCommands.cpp: `script`. Help.cpp: `help`.
int EditProject(Session& session, const Invocation& invocation);
int DrivePages(Session& session, const Invocation& invocation);
int RunScriptFile(Session& session, const Invocation& invocation);
int ShowHelp(Session& session, const Invocation& invocation);

}  // namespace qx::cli
