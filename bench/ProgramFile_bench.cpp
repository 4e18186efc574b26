// Reading programs back, beside the floor: a program that knows where everything stands and only opens each
// file, reads its first 4 KB and its resource section. QX_PROGRAMS names folders (joined by ":") in which
// programs are looked for; by default those of mono and Wine. The first thousand are read.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <vector>

#include "plugin/Qxtypes.h"
#include "programs/ProgramFile.h"

namespace {

struct Program {
  std::string path;
  std::uint64_t resources = 0;  // where the section with them stands in the file
  std::size_t size = 0;
};

std::uint32_t Number(std::string_view bytes, std::size_t at) { return qx::Fields(bytes).U32(at); }

// The section that holds the resources, by its headers.
Program WithResources(const std::string& path) {
  qx::FileBytes file(path);
  const std::string_view bytes = file.UpTo(0, 4096);
  const std::size_t header = Number(bytes, 60);
  const std::size_t optional = header + 24, sections = optional + qx::Fields(bytes).U16(header + 20);
  const bool isWide = qx::Fields(bytes).U16(optional) == 0x20B;
  const std::uint32_t address = Number(bytes, optional + (isWide ? 112 : 96) + 2 * 8);
  for (std::size_t at = sections; address != 0 && at + 40 <= bytes.size(); at += 40) {
    const std::uint32_t begin = Number(bytes, at + 12), size = Number(bytes, at + 16);
    if (address >= begin && address - begin < size) return {path, Number(bytes, at + 20), size};
  }
  return {path, 0, 0};
}

// Of those alike (mono's reference assemblies) no more than others.
const std::vector<Program>& Programs() {
  static const std::vector<Program> programs = [] {
    const char* given = std::getenv("QX_PROGRAMS");
    std::istringstream folders(given != nullptr ? given : "/usr/lib/x86_64-linux-gnu/wine:/usr/lib/mono");
    std::vector<std::string> paths;
    for (std::string folder; std::getline(folders, folder, ':');) {
      if (!std::filesystem::is_directory(folder)) continue;
      for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string ending = entry.path().extension();
        if (entry.is_regular_file() && (ending == ".dll" || ending == ".exe")) paths.push_back(entry.path());
      }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<Program> found;
    const std::size_t step = std::max<std::size_t>(paths.size() / 1000, 1);
    for (std::size_t i = 0; i < paths.size() && found.size() < 1000; i += step) {
      try {
        qx::ReadProgram(paths[i]);
        found.push_back(WithResources(paths[i]));
      } catch (const qx::Exception&) {
        // No program.
      }
    }
    return found;
  }();
  return programs;
}

void ReadPrograms(benchmark::State& state) {
  for (auto _ : state) {
    for (const Program& program : Programs()) benchmark::DoNotOptimize(qx::ReadProgram(program.path));
  }
  state.counters["programs"] = static_cast<double>(Programs().size());
}
BENCHMARK(ReadPrograms)->Unit(benchmark::kMillisecond);

void Floor(benchmark::State& state) {
  std::string buffer;
  for (auto _ : state) {
    for (const Program& program : Programs()) {
      const int file = open(program.path.c_str(), O_RDONLY | O_CLOEXEC);
      buffer.resize(std::max<std::size_t>(buffer.size(), std::max<std::size_t>(program.size, 4096)));
      benchmark::DoNotOptimize(pread(file, buffer.data(), 4096, 0));
      if (program.size > 0) {
        benchmark::DoNotOptimize(
            pread(file, buffer.data(), program.size, static_cast<off_t>(program.resources)));
      }
      close(file);
    }
  }
  state.counters["programs"] = static_cast<double>(Programs().size());
}
BENCHMARK(Floor)->Unit(benchmark::kMillisecond);

}  // namespace
