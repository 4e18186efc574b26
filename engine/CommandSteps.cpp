#include "engine/CommandSteps.h"

#include <algorithm>
#include <cstdlib>

#include "engine/ChildCommand.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

Batch InAscii(std::string_view text) {
  Batch batch;
  std::map<std::string, std::string, std::less<>> names;  // by value
  for (auto at = text.begin(); at != text.end();) {
    if (IsAscii(*at)) {
      batch.text += *at++;
      continue;
    }
    const auto end = std::find_if(at, text.end(), IsAscii);
    std::string& name = names[std::string(at, end)];
    if (name.empty()) name = "QX_TEXT" + std::to_string(names.size());
    batch.variables[name] = std::string(at, end);
    batch.text += "%" + name + "%";
    at = end;
  }
  return batch;
}

}  // namespace

std::vector<std::string> CommandLines(std::string_view commands) {
  std::vector<std::string> lines;
  ForEachLine(commands, [&](std::string_view line) {
    if (!TrimView(line).empty()) lines.emplace_back(TrimView(line));
  });
  return lines;
}

Batch BatchFor(std::string_view commands, const std::string& folder) {
  const std::vector<std::string> lines = CommandLines(commands);
  if (lines.empty()) return {};
  std::string text = "@echo off\r\ncd /d \"" + WinePath(folder) + "\"\r\n";
  for (const std::string& line : lines) text += line + "\r\nif errorlevel 1 goto failed\r\n";
  return InAscii(text + "exit 0\r\n:failed\r\nexit 1\r\n");
}

std::string WinePath(const std::string& path) {
  std::string out = path;
  std::replace(out.begin(), out.end(), '/', '\\');
  return out.starts_with('\\') ? "Z:" + out : out;
}

std::string RunCommandStep(const CommandStep& step, Console& console) {
  const Batch batch = BatchFor(step.commands, step.folder);
  if (batch.text.empty()) return {};
  console.Line(step.title);
  for (const std::string& line : CommandLines(step.commands)) console.Line(line);
  if (WineProgram().empty()) return kNoWine;
  try {
    ReplaceFile(step.batchFile, batch.text);
  } catch (const Exception& error) {
    return error.Message();
  }
  ChildCommand command{
      {WineProgram(), "cmd", "/c", FilePart(step.batchFile)}, FolderPart(step.batchFile), batch.variables};
  command.environment["LC_ALL"] = kWineLocale;
  // By its bare name: "&" and the like in a folder's name mean something on this command line, even in
  // quotes. Of Wine's own messages only those of programs that cannot start belong to the build's; without
  // these two libraries a new prefix asks no questions.
  for (const auto& [name, value] :
       {std::pair{"WINEDEBUG", "-all,err+module"}, std::pair{"WINEDLLOVERRIDES", "mscoree,mshtml="}}) {
    if (std::getenv(name) == nullptr) command.environment[name] = value;
  }
  // Such a Wine lets the command end as if all were well.
  bool wanted32Bits = false;
  const ChildResult result = RunChild(command, [&](std::string_view line) {
    const bool saysSo = line.find("err:module:load_wow64_ntdll") != std::string_view::npos;
    wanted32Bits |= saysSo;
    if (!saysSo) console.Line(line);
  });
  if (wanted32Bits) return kNo32Bits;
  if (result.code == 0) return {};
  return result.reason.empty() ? "a command returned code " + std::to_string(result.code) : result.reason;
}

const std::string& WineProgram() {
  static const std::string program = FindProgram("wine");
  return program;
}

}  // namespace qx
