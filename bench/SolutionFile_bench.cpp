// Reading a solution's text into the model, without the disk: what remains is the reader's own work.
#include <benchmark/benchmark.h>

#include "solution/MemoryFiles.h"

namespace {

std::string Guid(int i) {
  char text[64];
  std::snprintf(text, sizeof text, "{%08X-1111-2222-3333-444444444444}", static_cast<unsigned>(i));
  return text;
}

// Projects, configurations and rows as Visual Studio 2005 writes them.
std::string Solution(int projects) {
  std::string text =
      "\r\nMicrosoft Visual Studio Solution File, Format Version 9.00\r\n# Visual Studio 2005\r\n";
  std::string rows;
  for (int i = 0; i < projects; ++i) {
    text += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"Name\", \"A.csproj\", \"" + Guid(i) +
            "\"\r\nEndProject\r\n";
    for (const char* row :
         {".Debug|Any CPU.ActiveCfg", ".Debug|Any CPU.Build.0", ".Release|Any CPU.ActiveCfg"}) {
      rows += "\t\t" + Guid(i) + row + " = Debug|Any CPU\r\n";
    }
  }
  return text +
         "Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n\t\tDebug|Any CPU = "
         "Debug|Any " +
         "CPU\r\n\tEndGlobalSection\r\n\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n" +
         rows + "\tEndGlobalSection\r\nEndGlobal\r\n";
}

void ReadSolution(benchmark::State& state) {
  qx::MemoryFiles files;
  files.Put("A.csproj", "");
  const std::string text = Solution(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(qx::ReadSolution(qx::MemoryFiles::Solution(), text, files));
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(ReadSolution)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

}  // namespace
