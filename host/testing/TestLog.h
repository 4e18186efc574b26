// A status message for tests that keeps what it is told.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxaction.h"

namespace qx {

class TestLog final : public Implements<IQXActionLogMessage> {
 public:
  void AppendDetail(std::string_view text) override { lines.emplace_back(text); }
  void SetHeading(std::string_view) override {}
  std::vector<std::string> lines;
};

}  // namespace qx
