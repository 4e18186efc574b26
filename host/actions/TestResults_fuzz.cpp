// Any text as a results file, and as each value in one: a summary of one line, or a reason.
#include <cstdlib>

#include "host/actions/TestResults.h"

namespace {

void Check(std::string_view text) {
  try {
    const std::string summary = qx::SummaryOf(qx::ParseTestResults(text));
    if (!summary.starts_with("Test results: ")) std::abort();
    if (summary.find_first_of("\r\n") != std::string::npos) std::abort();
  } catch (const qx::Exception& e) {
    if (e.Message().empty()) std::abort();
  }
}

std::string AsValue(std::string_view text) {
  std::string value;
  for (const char c : text) {
    if (c == '"' || c == '<' || c == '&' || c == '\0') continue;
    value += c;
  }
  return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Check(text);
  const std::string first = AsValue(text.substr(0, size / 2));
  const std::string second = AsValue(text.substr(size / 2));
  Check("<TestRun><Times start=\"" + first + "\" finish=\"" + second + "\"/><Results><R outcome=\"" + first +
        "\" duration=\"" + second + "\"/><R outcome=\"" + second + "\"/></Results></TestRun>");
  Check("<TestRun><ResultSummary><Counters passed=\"" + first + "\" failed=\"" + second +
        "\"/></ResultSummary></TestRun>");
  Check("<Tests><UnitTestResult><outcome><value__>" + first + "</value__></outcome><duration>" + second +
        "</duration></UnitTestResult></Tests>");
  return 0;
}
