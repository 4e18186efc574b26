// Stamping one AssemblyInfo file of usual size, in memory and with its backup on disk.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include "platform/files/FileRewrite.h"
#include "versioning/AssemblyAttributes.h"

namespace {

std::string Source() {
  std::string text = "using System.Reflection;\r\n";
  for (int i = 0; i < 25; ++i)
    text += "// General information about an assembly is controlled through these lines\r\n";
  for (const char* name : {"Title", "Description", "Configuration", "Company", "Product", "Copyright",
                           "Trademark", "Culture", "Version", "DelaySign", "KeyFile", "KeyName"}) {
    text += std::string("[assembly: Assembly") + name + "(\"1.0.0.0\")]\r\n";
  }
  return text;
}

std::string Stamp(std::string_view text, const std::string& version) {
  return qx::StampAssemblyInfo(
      text, ".cs",
      [&](qx::AssemblyAttribute attribute) {
        const bool isVersion =
            attribute == qx::AssemblyAttribute::Version || attribute == qx::AssemblyAttribute::FileVersion;
        return isVersion ? std::optional(version) : std::nullopt;
      },
      [](const std::string& value, std::string_view) { return value; }, [](const std::string&) {});
}

void InMemory(benchmark::State& state) {
  const std::string text = Source();
  for (auto _ : state) benchmark::DoNotOptimize(Stamp(text, "7.6.5.4"));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(InMemory);

void OnDisk(benchmark::State& state) {
  const auto path = std::filesystem::temp_directory_path() / "AssemblyAttributes_bench.cs";
  std::ofstream(path, std::ios::binary) << Source();
  int run = 0;
  for (auto _ : state) {
    qx::FileRewrite rewrite(path.string());
    const std::string stamped = Stamp(rewrite.Bytes(), "1.0.0." + std::to_string(++run));
    const std::string_view old[] = {rewrite.Bytes()}, pieces[] = {stamped};
    rewrite.Commit(".bak", qx::BackupRule::EveryTime, old, pieces);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(path.string() + ".bak");
}
BENCHMARK(OnDisk)->Unit(benchmark::kMicrosecond);

}  // namespace
