#include "host/pages/Pages.h"

#include <algorithm>

#include "host/actions/PropertyText.h"
#include "platform/Texts.h"

namespace qx {
namespace {

std::unique_ptr<TFrame> MakeFrame(const TFrameClass& frameClass) {
  std::unique_ptr<TFrame> frame = frameClass.construct();
  if (frame == nullptr) throw Exception("The class " + std::string(frameClass.className) + " made no page");
  return frame;
}

TFrame* FrameAt(const PageDialog& dialog, int index) {
  if (index < 0 || index >= dialog.Count())
    throw Exception("There is no page " + std::to_string(index) + "; there are " +
                    std::to_string(dialog.Count()));
  return &dialog.Page(index);
}

}  // namespace

// What a page of an action sees of the dialog.
class PageDialog::ActionOwner final : public AnswersUncounted<IQXPageList> {
 public:
  explicit ActionOwner(const PageDialog& dialog) : dialog_(dialog) {}
  int GetPageCount() override { return dialog_.Count(); }
  TFrame* GetPage(int index) override { return FrameAt(dialog_, index); }

 private:
  const PageDialog& dialog_;
};

// What an options page sees of it.
class PageDialog::OptionsOwner final : public AnswersUncounted<IQXOptionPageOwner> {
 public:
  OptionsOwner(const PageDialog& dialog, TQXOptionsObject& options) : dialog_(dialog), options_(options) {}
  int GetPageCount() override { return dialog_.Count(); }
  TFrame* GetPage(int index) override { return FrameAt(dialog_, index); }
  TQXOptionsObject* GetOptions() override { return &options_; }

 private:
  const PageDialog& dialog_;
  TQXOptionsObject& options_;
};

PageDialog::PageDialog() = default;
PageDialog::~PageDialog() = default;

void PageDialog::AddActionPage(const TFrameClass& frameClass, TQXAction& action) {
  Entry entry;
  entry.frame = MakeFrame(frameClass);
  TFrame& frame = *entry.frame;
  frame.SetOwner(actionOwner_.get());
  entry.name = frame.PageName();
  entry.initialise = [&frame] { frame.InitPage(); };
  entry.read = [&frame, &action] { frame.ReadActionData(action); };
  entry.write = [&frame, &action] { frame.WriteActionData(action); };
  pages_.push_back(std::move(entry));
}

void PageDialog::AddOptionsPage(const TFrameClass& frameClass, TQXOptionsObject& options) {
  Entry entry;
  entry.owner = std::make_unique<OptionsOwner>(*this, options);
  entry.frame = MakeFrame(frameClass);
  auto* frame = dynamic_cast<TQXOptionsFrame*>(entry.frame.get());
  if (frame == nullptr)
    throw Exception("The class " + std::string(frameClass.className) + " makes no options page");
  OptionsOwner& owner = *entry.owner;
  frame->SetOwner(&owner);
  entry.name = frame->GetPageName();
  if (entry.name.empty()) entry.name = options.GetOptionsName();
  entry.initialise = [frame, &owner] { frame->InitPage(owner); };
  entry.read = [frame, &options] { frame->ReadOptions(options); };
  entry.write = [frame, &options] { frame->WriteOptions(options); };
  pages_.push_back(std::move(entry));
}

void PageDialog::Begin() {
  for (const Entry& entry : pages_) entry.frame->InitFrame();
  for (const Entry& entry : pages_) entry.initialise();
  for (const Entry& entry : pages_) {
    try {
      entry.read();
    } catch (const std::exception& fault) {
      QXShowError(fault.what());
    }
  }
  Activate(0);
}

std::unique_ptr<PageDialog> PageDialog::ForAction(const RegisteredAction& registered, TQXAction& action) {
  if (registered.pages.empty())
    throw Exception("The action \"" + registered.displayName + "\" has no property pages");
  std::unique_ptr<PageDialog> dialog(new PageDialog);
  dialog->actionOwner_ = std::make_unique<ActionOwner>(*dialog);
  for (const TFrameClass* frameClass : registered.pages) dialog->AddActionPage(*frameClass, action);
  dialog->Begin();
  return dialog;
}

std::unique_ptr<PageDialog> PageDialog::ForOptions(Catalogue& catalogue) {
  std::unique_ptr<PageDialog> dialog(new PageDialog);
  for (const RegisteredOptions& registered : catalogue.Options()) {
    for (const TFrameClass* frameClass : registered.pages)
      dialog->AddOptionsPage(*frameClass, catalogue.ObjectOf(registered));
  }
  if (dialog->pages_.empty()) throw Exception("No loaded package has an options page");
  dialog->Begin();
  return dialog;
}

int PageDialog::Find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(pages_, [&](const Entry& entry) { return SameText(entry.name, name); });
  return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

void PageDialog::Activate(int index) {
  TFrame& next = Page(index);
  if (index == active_) return;
  if (active_ >= 0) Page(active_).OnPageDeActivate();
  active_ = index;
  next.OnPageActivate();
}

// No way back from a page that fails: pages before it have written into the action itself
// (docs/deliberate.md).
void PageDialog::Write() {
  for (const Entry& entry : pages_) entry.write();
}

std::optional<std::string> EditorPage(const Catalogue& catalogue, const TQXActionClass& actionClass,
                                      std::string_view propertyName) {
  const TQXPropertyEditorClass* editorClass = catalogue.FindEditor(actionClass, propertyName);
  if (editorClass == nullptr || editorClass->construct == nullptr) return std::nullopt;
  const std::unique_ptr<TQXPropertyEditor> editor = editorClass->construct();
  const auto* opens = dynamic_cast<const TShowActionPropertiesEditor*>(editor.get());
  return opens == nullptr ? std::nullopt : std::optional(opens->GetPageName());
}

int PageOfProperty(const Catalogue& catalogue, const PageDialog& dialog, const TQXAction& action,
                   const std::string& propertyName) {
  const TQXActionClass& actionClass = *action.GetActionClass();
  const PublishedProperty& property = NeedProperty(actionClass.properties, propertyName);
  const auto page = EditorPage(catalogue, actionClass, property.name);
  if (!page)
    throw Exception("The property " + std::string(property.name) + " has no editor that opens pages");
  const int index = page->empty() ? 0 : dialog.Find(*page);
  if (index < 0)
    throw Exception("The editor of " + std::string(property.name) + " opens a page \"" + *page +
                    "\", which is not registered");
  return index;
}

}  // namespace qx
