// Every control of every page against the table in tests/pages: name, kind, caption, hint, tab order, parent,
// enabled and value, in their order, before anything is read and after a new action was.

#include "actions/Qxmstestaction.h"
#include "host/pages/ControlState.h"
#include "options/Qxvsdotnetoptions.h"
#include "pages/PagesFixture.h"
#include "pages/Qxmstestframe.h"
#include "pages/Qxvsdotnetassemblyframe.h"
#include "pages/Qxvsdotnetoptionsframe.h"
#include "pages/Qxvsdotnetoutputlocationframe.h"
#include "pages/Qxvsdotnetprojectframe.h"
#include "pages/Qxvsdotnetversioninfoframe.h"
#include "tests/pages/ExpectedStates.h"

namespace qx {
namespace {

Json StatesOf(const TFrame& page) {
  Json states = Json::array();
  for (const TControl* control : page.Controls()) states.push_back(StateOf(*control));
  return states;
}

template <class Page, class Action>
void ExpectActionPage(Action& action) {
  Page page;
  page.InitFrame();
  page.InitPage();
  ExpectStates(StatesOf(page), page.PageName(), Moment::Initial);
  page.ReadActionData(action);
  ExpectStates(StatesOf(page), page.PageName(), Moment::AfterReading);
}

TEST(ControlStates, AreThoseOfTheTable) {
  DrivenUser user;
  TestHost host;  // without options: a new action is one for 2003
  const auto build = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
  ExpectActionPage<TVSDotNetProjectFrame>(*build);
  ExpectActionPage<TVSDotNetAssemblyFrame>(*build);
  ExpectActionPage<TVSDotNetOutputLocationFrame>(*build);
  ExpectActionPage<TVC7VersionInfoFrame>(*build);
  const auto test = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  ExpectActionPage<TMSTestFrame>(*test);

  TVSDotNetOptions options;
  TVSDotNetOptionsFrame page;
  page.InitFrame();
  ExpectStates(StatesOf(page), "", Moment::Initial);
  page.ReadOptions(options);
  ExpectStates(StatesOf(page), "", Moment::AfterReading);
}

// What the table cannot say: which control a label leads to.
TEST(ControlStates, EveryLabelWithAnAcceleratorLeadsToAControl) {
  TVC7VersionInfoFrame page;
  int accelerators = 0;
  for (const TControl* control : page.Controls()) {
    if (control->Kind() != "label" || control->caption.find('&') == std::string::npos) continue;
    ++accelerators;
    const TControl* labelled = dynamic_cast<const TLabel&>(*control).labelled;
    ASSERT_NE(labelled, nullptr) << control->name;
    EXPECT_TRUE(labelled->IsWindowed()) << control->name;
  }
  EXPECT_EQ(accelerators, 5);
}

}  // namespace
}  // namespace qx
