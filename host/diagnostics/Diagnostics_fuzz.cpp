// Any bytes as a compiler's output: what is found lies within the line, and reading the same twice finds the same.
#include <cstdlib>

#include "host/diagnostics/DiagnosticLog.h"
#include "platform/Lines.h"

namespace {

bool LiesWithin(std::string_view part, std::string_view whole) {
  return part.empty() ||
         (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void CheckLine(std::string_view line) {
  const auto found = qx::ReadDiagnostic(line);
  if (!found) return;
  for (const std::string_view part : {found->code, found->file, found->message, found->project}) {
    if (!LiesWithin(part, line)) std::abort();
  }
  if (found->line < 0 || found->column < 0) std::abort();
}

std::size_t Count(std::string_view text, qx::DiagnosticLog& log) {
  qx::LogRecord record;
  record.action = 1;
  record.text = text;
  log.Take(record);
  return log.InLastRecord().size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  qx::ForEachLine(text, CheckLine);
  qx::DiagnosticLog whole;
  const std::size_t found = Count(text, whole);
  qx::DiagnosticLog lines;
  std::size_t one = 0;
  // At LF alone, as a compiler's output is parted: a CR within stays in its line.
  qx::LogRecord record;
  record.kind = qx::LogKind::Message;
  record.text = text;
  qx::ForEachOutputLine(record, [&](std::string_view line) { one += Count(line, lines); });
  if (found != one || whole.Kept().size() != found) std::abort();
  return 0;
}
