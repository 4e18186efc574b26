// The log of the build: streams while it runs, opens and closes details, finds, filters, copies and saves.
#pragma once

#include <wx/panel.h>

#include <functional>
#include <string>

#include "host/desktop/core/LogStore.h"

class wxBoxSizer;
class wxChoice;
class wxSearchCtrl;
class wxStaticText;

namespace qx::desktop {

class LogList;

class LogPanel final : public wxPanel {
 public:
  // The store outlives it.
  LogPanel(wxWindow* parent, LogStore& log);

  // Shows what has come since the last time.
  void Update() override;
  void Clear();
  void SetFocus() override;
  void StartFind();
  void FindNext(bool forwards);
  void Copy() const;
  void Save();

 private:
  void Filter();
  void ShowCounts();
  void MakeBar();
  void BindFields();
  void FoldBar(int width);

  LogStore& log_;
  wxBoxSizer* bar_;
  LogList* list_;
  wxSearchCtrl* find_;
  wxSearchCtrl* filter_;
  wxChoice* least_;
  wxStaticText* counts_;
  wxString found_;  // what the last search came to
};

}  // namespace qx::desktop
