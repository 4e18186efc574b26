// What it costs to read errors and warnings out of a build's output: a million lines of a child are forwarded into
// the log as an action does it, with the model of diagnostics and without. CPU times are those of this process with its
// reader threads; the child's own are not in them. Every fifth line is a warning.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "host/diagnostics/DiagnosticLog.h"
#include "host/log/LogStream.h"
#include "host/process/ChildProcess.h"
#include "platform/System.h"

namespace qx {
namespace {

constexpr int kLines = 1'000'000;
constexpr int kWarnings = kLines / 5;  // as the child writes them

void Forward(benchmark::State& state, bool reads) {
  for ([[maybe_unused]] auto round : state) {
    ActionLog log;
    DiagnosticLog* const diagnostics =
        reads ? &static_cast<DiagnosticLog&>(log.AddSink(std::make_unique<DiagnosticLog>())) : nullptr;
    log.AddSink(std::make_unique<StreamSink>(LogFile::Create(kIsWindows ? "NUL" : "/dev/null"),
                                             LogStyle::Text, ColourChoice::Never));
    ChildProcess child;
    child.executable = QX_TEST_CHILD;
    child.parameters = "lines:" + std::to_string(kLines);
    std::size_t lines = 0;
    child.onOutput = [&](std::string_view line) {
      const InterfacePtr<IQXActionLogMessage> message = CreateLogMessage();
      message->AppendDetail(line);
      log.AddStatus(1, *message);
      ++lines;
    };
    child.Run();
    if (lines != kLines) state.SkipWithError("lines are missing");
    if (reads && diagnostics->Counts().warnings != kWarnings) state.SkipWithError("warnings are missing");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

BENCHMARK_CAPTURE(Forward, WithoutDiagnostics, false)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Forward, WithDiagnostics, true)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qx
