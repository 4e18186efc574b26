// An action attached to a host in miniature, for the tests of its properties.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "actions/Qxvsdotnetaction.h"
#include "host/testing/TestHost.h"

namespace qx {

using Names = std::vector<std::string>;

class BuildAction : public testing::Test {
 protected:
  const PublishedProperty& Row(std::string_view name) const {
    for (const PublishedProperty& row : TQXVSDotNetAction::Class().properties)
      if (row.name == name) return row;
    throw Exception("no property " + std::string(name));
  }
  void Set(std::string_view name, PropertyValue value) { Row(name).set(*action, value); }
  template <class Value>
  Value Get(std::string_view name) {
    return std::get<Value>(Row(name).get(*action));
  }
  std::string Text(std::string_view name) { return Get<std::string>(name); }
  const Names& Dynamic() const { return action->Host().dynamicProperties; }

  TestHost host;
  std::unique_ptr<TQXVSDotNetAction> action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
};

}  // namespace qx
