// A machine with chosen products installed, for the tests of registry detection: the registry itself in a
// Wine prefix, an export that stands in for it elsewhere.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/Files.h"

namespace qx {

class DetectionFixture : public testing::Test {
 protected:
  DetectionFixture();
  ~DetectionFixture() override;
  void SetUp() override;

  // From now on these are installed and nothing else: version of the key ("7.1"), text of "InstallDir".
  void Install(const std::vector<std::pair<std::string, std::string>>& products);

 private:
  std::string exportFile_;
  std::unique_ptr<FileLock> lock_;  // the tests of a prefix share its registry
};

}  // namespace qx
