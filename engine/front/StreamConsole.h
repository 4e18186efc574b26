// The console of the programs: standard output and, when one is named, a file that gets every line as well.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "engine/Console.h"

namespace qx {

class StreamConsole final : public Console {
 public:
  // Raises Exception when the file cannot be made. No name: standard output alone.
  explicit StreamConsole(const std::string& logFile);

 private:
  void Write(std::string_view line) override;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> log_;
};

}  // namespace qx
