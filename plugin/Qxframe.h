// Property pages and property editors as the host sees them: a page is a frame that the host creates, fills,
// activates and asks to write its values back. Pages hold rules and plain controls, no pixel.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/Qxcontrols.h"
#include "plugin/Qxtypes.h"

namespace qx {

class TFrame;
class TPersistent;
class TQXOptionsObject;

// What a page can ask its owner for: all pages that the dialog shows, in their order. A page that wants
// another one queries each for the interface it looks for:
//
//   const InterfacePtr<IQXPageList> list = Query<IQXPageList>(Owner());
//   for (int i = 0; list && i < list->GetPageCount(); ++i)
//     if (const auto page = Query<IWantsTheFolder>(list->GetPage(i))) page->FolderChanged(folder);
class IQXPageList : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{C9E1F6B2-4D38-4A9C-8B1E-6F0D2A7C5E21}");
  using Base = IInterface;
  virtual int GetPageCount() = 0;
  // The host's; valid while the dialog is open. Raises Exception for an index that is none.
  virtual TFrame* GetPage(int index) = 0;

 protected:
  ~IQXPageList() = default;
};

// Base class of property-page frames. All calls come on the user-interface thread, in this order: the
// constructor, SetOwner, InitFrame (of every page), InitPage (of every page), ReadActionData (of every page,
// in their order); then OnPageActivate and OnPageDeActivate as the user goes from page to page;
// WriteActionData (of every page) when the user confirms; the destructor. An exception from any of them is
// shown to the user.
class QX_API TFrame : public AnswersUncounted<IInterface> {
 public:
  TFrame();
  virtual ~TFrame();
  TFrame(const TFrame&) = delete;
  TFrame& operator=(const TFrame&) = delete;

  virtual void InitFrame();                           // once, after construction
  virtual void InitPage();                            // once, when all pages of the dialog exist
  virtual void ReadActionData(TPersistent& object);   // fills the controls
  virtual void WriteActionData(TPersistent& object);  // on OK: writes the controls back
  virtual void OnPageActivate();
  virtual void OnPageDeActivate();
  virtual std::string PageName() const = 0;
  virtual int GetHelpContext() const;  // 0: none

  // Every control of the page in the order they were added, the root left out. The frame's.
  const std::vector<TControl*>& Controls() const { return order_; }
  // The control of that name, letter case aside; null when there is none.
  TControl* FindControl(std::string_view name) const;
  // The page itself as a container: its Children() are the page's direct child controls.
  TControl& Root() { return *root_; }

  // The dialog that owns the pages, asked with Query<IQXPageList>; null: the page stands alone.
  IInterface* Owner() const { return owner_; }
  void SetOwner(IInterface* owner) { owner_ = owner; }

 protected:
  // Makes a control inside the parent (the page itself when none is named), after those it has already. It
  // lives as long as the frame.
  template <class Control>
  Control& Add(TControl& parent, const std::string& name, const std::string& caption = {}) {
    auto made = std::make_unique<Control>();
    Control& control = *made;
    control.name = name;
    control.caption = caption;
    Adopt(parent, std::move(made));
    return control;
  }
  template <class Control>
  Control& Add(const std::string& name, const std::string& caption = {}) {
    return Add<Control>(Root(), name, caption);
  }

 private:
  void Adopt(TControl& parent, std::unique_ptr<TControl> control);

  std::unique_ptr<TControl> root_;
  std::vector<std::unique_ptr<TControl>> controls_;
  std::vector<TControl*> order_;
  IInterface* owner_ = nullptr;
};

// A frame that answers queries for interfaces of its own too:
//   class TFolderFrame : public TFrameAnswering<IWantsTheFolder> { ... };
// Like the frame itself these belong to the dialog and are not counted.
template <class... Interfaces>
class TFrameAnswering : public TFrame, public Interfaces... {
 public:
  bool QueryInterface(const TGUID& iid, void** out) override {
    return TFrame::QueryInterface(iid, out) ||
           (detail::AnswerQuery<Interfaces>(static_cast<Interfaces*>(this), iid, out) || ...);
  }
  std::int32_t _AddRef() override { return -1; }
  std::int32_t _Release() override { return -1; }
};

// What an options page is given: the dialog that shows it.
class IQXOptionPageOwner : public IQXPageList {
 public:
  static constexpr TGUID IID = Guid("{D0F207C3-5E49-4BAD-9C2F-701E3B8D6F32}");
  using Base = IQXPageList;
  // The object that the page is registered for. The host's.
  virtual TQXOptionsObject* GetOptions() = 0;

 protected:
  ~IQXOptionPageOwner() = default;
};

// Base class of options pages; the only kind of frame that RegisterOptionsPage takes. Order of calls: the
// constructor, SetOwner, InitFrame, InitPage with the owner, ReadOptions when the page is shown,
// OnPageActivate, WriteOptions when the user confirms, the destructor. ReadActionData and WriteActionData are
// never called.
class QX_API TQXOptionsFrame : public TFrame {
 public:
  ~TQXOptionsFrame() override;
  using TFrame::InitPage;
  virtual void InitPage(IQXOptionPageOwner& owner);
  virtual void ReadOptions(TQXOptionsObject& options) = 0;
  virtual void WriteOptions(TQXOptionsObject& options) = 0;
  // Empty: the host lists the page under the options object's name.
  virtual std::string GetPageName() const = 0;
  std::string PageName() const override { return GetPageName(); }
};

struct TFrameClass {
  std::string_view className;
  std::unique_ptr<TFrame> (*construct)();
};

// Base of the host's property editors: a button in the property grid.
class QX_API TQXPropertyEditor {
 public:
  virtual ~TQXPropertyEditor();
};

// The editor that opens the action's property pages, at the page it names or at the first one.
class QX_API TShowActionPropertiesEditor : public TQXPropertyEditor {
 public:
  ~TShowActionPropertiesEditor() override;
  virtual std::string GetPageName() const;  // empty: the first page
};

struct TQXPropertyEditorClass {
  std::string_view className;
  std::unique_ptr<TQXPropertyEditor> (*construct)();
};

}  // namespace qx
