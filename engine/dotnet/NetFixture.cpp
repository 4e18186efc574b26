#include "engine/dotnet/NetFixture.h"

#include <chrono>
#include <filesystem>

#include "engine/dotnet/NetBuild.h"

namespace qx {

namespace fs = std::filesystem;

void NetFixture::Take(const std::string& name) {
  fs::copy(fs::path(QX_SOURCE_DIR) / "engine/dotnet/testdata" / name, folder_.Path(),
           fs::copy_options::recursive);
}

void NetFixture::Change(const std::string& file, const std::string& from, const std::string& to) {
  std::string text = folder_.Read(file);
  std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << from << " is not in " << file;
  for (; at != std::string::npos; at = text.find(from, at + to.size())) text.replace(at, from.size(), to);
  folder_.Write(file, text);
}

void NetFixture::Touch(const std::string& file) {
  fs::last_write_time(folder_ / file, fs::file_time_type::clock::now() + std::chrono::seconds(2));
}

ProjectTask NetFixture::Task(const std::string& file, const std::string& configuration,
                             const std::string& platform) const {
  ProjectTask task;
  task.name = fs::path(file).stem().string();
  task.guid = guid_;
  task.file = folder_ / file;
  task.configuration = configuration;
  task.platform = platform;
  return task;
}

NetRun NetFixture::Build(const std::string& file, const std::string& configuration,
                         const std::string& platform, const std::vector<const BuiltProject*>& needs) {
  ProjectTask task = Task(file, configuration, platform);
  task.needs = needs;
  return Build(task);
}

NetRun NetFixture::Build(const ProjectTask& task) {
  ConsoleText console;
  NetRun run;
  run.built = BuildDotNet(task, console);
  run.built.name = task.name;
  run.built.guid = task.guid;
  run.built.file = task.file;
  run.built.configuration = task.configuration;
  run.built.platform = task.platform;
  run.printed = console.Text();
  run.counts = console.Counted();
  return run;
}

std::string NetFixture::Output(const std::vector<std::string>& arguments) {
  std::string text;
  const ChildResult result = RunChild({arguments, folder_.Path(), {{"LC_ALL", "C.UTF-8"}}},
                                      [&](std::string_view line) { (text += line) += '\n'; });
  if (!result.reason.empty()) text += result.reason;
  if (result.code != 0) text += "exit code " + std::to_string(result.code) + "\n";
  return text;
}

std::string NetFixture::Run(const std::string& program) { return Output({"mono", program}); }

}  // namespace qx
