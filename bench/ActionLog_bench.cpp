// What one line of compiler output costs in the log: a message made, filled, sent and written. 30 to 50
// nanoseconds keep a forwarded build as cheap as a pipe.
#include <benchmark/benchmark.h>

#include <string>

#include "host/actions/ActionHost.h"
#include "host/log/LogStream.h"
#include "platform/System.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

const std::string kLine = "..\\Module\\unit77.cpp(12) : warning C4244: possible loss of data";

std::string NullDevice() { return kIsWindows ? "NUL" : "/dev/null"; }

// As an action forwards a line.
void ForwardLine(benchmark::State& state, LogStyle style, std::string_view secret) {
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::Create(NullDevice()), style, ColourChoice::Never));
  log.AddSecret(secret);
  TQXAction action;
  MoveAction(action, {&log});
  for ([[maybe_unused]] auto round : state) {
    const InterfacePtr<IQXActionLogMessage> message = action.CreateStatusMessage();
    message->AppendDetail(kLine);
    action.SendStatusMessage(message);
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(ForwardLine, Text, LogStyle::Text, "");
BENCHMARK_CAPTURE(ForwardLine, Json, LogStyle::Json, "");
BENCHMARK_CAPTURE(ForwardLine, TextWithASecret, LogStyle::Text, "open sesame");

void SendLine(benchmark::State& state) {
  ActionLog log;
  log.AddSink(
      std::make_unique<StreamSink>(LogFile::Create(NullDevice()), LogStyle::Text, ColourChoice::Never));
  for ([[maybe_unused]] auto round : state) log.AddMessage(1, kLine);
}
BENCHMARK(SendLine);

}  // namespace
}  // namespace qx
