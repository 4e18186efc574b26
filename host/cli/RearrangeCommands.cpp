// remove, move, enable, disable and var: what changes a build project around its actions' properties.
#include <algorithm>
#include <functional>

#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"

namespace qx::cli {
namespace {

// The zero-based index that an operand counts from 1.
int IndexOf(const BuildProject& project, const std::string& operand) {
  const std::optional<std::int32_t> number = ToInteger(operand);
  if (!number || *number < 1) throw Exception(Quoted(operand) + " is no action's number; they count from 1");
  if (*number > project.ActionCount())
    throw Exception(project.File() + " has no action " + operand + "; it has " +
                    std::to_string(project.ActionCount()));
  return *number - 1;
}

// Changes the file and nothing else in it, but for a secret: what stands there in clear text is never written.
int Change(Session& session, const Invocation& invocation, const std::function<void(BuildProject&)>& change) {
  const std::string file = Session::ProjectFile(invocation);
  const FileLock lock(file);
  BuildProject changed = BuildProject::Load(file);
  change(changed);
  const std::string text = changed.Text();
  OpenProject project = session.Host::Open(std::move(changed));
  const std::string withoutSecrets = project.TextToSave();
  for (const std::string& warning : project.Warnings()) Session::Warn(warning);
  ReplaceFile(file, project.TookSecretOut() ? withoutSecrets : text);
  return 0;
}

using Variable = std::pair<std::string, std::string>;

auto FindVariable(std::vector<Variable>& variables, const std::string& name) {
  return std::ranges::find_if(variables,
                              [&](const Variable& variable) { return SameText(variable.first, name); });
}

void RemoveVariable(std::vector<Variable>& variables, const std::string& name, const std::string& file) {
  const auto found = FindVariable(variables, name);
  if (found == variables.end()) {
    std::vector<std::string> names;
    for (const Variable& variable : variables) names.push_back(variable.first);
    throw Exception(file + " has no variable " + Quoted(name) + NameAdvice(name, names));
  }
  variables.erase(found);
}

void SetVariable(std::vector<Variable>& variables, const std::string& assignment) {
  auto [name, value] = SplitAssignment(assignment);
  const auto found = FindVariable(variables, name);
  if (found == variables.end()) {
    variables.emplace_back(std::move(name), std::move(value));
  } else {
    found->second = std::move(value);
  }
}

}  // namespace

int RemoveAction(Session& session, const Invocation& invocation) {
  return Change(session, invocation, [&](BuildProject& project) {
    project.RemoveAction(IndexOf(project, invocation.operands[1]));
  });
}

int MoveAction(Session& session, const Invocation& invocation) {
  return Change(session, invocation, [&](BuildProject& project) {
    const int from = IndexOf(project, invocation.operands[1]);
    const int to = IndexOf(project, invocation.operands[2]);
    if (from != to) project.MoveAction(from, to);
  });
}

int DisableAction(Session& session, const Invocation& invocation) {
  return Change(session, invocation, [&](BuildProject& project) {
    project.SetEnabled(IndexOf(project, invocation.operands[1]), false);
  });
}

int EnableAction(Session& session, const Invocation& invocation) {
  return Change(session, invocation, [&](BuildProject& project) {
    project.SetEnabled(IndexOf(project, invocation.operands[1]), true);
  });
}

int ChangeVariables(Session& session, const Invocation& invocation) {
  const std::span assignments = std::span(invocation.operands).subspan(1);
  const std::vector<std::string> removed = invocation.Values("--remove");
  if (assignments.empty() && removed.empty()) {
    std::string text;
    for (const auto& [name, value] : BuildProject::Load(Session::ProjectFile(invocation)).Variables())
      text += name + "=" + value + "\n";
    session.Print(text);
    return 0;
  }
  return Change(session, invocation, [&](BuildProject& project) {
    std::vector<Variable> variables = project.Variables();
    for (const std::string& name : removed) RemoveVariable(variables, name, project.File());
    for (const std::string& assignment : assignments) SetVariable(variables, assignment);
    project.SetVariables(variables);
  });
}

}  // namespace qx::cli
