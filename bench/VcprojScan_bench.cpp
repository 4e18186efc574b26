// Finding the resource scripts of a C++ project file of a usual size, plain and in a legacy encoding.
#include <benchmark/benchmark.h>

#include "solution/VcprojScan.h"

namespace {

// `files` source files in one filter, the resource script last; about 150 bytes each.
std::string Project(const char* encoding, const char* letter, int files) {
  std::string text =
      std::string("<?xml version=\"1.0\" encoding=\"") + encoding +
      "\"?>\r\n<VisualStudioProject\r\n\tProjectType=\"Visual C++\"\r\n\tName=\"App\"\r\n\t>\r\n\t<Files>\r\n"
      "\t\t<Filter\r\n\t\t\tName=\"Source Files\"\r\n\t\t\t>\r\n";
  for (int i = 0; i < files; ++i) {
    text += "\t\t\t<File\r\n\t\t\t\tRelativePath=\".\\Source" + std::string(letter) + std::to_string(i) +
            ".cpp\"\r\n\t\t\t\t>\r\n\t\t\t\t<FileConfiguration\r\n\t\t\t\t\tName=\"Debug|"
            "Win32\"\r\n\t\t\t\t\t>\r\n"
            "\t\t\t\t</FileConfiguration>\r\n\t\t\t</File>\r\n";
  }
  return text +
         "\t\t\t<File RelativePath=\"App.rc\"/>\r\n\t\t</Filter>\r\n\t</Files>\r\n</VisualStudioProject>\r\n";
}

void Scan(benchmark::State& state, const char* encoding, const char* letter) {
  const std::string project = Project(encoding, letter, static_cast<int>(state.range(0)));
  qx::XmlDocument document;
  std::string buffer;
  for (auto _ : state) {
    buffer = project;
    benchmark::DoNotOptimize(qx::ListedResourceScripts(buffer, document));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(project.size()));
}
BENCHMARK_CAPTURE(Scan, ascii, "Windows-1252", "A")->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Scan, windows1252, "Windows-1252", "\xE4")
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Scan, shiftJis, "shift_jis", "\x83\x5C")
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
