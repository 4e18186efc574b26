// init: a build project from the file that it is to build.
#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "platform/CommandLine.h"
#include "platform/LineEnds.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxfromfile.h"

namespace qx::cli {
namespace {

// The first registered action that works on such files.
std::string NeedActionFor(Session& session, const std::string& file) {
  for (const RegisteredAction& action : session.Packages().Actions()) {
    const std::unique_ptr<TQXAction> asked = action.actionClass->construct();
    IQXFromFile* const fromFile = FromFileOf(*asked);
    if (fromFile != nullptr && fromFile->TakesFile(file)) return action.displayName;
  }
  throw Exception("No loaded package makes a build project from " + file);
}

// The file as it is named on disk.
std::string NeedFile(const std::string& operand) {
  const std::string file = ExpandPath("", operand);
  if (FolderExists(file)) throw Exception(file + " is a folder; name the solution in it");
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  return FindExisting(file);
}

// Empty where every line ends in CR LF already, or is left its own end.
std::string LineEndsProposal(int files) {
  if (files == 0 || CurrentLineEnds() == LineEnds::Keep) return "";
  return std::to_string(files) + " of the files to stamp " + (files == 1 ? "ends" : "end") +
         " lines in LF: qxhost options LineEnds=keep leaves them so, else they become CR LF\n";
}

}  // namespace

int InitProject(Session& session, const Invocation& invocation) {
  const std::string& source = invocation.operands[0];
  const std::string stem = source.substr(0, source.size() - ExtensionOf(source).size());
  const std::string target = invocation.operands.size() > 1 ? invocation.operands[1] : stem + ".build.xml";
  const std::string file = ExpandPath("", target);
  const std::string solution = NeedFile(source);
  const std::string name = NeedActionFor(session, solution);
  if (FileExists(file) || FolderExists(file))
    throw Exception(file + " exists already and is not overwritten");

  OpenProject project = session.Host::Open(BuildProject::Empty(file));
  IQXFromFile* const action = FromFileOf(project.Append(name));
  const FromFileAnswer answer =
      action->SetUpFromFile({solution, FolderPart(FindAsFarAsThere(file)),
                             invocation.Value("--configuration").value_or(""), invocation.Has("--stamp")});
  Session::Save(project);
  std::string text = "Wrote " + target + " with the action " + name + "\n";
  for (const std::string& decision : answer.decisions) text += decision + "\n";
  text += LineEndsProposal(answer.filesWithLineFeeds);
  session.Print(text + "Next: qxhost run " + QuoteArgument(target) + "\n");
  for (const std::string& warning : answer.warnings) Session::Warn(warning);
  return 0;
}

}  // namespace qx::cli
