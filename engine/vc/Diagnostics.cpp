#include "engine/vc/Diagnostics.h"

#include <array>
#include <optional>
#include <utility>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

struct Code {
  std::string_view part, code;
};
constexpr std::array kErrors = {
    Code{"No such file or directory", "C1083"},
    Code{"was not declared in this scope", "C2065"},
    Code{"undeclared (first use", "C2065"},
    Code{"has not been declared", "C2065"},
    Code{"has no member named", "C2039"},
    Code{"is not a member of", "C2039"},
    Code{"does not name a type", "C2146"},
    Code{"unknown type name", "C2061"},
    Code{"expected", "C2143"},
    Code{"conflicting types", "C2371"},
    Code{"conflicting declaration", "C2371"},
    Code{"redefinition of", "C2084"},
    Code{"redeclared as different", "C2373"},
    Code{"invalid conversion", "C2440"},
    Code{"cannot convert", "C2440"},
    Code{"too few arguments", "C2660"},
    Code{"too many arguments", "C2660"},
    Code{"no matching function", "C2665"},
    Code{"no match for", "C2678"},
    Code{"incomplete type", "C2027"},
    Code{"is private within", "C2248"},
    Code{"is protected within", "C2248"},
    Code{"lvalue required", "C2106"},
    Code{"#error", "C1189"},
    Code{"impossible constraint in 'asm'", "C2400"},
    Code{"in 'asm'", "C2400"},
};
constexpr std::array kWarnings = {
    Code{"[-Wunused-variable]", "C4101"},
    Code{"[-Wimplicit-function-declaration]", "C4013"},
    Code{"[-Wreturn-type]", "C4715"},
    Code{"[-Wuninitialized]", "C4700"},
    Code{"[-Wmaybe-uninitialized]", "C4701"},
    Code{"[-Wsign-compare]", "C4018"},
    Code{"[-Woverflow]", "C4309"},
    Code{"[-Wint-to-pointer-cast]", "C4312"},
    Code{"[-Wpointer-to-int-cast]", "C4311"},
    Code{"[-Wincompatible-pointer-types]", "C4133"},
    Code{"[-Wint-conversion]", "C4047"},
    Code{"[-Wunknown-pragmas]", "C4068"},
    Code{"[-Wdeprecated-declarations]", "C4996"},
    Code{"redefined", "C4005"},
};

template <class Table>
std::string_view Lookup(const Table& table, std::string_view text, std::string_view otherwise) {
  for (const Code& each : table) {
    if (text.find(each.part) != std::string_view::npos) return each.code;
  }
  return otherwise;
}

// "path:12:5: rest" or "path:12: rest". A path may hold colons itself: the numbers are looked for.
struct Place {
  std::string text;  // "path(12,5)"
  std::string_view rest;
};
std::optional<Place> PlaceIn(std::string_view line) {
  const auto number = [&](std::size_t at) {
    std::size_t end = at;
    while (end < line.size() && line[end] >= '0' && line[end] <= '9') ++end;
    return end > at && end < line.size() && line[end] == ':' ? end : std::string_view::npos;
  };
  for (std::size_t colon = line.find(':'); colon != std::string_view::npos;
       colon = line.find(':', colon + 1)) {
    const std::size_t row = number(colon + 1);
    if (colon == 0 || row == std::string_view::npos) continue;
    Place place{
        std::string(line.substr(0, colon)) + "(" + std::string(line.substr(colon + 1, row - colon - 1)), {}};
    std::size_t last = row;
    if (const std::size_t column = number(row + 1); column != std::string_view::npos) {
      place.text += "," + std::string(line.substr(row + 1, column - row - 1));
      last = column;
    }
    place.text += ")";
    place.rest = TrimView(line.substr(last + 1));
    return place;
  }
  return std::nullopt;
}

bool Take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text = TrimView(text.substr(prefix.size()));
  return true;
}

// What stands between ` or ' and '.
std::string_view BetweenQuotes(std::string_view text) {
  const std::size_t begin = text.find_first_of("`'");
  const std::size_t end = begin == std::string_view::npos ? begin : text.find('\'', begin + 1);
  return end == std::string_view::npos ? text : text.substr(begin + 1, end - begin - 1);
}

// "/usr/bin/i686-w64-mingw32-ld: rest", "i686-w64-mingw32-windres: rest": the tool's name goes.
bool TakeTool(std::string_view& line, std::string_view tool) {
  const std::size_t at = line.find(": ");
  if (at == std::string_view::npos) return false;
  const std::string name = FilePart(line.substr(0, at));
  if (!name.ends_with(tool) && !name.ends_with(std::string(tool) + ".bfd")) return false;
  line = TrimView(line.substr(at + 1));
  return true;
}

}  // namespace

std::string_view CompilerErrorCode(std::string_view text) { return Lookup(kErrors, text, "C2000"); }
std::string_view CompilerWarningCode(std::string_view text) { return Lookup(kWarnings, text, "C4000"); }

Diagnostics::Diagnostics(std::string status, Printer print)
    : status_(std::move(status)), print_(std::move(print)) {}

void Diagnostics::Print(const std::string& place, std::string_view category, std::string_view code,
                        std::string_view text) {
  if (category != "warning" && firstError_.empty()) firstError_ = text;
  print_(place + " : " + std::string(category) + " " + std::string(code) + ": " + std::string(text));
}

void Diagnostics::Line(std::string_view line) {
  if (std::exchange(skipNext_, false)) return;  // the command of an edge that failed
  if (Ninja(line) || Linker(line) || Compiler(line)) return;
  print_(line);
}

bool Diagnostics::Ninja(std::string_view line) {
  if (line.starts_with(status_)) {
    step_ = line.substr(status_.size());
    unresolved_ = 0;
    print_(step_);
    return true;
  }
  if (line.starts_with("FAILED: ")) return skipNext_ = true;
  if (!Take(line, "ninja: ")) return false;
  const bool isError = Take(line, "error:") || Take(line, "fatal:");
  if (isError) Print("NMAKE", "fatal error", "U1073", line);
  return true;
}

bool Diagnostics::Compiler(std::string_view line) {
  if (line.starts_with("compilation terminated.")) return true;
  std::string name = "cl";
  std::string_view rest = line;
  bool scripted = TakeTool(rest, "windres");
  std::optional<Place> place = PlaceIn(rest);
  if (place) {
    name = place->text;
    rest = place->rest;
  } else if (!scripted && !TakeTool(rest, "cc1") && !TakeTool(rest, "cc1plus") && !TakeTool(rest, "gcc") &&
             !TakeTool(rest, "g++") && !TakeTool(rest, "gcc-posix") && !TakeTool(rest, "g++-posix")) {
    return false;
  }
  if (scripted && Take(rest, "warning:")) {
    Print(place ? name : step_, "warning", "RC4000", rest);
    return true;
  }
  if (scripted) {
    Take(rest, "error:");
    Print(place ? name : step_, "error", rest.find("open") != std::string_view::npos ? "RC2135" : "RC2104",
          rest);
    return true;
  }
  const bool fatal = Take(rest, "fatal error:");
  if (fatal || Take(rest, "error:")) {
    const std::string_view code = CompilerErrorCode(rest);
    if (code == "C1083") missingHeaders_.emplace(rest.substr(0, rest.find(':')));
    Print(name, fatal ? "fatal error" : "error", code, rest);
    return true;
  }
  if (Take(rest, "warning:")) {
    Print(name, "warning", CompilerWarningCode(rest), rest);
    return true;
  }
  if (Take(rest, "note:")) {
    print_("        " + name + " : " + std::string(rest));
    return true;
  }
  return false;
}

bool Diagnostics::Linker(std::string_view line) {
  std::string_view rest = line;
  if (Take(rest, "collect2: error:")) {
    if (unresolved_ > 0) {
      Print("LINK", "fatal error", "LNK1120", std::to_string(unresolved_) + " unresolved externals");
    } else if (firstError_.empty()) {
      Print("LINK", "fatal error", "LNK1181", rest);
    }
    return true;
  }
  const bool named = TakeTool(rest, "ld");
  if (!named && rest.find("undefined reference to") == std::string_view::npos &&
      rest.find("multiple definition of") == std::string_view::npos) {
    return false;
  }
  std::string object = FilePart(rest.substr(0, rest.find(':')));
  if (rest.find("undefined reference to") != std::string_view::npos) {
    const std::string symbol(BetweenQuotes(rest.substr(rest.find("undefined reference to"))));
    if (!reported_.insert(object + '\n' + symbol).second) return true;
    ++unresolved_;
    Print(object, "error", "LNK2019", "unresolved external symbol " + symbol);
  } else if (rest.find("multiple definition of") != std::string_view::npos) {
    Print(object, "error", "LNK2005",
          std::string(BetweenQuotes(rest.substr(rest.find("multiple definition of")))) + " already defined");
  } else if (Take(rest, "cannot find ")) {
    Print("LINK", "fatal error", "LNK1104", "cannot open file '" + std::string(rest) + "'");
  } else if (Take(rest, "warning:")) {
    Print("LINK", "warning", "LNK4000", rest);
  } else if (rest.find(": in function `") == std::string_view::npos) {
    print_("LINK : " + std::string(rest));
  }
  return true;
}

}  // namespace qx
