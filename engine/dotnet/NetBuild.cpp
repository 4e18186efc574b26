#include "engine/dotnet/NetBuild.h"

#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsOnServer(const std::string& file) { return file.find("://") != std::string::npos; }

}  // namespace

BuiltProject BuildDotNet(const ProjectTask& task, Console& console) {
  if (IsOnServer(task.file)) {
    return Failed("it is on a web server (" + task.file + "); only projects on disk can be built here",
                  "web");
  }
  if (!NetLanguageOf(task.file)) return Failed("it is no project of C#, Visual Basic or J#: " + task.file);
  try {
    const NetProject project =
        ReadNetProject(task.file, {task.configuration, task.platform, task.properties, task.solutionFile});
    if (project.language == NetLanguage::JSharp)
      return Failed("J# cannot be compiled here: there is no compiler for it", "jsharp");
    return project.form == NetForm::Attributes ? BuildWithMono(project, task, console)
                                               : BuildWithMsBuild(project, task, console);
  } catch (const Exception& error) {
    return Failed(error.Message());
  }
}

}  // namespace qx
