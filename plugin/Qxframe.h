// Property pages and property editors as the host sees them: a page is a frame that the host creates, fills,
// activates and asks to write its values back. Pages hold rules and plain controls, no pixel.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {

class TPersistent;

// Base class of property-page frames. All calls come on the user-interface thread.
class QX_API TFrame : public AnswersUncounted<IInterface> {
 public:
  TFrame();
  virtual ~TFrame();

  virtual void InitFrame();                           // once, after construction: builds the controls
  virtual void InitPage();                            // once, when all pages of the dialog exist
  virtual void ReadActionData(TPersistent& object);   // fills the controls
  virtual void WriteActionData(TPersistent& object);  // on OK: writes the controls back
  virtual void OnPageActivate();
  virtual void OnPageDeActivate();
  virtual std::string PageName() const = 0;
  virtual int GetHelpContext() const;  // 0: none
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
