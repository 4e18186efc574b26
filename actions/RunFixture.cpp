#include "actions/RunFixture.h"

#include <atomic>

namespace qx {
namespace {

namespace fs = std::filesystem;

fs::path NewFolder() {
  static std::atomic<int> count{0};
  const auto* test = testing::UnitTest::GetInstance();
  const std::string name = "actions-" + std::to_string(test->random_seed()) + "-" +
                           test->current_test_info()->name() + std::to_string(++count);
  const fs::path folder = fs::canonical(fs::temp_directory_path()) / name;
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

constexpr const char* kSolution =
    "\r\n"
    "Microsoft Visual Studio Solution File, Format Version 9.00\r\n"
    "# Visual Studio 2005\r\n"
    "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"Lib\", \"Lib\\Lib.csproj\", "
    "\"{11111111-0000-0000-0000-000000000001}\"\r\n"
    "EndProject\r\n"
    "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"App\", \"App\\App.csproj\", "
    "\"{11111111-0000-0000-0000-000000000002}\"\r\n"
    "EndProject\r\n"
    "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"Tool\", \"Tool\\Tool.csproj\", "
    "\"{11111111-0000-0000-0000-000000000003}\"\r\n"
    "EndProject\r\n"
    "Global\r\n"
    "EndGlobal\r\n";

}  // namespace

RunFixture::RunFixture() : root_(NewFolder()) {
  Write("src/App.sln", kSolution);
  for (const char* project : {"Lib/Lib.csproj", "App/App.csproj", "Tool/Tool.csproj"})
    Write(std::string("src/") + project, "<Project/>\r\n");
  fs::create_directories(root_ / "vs");
  for (const char* name : {"devenv.com", "MSBuild.exe"}) fs::copy_file(QX_RECORDER, root_ / "vs" / name);

  RegisterOptions();
  for (const auto set : {&IQXVSDotNetOptions::SetDevEnvLocation, &IQXVSDotNetOptions::SetDevEnv2003Location,
                         &IQXVSDotNetOptions::SetDevEnv2005Location})
    (VSDotNetOptions().get()->*set)(Path("vs"));
  action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
}

RunFixture::~RunFixture() {
  std::error_code ignored;  // a stopped child may still let go of its file
  fs::remove_all(root_, ignored);
}

std::string RunFixture::Path(const std::string& name) const {
  return (root_ / name).make_preferred().string();
}

void RunFixture::Write(const std::string& name, const std::string& text) const {
  fs::create_directories((root_ / name).parent_path());
  std::ofstream(root_ / name, std::ios::binary) << text;
}

std::string RunFixture::Read(const std::string& name) const {
  std::stringstream text;
  text << std::ifstream(root_ / name, std::ios::binary).rdbuf();
  return text.str();
}

Lines RunFixture::Calls() const {
  Lines calls;
  std::istringstream record(Read("vs/record"));
  for (std::string line; std::getline(record, line);) {
    if (line.starts_with("call "))
      calls.emplace_back();
    else
      calls.back() += (calls.back().empty() ? "" : " | ") + line;
  }
  return calls;
}

void RunFixture::UseMSBuild() {
  HostSettings settings;
  settings.frameworks["v2.0"] = Path("vs");
  settings_.emplace(std::move(settings));
  action->Settings().useMSBuild = true;
}

void RunFixture::Select(const Lines& ids) {
  action->Settings().buildType = TVSDotNetBuildType::btSelectedProjects;
  action->Settings().selectedProjects = TStringList(ids);
}

void RunFixture::ExpectRun(bool succeeds, const Lines& log) {
  const std::size_t before = host.Lines().size();
  EXPECT_EQ(action->Execute(), succeeds);
  Lines lines = host.Lines();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_EQ(lines, log);
}

Lines RunFixture::Running(const std::string& compiler, const std::string& parameters) const {
  return {"Running " + compiler + " with parameters : " + parameters, "------"};
}

}  // namespace qx
