// The version block of a large script: finding, reading, writing, and the whole rewriting with its backup.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include "platform/files/FileRewrite.h"
#include "versioning/SourceText.h"
#include "versioning/VersionBlock.h"

namespace {

std::string Block() {
  qx::VersionValues values;
  values.numbers = {1, 2, 3, 4};
  values.locale = 0x409;
  values.codePage = 1252;
  return qx::WriteVersionBlock(values, {{"CompanyName", "ACME"}, {"FileVersion", "1.2.3.4"}});
}

// A script of about `size` bytes with the block in its middle.
std::string Script(std::size_t size, const char* lineEnd) {
  std::string text;
  const std::string line =
      std::string(
          "    CONTROL \"Version &visible\",IDC_CHECK1,\"Button\",BS_AUTOCHECKBOX | WS_VISIBLE,7,52,200,10") +
      lineEnd;
  while (text.size() < size / 2) text += line;
  text += Block();
  while (text.size() < size) text += line;
  return text;
}

void Find(benchmark::State& state) {
  const std::string script = Script(static_cast<std::size_t>(state.range(0)), "\r\n");
  for (auto _ : state) benchmark::DoNotOptimize(qx::FindVersionBlock(script, "App.rc"));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * script.size()));
}
BENCHMARK(Find)->Arg(4 << 10)->Arg(16 << 20);

void Read(benchmark::State& state) {
  const std::string script = Script(4 << 10, "\r\n");
  for (auto _ : state) benchmark::DoNotOptimize(qx::ReadVersionBlock(script, "App.rc"));
}
BENCHMARK(Read);

void Write(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Block());
}
BENCHMARK(Write);

void NormalText(benchmark::State& state, const char* lineEnd) {
  const std::string script = Script(16 << 20, lineEnd);
  for (auto _ : state) {
    qx::SourceText source(script, "App.rc", qx::PlainAscii::IsSystemCodePage);
    benchmark::DoNotOptimize(source.NormalText());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * script.size()));
}
BENCHMARK_CAPTURE(NormalText, CrLf, "\r\n");
BENCHMARK_CAPTURE(NormalText, Lf, "\n");

void Rewrite(benchmark::State& state) {
  const auto path = std::filesystem::temp_directory_path() / "VersionBlock_bench.rc";
  const std::string script = Script(16 << 20, "\r\n"), block = Block();
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(path.string() + ".orig");
    std::ofstream(path, std::ios::binary) << script;
    state.ResumeTiming();
    qx::FileRewrite rewrite(path.string());
    qx::SourceText source(rewrite.Bytes(), path.string(), qx::PlainAscii::IsSystemCodePage);
    const std::string_view text = source.NormalText();
    const auto place = qx::FindVersionBlock(text, "App.rc");
    const std::string_view pieces[] = {text.substr(0, place.begin), "// new\r\n", block,
                                       text.substr(place.end)};
    const std::string_view old[] = {text};
    rewrite.Commit(".orig", qx::BackupRule::FirstTime, old, pieces);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(path.string() + ".orig");
}
BENCHMARK(Rewrite)->Unit(benchmark::kMillisecond);

}  // namespace
