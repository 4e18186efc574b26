#include "pages/Qxvsdotnetoutputlocationframe.h"

#include "actions/Qxmstestaction.h"
#include "pages/PagesFixture.h"

namespace qx {
namespace {

constexpr int kPage = kDetectionPage;

class DetectionPage : public PagesFixture {
 protected:
  VSDotNetSettings& Settings() { return action->Settings(); }
  void Click(const char* name) { EXPECT_EQ(Any(kPage, name).UserClick(), TUserAnswer::Done) << name; }
  void Type(const char* name, const char* text) {
    EXPECT_EQ(Any(kPage, name).UserType(text), TUserAnswer::Done) << name;
  }
  Texts Chosen() {
    Texts chosen;
    for (const char* name : {"rbWMI", "rbNetworkShare", "rbWebDAV"})
      if (Of<TRadioButton>(kPage, name).Checked()) chosen.push_back(name);
    return chosen;
  }
};

TEST_F(DetectionPage, IsThePageOfTheBuildActionOnly) {
  TVSDotNetOutputLocationFrame page;
  EXPECT_EQ(page.PageName(), "Project Detection");
  EXPECT_EQ(page.GetHelpContext(), 1300);
  const auto other = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  EXPECT_EQ(MessageOf([&] { page.ReadActionData(*other); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteActionData(*other); }), "Invalid class typecast");
}

TEST_F(DetectionPage, ShowsAndWritesTheMethod) {
  constexpr std::pair<TProjLocDetectMethod, const char*> kMethods[] = {
      {TProjLocDetectMethod::useWMI, "rbWMI"},
      {TProjLocDetectMethod::useShare, "rbNetworkShare"},
      {TProjLocDetectMethod::useWebDAV, "rbWebDAV"}};
  for (const auto& [method, name] : kMethods) {
    Settings().projLocationDetectMethod = method;
    Open();
    EXPECT_EQ(Chosen(), Texts{name});
    for (const auto& [other, otherName] : kMethods) {
      Click(otherName);
      EXPECT_EQ(Chosen(), Texts{otherName});
      Write();
      EXPECT_EQ(Settings().projLocationDetectMethod, other);
    }
  }
}

TEST_F(DetectionPage, KeepsAMethodThatItDoesNotKnow) {
  Settings().projLocationDetectMethod = static_cast<TProjLocDetectMethod>(7);
  Open();
  EXPECT_EQ(Chosen(), Texts{});
  Write();
  EXPECT_EQ(Settings().projLocationDetectMethod, static_cast<TProjLocDetectMethod>(7));
}

TEST_F(DetectionPage, ShowsAndWritesAllFieldsWhateverTheMethod) {
  Settings().sharePath = "web$";
  Settings().wmiWebsiteNum = 3;
  Settings().webDavUsername = "anna";
  action->SetWebDAVPassword("secret");
  Open();
  EXPECT_EQ(Of<TEdit>(kPage, "edtShare").Text(), "web$");
  EXPECT_EQ(Of<TSpinEdit>(kPage, "spiWebsiteNumber").Value(), 3);
  EXPECT_EQ(Of<TEdit>(kPage, "edtUser").Text(), "anna");
  EXPECT_EQ(Of<TEdit>(kPage, "edtPassword").Text(), "secret");
  for (const TControl* control : dialog->Page(kPage).Controls()) EXPECT_TRUE(control->IsEnabled());
  Type("edtShare", "other$");
  Type("spiWebsiteNumber", "4");
  Type("edtUser", "berta");
  Type("edtPassword", "geheim");
  Write();
  EXPECT_EQ(Settings().sharePath, "other$");
  EXPECT_EQ(Settings().wmiWebsiteNum, 4);
  EXPECT_EQ(Settings().webDavUsername, "berta");
  EXPECT_EQ(action->GetWebDAVPassword(), "geheim");
}

TEST_F(DetectionPage, KeepsUserAndPasswordOverAChangeOfMethod) {
  Settings().projLocationDetectMethod = TProjLocDetectMethod::useWebDAV;
  Settings().webDavUsername = "anna";
  action->SetWebDAVPassword("secret");
  for (const char* name : {"rbWMI", "rbWebDAV"}) {
    Open();
    Click(name);
    Write();
    EXPECT_EQ(Settings().webDavUsername, "anna");
    EXPECT_EQ(action->GetWebDAVPassword(), "secret");
  }
}

TEST_F(DetectionPage, ShowsStarsAndKeepsThePasswordEncrypted) {
  Open();
  Type("edtPassword", "geheim");
  EXPECT_TRUE(Of<TEdit>(kPage, "edtPassword").masked);
  Write();
  EXPECT_NE(Settings().webDavPasswordEncrypted, "");
  EXPECT_EQ(Settings().webDavPasswordEncrypted.find("geheim"), std::string::npos);
}

TEST_F(DetectionPage, LeavesAPasswordThatCannotBeDecryptedUntilAnotherIsTyped) {
  Settings().webDavPasswordEncrypted = "from another computer";
  Settings().webDavUsername = "anna";
  Open();
  EXPECT_EQ(Shown().size(), 1u);
  EXPECT_EQ(Of<TEdit>(kPage, "edtUser").Text(), "anna");
  Write();
  EXPECT_EQ(Settings().webDavPasswordEncrypted, "from another computer");
  Type("edtPassword", "new");
  Write();
  EXPECT_EQ(action->GetWebDAVPassword(), "new");
}

TEST_F(DetectionPage, LeavesItWhenAnotherOneWasReadBefore) {
  action->SetWebDAVPassword("secret");
  Open();
  Settings().webDavPasswordEncrypted = "from another computer";
  EXPECT_THROW(dialog->Page(kPage).ReadActionData(*action), Exception);
  EXPECT_EQ(Of<TEdit>(kPage, "edtPassword").Text(), "");
  Write();
  EXPECT_EQ(Settings().webDavPasswordEncrypted, "from another computer");
}

TEST_F(DetectionPage, ForgetsThePasswordThatTheUserEmpties) {
  action->SetWebDAVPassword("secret");
  Open();
  Type("edtPassword", "");
  Write();
  EXPECT_EQ(action->GetWebDAVPassword(), "");
}

TEST_F(DetectionPage, HoldsTheWebsiteNumberToItsRange) {
  Open();
  Type("spiWebsiteNumber", "0");
  EXPECT_EQ(Of<TSpinEdit>(kPage, "spiWebsiteNumber").Value(), 1);
  Type("spiWebsiteNumber", "99999999999");
  Write();
  EXPECT_EQ(Settings().wmiWebsiteNum, 2147483647);
  Settings().wmiWebsiteNum = -5;
  Open();
  Write();
  EXPECT_EQ(Settings().wmiWebsiteNum, 1);
}

}  // namespace
}  // namespace qx
