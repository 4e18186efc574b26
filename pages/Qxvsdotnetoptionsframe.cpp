#include "pages/Qxvsdotnetoptionsframe.h"

#include <memory>

#include "options/Qxvsdotnetoptions.h"
#include "pages/ActionOf.h"
#include "pages/Browsing.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {

TVSDotNetOptionsFrame::TVSDotNetOptionsFrame() {
  for (TButtonEdit* edit : {&txtMSDevLocation_, &txtMSDev2003Location_, &txtMSDev2005Location_}) {
    edit->hint = "The directory where devenv.com is installed.";
    AddFolderButton(*edit, "Devenv.com Location");
  }
  txtMSTestLoc_.hint = "The location of MSTest.exe";
  AddFileButton(txtMSTestLoc_, "MSTest.exe|MSTest.exe");
}

const TFrameClass& TVSDotNetOptionsFrame::Class() {
  static constexpr TFrameClass record{"TVSDotNetOptionsFrame", []() -> std::unique_ptr<TFrame> {
                                        return std::make_unique<TVSDotNetOptionsFrame>();
                                      }};
  return record;
}

void TVSDotNetOptionsFrame::ReadOptions(TQXOptionsObject& object) {
  auto& options = ActionOf<TVSDotNetOptions>(object);
  txtMSDevLocation_.SetText(options.GetDevEnvLocation());
  txtMSDev2003Location_.SetText(options.GetDevEnv2003Location());
  txtMSDev2005Location_.SetText(options.GetDevEnv2005Location());
  const TVSDotNetVersion version = options.GetDefaultVSVersion();
  if (version == TVSDotNetVersion::vs2002) rbVS2002_.SetChecked(true);
  if (version == TVSDotNetVersion::vs2003) rbVS2003_.SetChecked(true);
  if (version == TVSDotNetVersion::vs2005) rbVS2005_.SetChecked(true);
  txtMSTestLoc_.SetText(options.GetMSTestLocation());
}

void TVSDotNetOptionsFrame::WriteOptions(TQXOptionsObject& object) {
  auto& options = ActionOf<TVSDotNetOptions>(object);
  // The whole text is looked at, so a folder that is named like the program is cut back too
  // (docs/deliberate.md).
  for (const char* program : {"devenv.exe", "devenv.com"})
    for (TButtonEdit* edit : {&txtMSDevLocation_, &txtMSDev2003Location_, &txtMSDev2005Location_})
      if (LowerCase(edit->Text()).find(program) != std::string::npos) edit->SetText(FolderPart(edit->Text()));
  options.SetDevEnvLocation(txtMSDevLocation_.Text());
  options.SetDevEnv2003Location(txtMSDev2003Location_.Text());
  options.SetDevEnv2005Location(txtMSDev2005Location_.Text());
  // Without a choice 2005 is stored (docs/deliberate.md).
  options.SetDefaultVSVersion(rbVS2002_.Checked()   ? TVSDotNetVersion::vs2002
                              : rbVS2003_.Checked() ? TVSDotNetVersion::vs2003
                                                    : TVSDotNetVersion::vs2005);
  options.SetMSTestLocation(txtMSTestLoc_.Text());
}

}  // namespace qx
