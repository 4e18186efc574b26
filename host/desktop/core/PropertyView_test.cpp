#include "host/desktop/core/PropertyView.h"

#include <gtest/gtest.h>

#include "host/testing/TestHost.h"

namespace qx::desktop {
namespace {

// Says of its four properties what the test wants.
struct Says {
  std::vector<std::string> hidden{}, alias{}, help{}, readOnly{};
};
Says says;

class Spoken final : public TQXAction {
 public:
  const std::string& Get() const { return text_; }
  void Set(const std::string& text) { text_ = text; }
  void GetHiddenProperties(TStringList& names) const override { AddAll(names, says.hidden); }
  void GetPropertyAlias(TStringList& lines) const override { AddAll(lines, says.alias); }
  void GetPropertyHelp(TStringList& lines) const override { AddAll(lines, says.help); }
  void GetReadOnlyProperties(TStringList& names) const override { AddAll(names, says.readOnly); }

 private:
  static void AddAll(TStringList& list, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) list.Add(line);
  }
  std::string text_;
};

constexpr PublishedProperty kProperties[] = {
    Property<&Spoken::Get, &Spoken::Set>("First"), Property<&Spoken::Get, &Spoken::Set>("SecondOne"),
    Property<&Spoken::Get, &Spoken::Set>("Third"), Property<&Spoken::Get, &Spoken::Set>("Fourth")};

const TQXActionClass& SpokenClass() {
  static const TQXActionClass actionClass{
      "Spoken", [] { return std::string("Spoken"); }, kProperties,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<Spoken>(); }};
  return actionClass;
}

// "Group: Caption=Property, ...; Group: ..."
std::string Shown(Says what, const Catalogue& catalogue = Catalogue()) {
  says = std::move(what);
  TestHost host;
  const std::unique_ptr<TQXAction> action = host.Make(SpokenClass());
  std::string text;
  for (const PropertyGroup& group : GroupsOf(*action, catalogue)) {
    text += (text.empty() ? "" : "; ") + group.caption + ":";
    for (const ShownProperty& shown : group.properties)
      text += " " + shown.caption + "=" + std::string(shown.property->name) + (shown.readOnly ? "!" : "") +
              (shown.opensPages ? "..." : "") + (shown.help.empty() ? "" : " (" + shown.help + ")");
  }
  return text;
}

TEST(PropertyView, ShowsEveryPropertyOfAnActionThatSaysNothing) {
  EXPECT_EQ(Shown({}), "Properties: First=First SecondOne=SecondOne Third=Third Fourth=Fourth");
}

TEST(PropertyView, LeavesOutWhatTheActionHidesAndNamesThatAreNone) {
  EXPECT_EQ(Shown({.hidden = {"third", "UpdateNothing", "Fourth"}}),
            "Properties: First=First SecondOne=SecondOne");
}

TEST(PropertyView, GroupsAndNamesByTheAliasesInTheirOrder) {
  EXPECT_EQ(
      Shown({.alias = {"[Places]", "Third=The third", "SECONDONE=Number two", "[Rest]", "First=The first"}}),
      "Places: The third=Third Number two=SecondOne; Rest: The first=First; Other: Fourth=Fourth");
}

TEST(PropertyView, PassesOverAliasesOfHiddenAndUnknownProperties) {
  EXPECT_EQ(Shown({.hidden = {"First"},
                   .alias = {"[Empty]", "First=x", "Nothing=y", "no alias", "[Some]", "Third=z"}}),
            "Some: z=Third; Other: SecondOne=SecondOne Fourth=Fourth");
}

TEST(PropertyView, PutsAliasesBeforeAnyHeadingIntoAGroupOfTheirOwn) {
  EXPECT_EQ(Shown({.hidden = {"SecondOne", "Third", "Fourth"}, .alias = {"First=One"}}),
            "Properties: One=First");
}

TEST(PropertyView, TellsHelpAndWhatCannotBeChanged) {
  EXPECT_EQ(Shown({.hidden = {"SecondOne", "Third"},
                   .help = {"first=what it is=for", "Nothing=x"},
                   .readOnly = {"FOURTH"}}),
            "Properties: First=First (what it is=for) Fourth=Fourth!");
}

class OpensPages final : public TShowActionPropertiesEditor {};
constexpr TQXPropertyEditorClass kEditor{
    "OpensPages", []() -> std::unique_ptr<TQXPropertyEditor> { return std::make_unique<OpensPages>(); }};

TEST(PropertyView, TellsWhichPropertiesOpenPages) {
  Catalogue catalogue;
  catalogue.RegisterAction(SpokenClass(), "Spoken", "Tests", "");
  catalogue.RegisterPropertyEditor(SpokenClass(), "Third", kEditor);
  EXPECT_EQ(Shown({.hidden = {"First", "Fourth"}}, catalogue),
            "Properties: SecondOne=SecondOne Third=Third...");
}

}  // namespace
}  // namespace qx::desktop
