// The table of what every control of every page looks like, states.jsonl, and the comparison with it. One
// line a control in the order of the page; a key that is missing has its default (no caption, no hint, no tab
// stop, enabled). "read" holds what differs once a new action, or new options, were read, "loaded" what
// differs then when it was saved and loaded before.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "plugin/Qxlanguages.h"

namespace qx {

using Json = nlohmann::ordered_json;

// AfterLoading: read by the pages after the host has saved and loaded it, whose setters changed something.
enum class Moment { Initial, AfterReading, AfterLoading };

inline Json ExpectedStates(const std::string& page, Moment moment) {
  std::ifstream file(std::string(QX_SOURCE_DIR) + "/tests/pages/states.jsonl");
  Json expected = Json::array();
  for (std::string line; std::getline(file, line);) {
    Json row = Json::parse(line);
    if (row["page"] != page) continue;
    Json state{{"caption", ""}, {"hint", ""}, {"tab", -1}, {"enabled", true}};
    for (const char* key : {"read", "loaded"}) {
      const Json difference = row.value(key, Json::object());
      row.erase(key);
      if (moment == Moment::AfterLoading || (moment == Moment::AfterReading && key == std::string("read")))
        row.update(difference);
    }
    row.erase("page");
    state.update(row);
    if (state.contains("text") && !state.contains("items") && !state.contains("value") &&
        !state.contains("masked"))
      state["masked"] = false;
    if (state.contains("items") && state["items"] == "languages") {
      state["items"] = Json::array();
      for (int i = 0; i < QXLanguages().GetCount(); ++i) state["items"].push_back(QXLanguages().GetName(i));
    }
    expected.push_back(std::move(state));
  }
  return expected;
}

// Compares what the table says; every control of the page must be in the table, in that order, and no state
// may hold more than the table allows beside what the driver alone tells ("labels" and its like).
inline void ExpectStates(const Json& states, const std::string& page, Moment moment) {
  const Json expected = ExpectedStates(page, moment);
  ASSERT_FALSE(expected.empty()) << page;
  ASSERT_EQ(states.size(), expected.size()) << page;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const std::string name = expected[i]["name"];
    for (const auto& [key, value] : expected[i].items())
      EXPECT_EQ(states[i].value(key, Json()), value) << page << "." << name << " " << key;
    for (const char* key : {"parent", "captionLeft", "rightAligned", "buttons"})
      EXPECT_EQ(states[i].contains(key), expected[i].contains(key)) << page << "." << name << " " << key;
    if (expected[i].contains("checkedItems")) {
      EXPECT_EQ(states[i]["multiSelect"], true) << page << "." << name;
    }
  }
}

}  // namespace qx
