// What it costs to forward a child's output: the splitter alone, and whole runs whose lines are put one
// behind the other, as a log does. CPU times are those of this process with its reader threads; the child's
// own are not in them.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "host/process/ChildProcess.h"

namespace {

constexpr int kLines = 200000;

void BM_SplitLines(benchmark::State& state) {
  std::string text;
  while (text.size() < qx::LineSplitter::kReadSize) text += "..\\Module\\unit123.cpp(12) : warning\n";
  text.resize(qx::LineSplitter::kReadSize);
  std::size_t lines = 0;
  const qx::LineSink sink = [&](std::string_view line) {
    benchmark::DoNotOptimize(line.data());
    ++lines;
  };
  qx::LineSplitter splitter;
  for (auto _ : state) {
    std::memcpy(splitter.Space().data(), text.data(), text.size());
    splitter.Commit(text.size(), sink);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(lines));
}
BENCHMARK(BM_SplitLines);

void Forward(benchmark::State& state, const std::string& order, qx::Delivery delivery) {
  std::string log;
  std::size_t lines = 0;
  qx::ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.parameters = order + ":" + std::to_string(kLines);
  child.delivery = delivery;
  child.onOutput = [&](std::string_view line) {
    log.append(line) += '\n';
    if (log.size() > qx::LineSplitter::kReadSize) log.clear();
    ++lines;
  };
  for (auto _ : state) child.Run();
  if (lines != static_cast<std::size_t>(state.iterations()) * kLines)
    state.SkipWithError("lines are missing");
  state.SetItemsProcessed(static_cast<std::int64_t>(lines));
}

void BM_ForwardBlocks(benchmark::State& state) { Forward(state, "lines", qx::Delivery::ReaderThreads); }
void BM_ForwardSingleLines(benchmark::State& state) {
  Forward(state, "single-lines", qx::Delivery::ReaderThreads);
}
void BM_ForwardBlocksToCaller(benchmark::State& state) {
  Forward(state, "lines", qx::Delivery::CallingThread);
}
BENCHMARK(BM_ForwardBlocks)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ForwardSingleLines)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ForwardBlocksToCaller)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void BM_StartAndEnd(benchmark::State& state) {
  qx::ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.parameters = "exit:0";
  for (auto _ : state) child.Run();
}
BENCHMARK(BM_StartAndEnd)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
