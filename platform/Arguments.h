// The words of a program's command line.
#pragma once

#include <string>
#include <vector>

namespace qx {

// What main was given, without the program's name: UTF-8 on Windows, bytes as they stand elsewhere.
std::vector<std::string> CommandLineWords(int count, char** words);

}  // namespace qx
