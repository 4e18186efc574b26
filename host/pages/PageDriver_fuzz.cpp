// Any lines drive pages without harm, and every answer is one line of JSON.
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "host/pages/PageDriver.h"
#include "host/testing/SampleAction.h"
#include "platform/Texts.h"

namespace qx {
namespace {

class Page final : public TFrame {
 public:
  Page() {
    Add<TLabel>("l", "&Label");
    auto& edit = Add<TButtonEdit>("e");
    edit.buttons.push_back({TEditButton::Picture::Folder, "", [&edit] {
                              TOpenDialog dialog{"t", "f|*", "x", edit.Text()};
                              if (dialog.Execute()) edit.SetText(dialog.fileName);
                            }});
    auto& combo = Add<TComboBox>("c");
    for (const char* item : {"one", "two"}) combo.AddItem(item);
    combo.OnChange = [&combo] { QXShowMessage(combo.Text()); };
    auto& group = Add<TGroupBox>("g");
    auto& box = Add<TCheckBox>("b");
    box.OnClick = [&] { group.SetEnabled(box.Checked()); };
    Add<TRadioButton>(group, "r1");
    Add<TRadioButton>(group, "r2");
    auto& list = Add<TCheckListBox>("k");
    for (const char* item : {"one", "two"}) list.AddItem(item);
    list.OnTick = [&list](int index, bool) { list.AddItem(list.Item(index)); };
    Add<TSpinEdit>("s").SetRange(-5, 5);
    Add<TStringGrid>("t").SetSize(2, 3);
  }
  std::string PageName() const override { return "P q"; }
};

constexpr TFrameClass kPage{"TPage", []() -> std::unique_ptr<TFrame> { return std::make_unique<Page>(); }};

}  // namespace
}  // namespace qx

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qx;
  if (size > 4096) return 0;  // lists grow with every tick
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const RegisteredAction registered{&SampleActionClass(), "Sample", "", "", {}, {&kPage}};
  SampleAction action;
  DrivenUser user;
  const auto dialog = PageDialog::ForAction(registered, action);
  PageDriver driver(*dialog, user, [] {});
  for (const std::string& line : SplitLines(input)) {
    const std::string answer = driver.Answer(line);
    if (answer.empty()) continue;
    if (answer.find('\n') != std::string::npos || !nlohmann::json::accept(answer)) std::abort();
  }
  return 0;
}
