// The dialog of property pages without its looks: makes the registered pages of an action, or of all options
// objects, leads them through their life and has them write back. The page driver and the desktop each show one.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/actions/Catalogue.h"

namespace qx {

// User-interface thread. What it edits, and the package that made its pages, outlive it.
class PageDialog {
 public:
  // Makes every page in the order of registration, then calls InitFrame of each, InitPage of each, and has
  // each read the object. A page that fails to read is kept as far as it came, and its error is shown to the
  // user. Raises Exception when a page cannot be made, or none is registered.
  static std::unique_ptr<PageDialog> ForAction(const RegisteredAction& registered, TQXAction& action);
  // The pages of every options object that has one.
  static std::unique_ptr<PageDialog> ForOptions(Catalogue& catalogue);
  ~PageDialog();
  PageDialog(const PageDialog&) = delete;
  PageDialog& operator=(const PageDialog&) = delete;

  int Count() const { return static_cast<int>(pages_.size()); }
  TFrame& Page(int index) const { return *pages_.at(static_cast<std::size_t>(index)).frame; }
  // The page's name; that of its options object for a page without one.
  const std::string& Name(int index) const { return pages_.at(static_cast<std::size_t>(index)).name; }

  // The page of that name, letter case aside; -1 when there is none.
  int Find(std::string_view name) const;
  // The page the user is on, -1 before the first. Going to another one tells both; going to the same, neither.
  int Active() const { return active_; }
  void Activate(int index);

  // Has every page write, in order. An exception stops it there: what was written before stays written.
  void Write();

 private:
  class ActionOwner;
  class OptionsOwner;
  struct Entry {
    std::unique_ptr<OptionsOwner> owner;  // of an options page
    std::unique_ptr<TFrame> frame;        // goes before its owner
    std::string name;
    std::function<void()> initialise;
    std::function<void()> read;
    std::function<void()> write;
  };

  PageDialog();
  void AddActionPage(const TFrameClass& frameClass, TQXAction& action);
  void AddOptionsPage(const TFrameClass& frameClass, TQXOptionsObject& options);
  void Begin();

  std::unique_ptr<ActionOwner> actionOwner_;  // of every page of an action
  std::vector<Entry> pages_;
  int active_ = -1;
};

// The name of the page at which the editor of a property opens the dialog; empty: at the first one. Nothing
// when the property has no editor that opens pages.
std::optional<std::string> EditorPage(const Catalogue& catalogue, const TQXActionClass& actionClass,
                                      std::string_view propertyName);

// The index of that page in the action's dialog. Raises Exception when there is no such property, when it has
// no editor that opens pages, and when the page is not registered.
int PageOfProperty(const Catalogue& catalogue, const PageDialog& dialog, const TQXAction& action,
                   const std::string& propertyName);

}  // namespace qx
