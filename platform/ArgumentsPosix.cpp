#include "platform/Arguments.h"

namespace qx {

std::vector<std::string> CommandLineWords(int count, char** words) {
  return count > 0 ? std::vector<std::string>(words + 1, words + count) : std::vector<std::string>();
}

}  // namespace qx
