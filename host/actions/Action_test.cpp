#include <gtest/gtest.h>

#include <array>

#include "host/actions/ActionHost.h"
#include "host/testing/TestHost.h"

namespace qx {
namespace {

class Greet : public TQXAction {
 public:
  std::string GetWord() const { return word_; }
  void SetWord(const std::string& value) { word_ = value; }
  std::string GetPassword() { return DecryptString(stored_, ""); }
  void SetPassword(const std::string& value) { stored_ = EncryptString(value, ""); }
  std::string GetStored() const { return stored_; }
  void SetStored(const std::string& value) { stored_ = value; }
  void Create() override { word_ = "hello"; }

 private:
  std::string word_;
  std::string stored_;
};

constexpr std::array kProperties{
    Property<&Greet::GetWord, &Greet::SetWord>("Word"),
    Property<&Greet::GetPassword, &Greet::SetPassword>("Password", PropertyStorage::Secret),
    Property<&Greet::GetStored, &Greet::SetStored>("_Password"),
};

constexpr TQXActionClass kGreet{"Greet", [] { return std::string("Greet somebody"); }, kProperties,
                                []() -> std::unique_ptr<TQXAction> { return std::make_unique<Greet>(); }};

TEST(Action, IsAttachedBeforeCreateRuns) {
  struct Curious : TQXAction {
    void Create() override { SendMessage(ExpandExpression("%A%", false)); }
  };
  const TQXActionClass curious{"Curious",
                               [] { return std::string("c"); },
                               {},
                               []() -> std::unique_ptr<TQXAction> { return std::make_unique<Curious>(); }};
  TestHost host;
  host.variables.SetProject("A", "there");
  const auto action = host.Make(curious);
  EXPECT_EQ(host.Lines(), std::vector<std::string>{"there"});
  EXPECT_EQ(action->GetActionClass(), &curious);
}

TEST(Action, AClassThatMakesNothingIsNamed) {
  const TQXActionClass empty{
      "Empty", [] { return std::string(); }, {}, []() -> std::unique_ptr<TQXAction> { return nullptr; }};
  TestHost host;
  EXPECT_THROW(host.Make(empty), Exception);
}

TEST(Action, TitlesAreTheActionsNameUntilSet) {
  TestHost host;
  const auto action = host.Make(kGreet);
  EXPECT_EQ(action->GetActionLogTitle(), "Greet somebody");
  EXPECT_EQ(action->GetDescription(), "Greet somebody");
  action->SetActionLogTitle("t");
  action->SetDescription("d");
  EXPECT_EQ(action->GetActionLogTitle(), "t");
  EXPECT_EQ(action->GetDescription(), "d");
}

TEST(Action, SendsStatusMessages) {
  TestHost host;
  const auto action = host.Make(kGreet);
  const auto message = action->CreateStatusMessage();
  message->AppendDetail("detail");
  message->SetHeading("heading");
  action->SendStatusMessage(message);
  action->SendStatusMessage(nullptr);
  EXPECT_EQ(host.Lines(), std::vector<std::string>{"heading\n    detail"});
}

TEST(Action, TryExpandLogsTheFailureUnderItsCaption) {
  TestHost host;
  const auto action = host.Make(kGreet);
  std::string result = "kept";
  EXPECT_FALSE(action->TryExpandExpression("Assembly File", "%NONE%", result, true));
  EXPECT_EQ(result, "kept");
  EXPECT_EQ(host.Lines(), std::vector<std::string>{"Assembly File\n    Undefined variable : NONE"});
  host.variables.SetProject("A", "%B%");
  EXPECT_TRUE(action->TryExpandExpression("Assembly File", "%A%", result, false));
  EXPECT_EQ(result, "%B%");
}

TEST(Action, ContextExpandsWithTheSameVariables) {
  TestHost host;
  host.variables.SetOverride("A", "x");
  const auto action = host.Make(kGreet);
  EXPECT_EQ(action->GetActionContext()->GetApplicationServices()->ExpandExpression("%A%", true), "x");
}

TEST(Action, DynamicPropertiesAreKeptOnceInAnyCase) {
  TestHost host;
  const auto action = host.Make(kGreet);
  action->RegisterDynamicProperty("Word");
  action->RegisterDynamicProperty("WORD");
  EXPECT_EQ(action->Host().dynamicProperties, std::vector<std::string>{"Word"});
  action->UnRegisterDynamicProperty("unknown");
  action->UnRegisterDynamicProperty("wORD");
  EXPECT_TRUE(action->Host().dynamicProperties.empty());
}

TEST(Action, ClearGoesBackToTheDefaults) {
  TestHost host;
  const auto action = host.Make<Greet>(kGreet);
  action->SetWord("changed");
  action->SetStored("changed");
  action->Clear();
  EXPECT_EQ(action->GetWord(), "hello");
  EXPECT_EQ(action->GetStored(), "");
}

TEST(Action, StopSignalledTellsTheHostsFlag) {
  TestHost host;
  const auto action = host.Make(kGreet);
  EXPECT_FALSE(action->StopSignalled());
  host.stopping = true;
  EXPECT_TRUE(action->StopSignalled());
}

TEST(Action, ChildrenAreCountedAndBounded) {
  TestHost host;
  const auto action = host.Make(kGreet);
  const auto child = host.Make(kGreet);
  action->AddChildObject(*child);
  EXPECT_EQ(action->GetChildActionCount(), 1);
  EXPECT_EQ(action->GetChildAction(0), child.get());
  EXPECT_THROW(action->GetChildAction(1), Exception);
  std::vector<TQXAction*> children;
  action->GetChildren(children);
  EXPECT_EQ(children, std::vector<TQXAction*>{child.get()});
}

TEST(Action, EncryptedTextsComeBackAndStayOutOfTheLog) {
  TestHost host;
  const auto action = host.Make<Greet>(kGreet);
  action->SetPassword("open sesame");
  EXPECT_EQ(action->GetStored().find("sesame"), std::string::npos);
  EXPECT_EQ(action->GetPassword(), "open sesame");
  action->SendMessage("psw: open sesame.");
  EXPECT_EQ(host.Lines(), std::vector<std::string>{"psw: ***."});
}

TEST(Action, GuardedSecretsStayOutOfTheLogBeforeAnybodyReadsThem) {
  TestHost first;
  const auto action = first.Make<Greet>(kGreet);
  action->SetPassword("open sesame");
  ActionLog log;
  auto& memory = static_cast<MemorySink&>(log.AddSink(std::make_unique<MemorySink>()));
  GuardSecrets(*action, log);
  log.AddMessage(1, "open sesame");
  EXPECT_EQ(memory.Lines(), std::vector<std::string>{"***"});
  action->SetStored("no secret at all");
  EXPECT_NO_THROW(GuardSecrets(*action, log));
}

TEST(Action, WithoutALogNothingHappens) {
  const auto action = MakeAction(kGreet, {});
  EXPECT_NO_THROW(action->SendMessage("into the void"));
  EXPECT_NO_THROW(action->SendStatusMessage(action->CreateStatusMessage()));
}

TEST(ValidationErrors, AreCollectedAndLogged) {
  TestHost host;
  ValidationErrors errors(&host.log, 3);
  errors.AddError("Subject", "Message");
  EXPECT_EQ(errors.Errors(), (std::vector<ValidationErrors::Error>{{"Subject", "Message"}}));
  EXPECT_EQ(host.Entries()[0].action, 3);
  EXPECT_EQ(host.Lines(), std::vector<std::string>{"Subject: Message"});
}

}  // namespace
}  // namespace qx
