// What the engine prints: lines in the forms of the old products, counted as errors and warnings on their
// way, for each project's own count depends on what its tools printed.
#pragma once

#include <string>
#include <string_view>

namespace qx {

enum class LineKind { Plain, Error, Warning };

// Whether a line reports an error or a warning: "a.cpp(12) : error C2065: text", "a.cs(3,7): warning CS0168:
// text", "LINK : fatal error LNK1104: text", "a.c:3:5: error: text", "tool: error: text".
LineKind KindOfLine(std::string_view line);

// One thread.
class Console {
 public:
  struct Counts {
    int errors = 0, warnings = 0;
  };

  virtual ~Console() = default;
  // Prints one line (without its end), as it is, and counts it when it is an error or a warning.
  void Line(std::string_view text);
  // "FILE(LINE) : error CODE: TEXT", the form of Visual C++; "(LINE)" is left out for line 0.
  void Error(std::string_view file, int line, std::string_view code, std::string_view text);
  void Warning(std::string_view file, int line, std::string_view code, std::string_view text);
  // Of every line so far.
  Counts Counted() const { return counts_; }

 private:
  virtual void Write(std::string_view line) = 0;
  Counts counts_;
};

// Keeps what it is given: for tests.
class ConsoleText final : public Console {
 public:
  const std::string& Text() const { return text_; }

 private:
  void Write(std::string_view line) override { (text_ += line) += '\n'; }
  std::string text_;
};

}  // namespace qx
