// Many coloured lines in one fixed-width list, of which only the visible ones are ever drawn: the log, and
// the difference that a dry run shows.
#pragma once

#include <wx/listctrl.h>

#include <array>

#include "host/desktop/core/LogStore.h"

namespace qx::desktop {

// How a line looks.
enum class LineLook { Plain, Heading, Good, Warning, Error, Added, Removed, Place };

// Of the text that tells of a failure, on the ground that windows and lists have.
wxColour ErrorColour();
// The same of what went well, and of a warning.
wxColour GoodColour();
wxColour WarningColour();

class LineList : public wxListView {
 public:
  LineList(wxWindow* parent, const wxString& name, const wxString& accessibleName);

  // From now on there are so many lines; what they say may have changed.
  void SetLineCount(std::size_t count);
  // Whether the last line is in sight, or there is none.
  bool IsAtEnd() const;
  // Scrolls until the line is the first in sight, or as near to that as there are lines below it.
  void SetTop(long line);
  void DeselectAll() { SetItemState(-1, 0, wxLIST_STATE_SELECTED); }
  void GoTo(long line);
  long Focused() const { return GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_FOCUSED); }
  // The selected lines; all of them when none is.
  wxString SelectedText() const;
  void CopySelected() const;

 protected:
  virtual wxString LineText(long line) const = 0;
  virtual LineLook Look(long line) const = 0;
  // -1: none; else an index into the list's images: 0 an open heading, 1 a closed one.
  virtual int LineImage(long) const { return -1; }

 private:
  wxString OnGetItemText(long item, long column) const override;
  int OnGetItemImage(long item) const override { return LineImage(item); }
  wxItemAttr* OnGetItemAttr(long item) const override;
  void Widen(std::size_t from, std::size_t to);
  void FitColumn();
  void StayAtEnd();

  mutable std::array<wxItemAttr, 8> looks_;  // by LineLook
  int widest_ = 0;
  int page_ = 0;  // lines in sight before the size changes
};

}  // namespace qx::desktop
