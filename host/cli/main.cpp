// The host's command line.
#include <algorithm>
#include <exception>
#include <span>

#include "host/cli/Documents.h"
#include "host/cli/Session.h"
#include "host/system/HostProgram.h"
#include "host/system/Stopping.h"
#include "platform/Arguments.h"

namespace qx::cli {
namespace {

constexpr int kUsageError = 2;

// The build makes the completion files and the man page with these; they are for nobody else. Empty: not
// asked for.
std::string PrintedDocument(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return "";
  if (arguments[0] == "--print-man") return ManPage();
  if (arguments[0] != "--print-completion" || arguments.size() < 2) return "";
  return arguments[1] == "zsh" ? ZshCompletion() : BashCompletion();
}

int Dispatch(Session& session, const Invocation& invocation) {
  if (invocation.Has("--help")) {
    session.Print(invocation.command == nullptr ? ProgramHelp() : CommandHelp(*invocation.command));
    return 0;
  }
  if (invocation.Has("--version")) {
    session.Print("qxhost " QXHOST_VERSION "\n");
    return 0;
  }
  if (invocation.command == nullptr) throw Exception("No command was given; see qxhost --help");
  return invocation.command->run(session, invocation);
}

int PrintWords(const std::vector<std::string>& arguments, std::size_t asked, StopGuard& guard) {
  const std::span words(arguments);
  const std::vector<std::string> globals(arguments.begin(),
                                         arguments.begin() + static_cast<std::ptrdiff_t>(asked));
  const Invocation invocation = ParseArguments(TheProgram(), globals);
  Session session(invocation, guard);
  session.PrintExact(CompletionWords(session, words.subspan(asked + 1)));
  return 0;
}

int Main(const std::vector<std::string>& arguments, StopGuard& guard) {
  // Asked by the completions, for nobody else.
  const auto asked = std::find(arguments.begin(), arguments.end(), "--print-words");
  if (asked != arguments.end())
    return PrintWords(arguments, static_cast<std::size_t>(asked - arguments.begin()), guard);
  const Invocation invocation =
      PrintedDocument(arguments).empty() ? ParseArguments(TheProgram(), arguments) : Invocation();
  Session session(invocation, guard);
  if (const std::string document = PrintedDocument(arguments); !document.empty()) {
    session.PrintExact(document);
    return 0;
  }
  int code = kUsageError;
  try {
    code = Dispatch(session, invocation);
  } catch (const std::exception& fault) {
    // Here, while the session lives: the exception may belong to a package, which goes with it.
    Session::Complain(fault.what());
    if (StopIsAsked()) code = StopGuard::kExitCode;
  }
  if (session.WriteError().empty()) return code;
  Session::Complain(session.WriteError());
  return code == 0 ? kUsageError : code;
}

}  // namespace
}  // namespace qx::cli

int main(int count, char** arguments) {
  try {
    qx::IgnoreBrokenStreams();
    qx::StopGuard guard;
    return qx::cli::Main(qx::CommandLineWords(count, arguments), guard);
  } catch (const std::exception& fault) {
    qx::cli::Session::Complain(fault.what());
    return qx::cli::kUsageError;
  }
}
