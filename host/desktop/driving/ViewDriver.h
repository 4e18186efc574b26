// The hands and eyes of a driver on the widgets of a pages window: does to them what a user's action does when
// it arrives there, and reads what the screen says of them. Models are asked only which control is meant.
#pragma once

#include "host/desktop/views/PagesWindow.h"
#include "host/pages/PageDriver.h"

namespace qx::desktop {

// User-interface thread. The window is shown; it outlives this.
class WidgetHands final : public PageHands {
 public:
  explicit WidgetHands(PagesWindow& window);

  int PageInFront() const override { return window_.PageInFront(); }
  void GoTo(int page) override;
  bool IsEnabled(int page, TControl& control) const override;
  nlohmann::ordered_json StateOf(int page, const TControl& control) const override;

  TUserAnswer Click(int page, TControl& control) override;
  TUserAnswer Type(int page, TControl& control, const std::string& text) override;
  TUserAnswer Select(int page, TControl& control, int index) override;
  TUserAnswer Tick(int page, TControl& control, int index, bool checked) override;
  TUserAnswer EditCell(int page, TControl& control, int column, int row, const std::string& text) override;
  TUserAnswer PressButton(int page, TControl& control, int index) override;
  void Write() override;

 private:
  wxWindow& WidgetOf(int page, const TControl& control) const;
  // Puts the keys there, does it, and raises what a page raised meanwhile.
  TUserAnswer Do(wxWindow& widget, const std::function<TUserAnswer()>& deed);
  void RaiseFault();

  PagesWindow& window_;
  std::string fault_;
};

}  // namespace qx::desktop
