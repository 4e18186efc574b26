// The page "Project Detection" of "Build VS.Net Solution": how the files of a web project are found. Nothing
// on it enables or disables anything else.
#pragma once

#include <string>

#include "pages/Page.h"

namespace qx {

class TVSDotNetOutputLocationFrame final : public Page<TFrame> {
 public:
  TVSDotNetOutputLocationFrame();
  static const TFrameClass& Class();

  std::string PageName() const override { return "Project Detection"; }
  int GetHelpContext() const override { return 1300; }
  // Both take a TQXCustomVSDotNetAction and raise Exception for anything else. What belongs to the methods
  // that are not chosen is written too, so that it is there when the user comes back to them. A kept password
  // that cannot be decrypted here raises Exception on reading, last of all, and stays unless another is typed.
  void ReadActionData(TPersistent& object) override;
  void WriteActionData(TPersistent& object) override;

 private:
  TLabel& grpDetection_ = Heading("grpDetection", "Web Project Location Detection");
  TRadioButton& rbWMI_ = Stop<TRadioButton>(0, "rbWMI", "Use WMI - Specify website number");
  TSpinEdit& spiWebsiteNumber_ = Beside<TSpinEdit>(rbWMI_, 6, "spiWebsiteNumber");
  TRadioButton& rbNetworkShare_ =
      Stop<TRadioButton>(1, "rbNetworkShare", "Use Network Share - specify share name");
  TEdit& edtShare_ = Beside<TEdit>(rbNetworkShare_, 3, "edtShare");
  TRadioButton& rbWebDAV_ = Stop<TRadioButton>(2, "rbWebDAV", "Use WebDAV");
  TLabel& lblUser_ = Add<TLabel>("lblUser", "Username");
  TEdit& edtUser_ = Beside<TEdit>(lblUser_, 4, "edtUser");
  TLabel& lblPassword_ = Add<TLabel>("lblPassword", "Password");
  TEdit& edtPassword_ = Beside<TEdit>(lblPassword_, 5, "edtPassword");
  TLabel& lblNote_ =
      Add<TLabel>("lblNote",
                  "Project Location detection is only required if Assembly Info requires updating, \r\n"
                  "and the project is a web project ");

  bool passwordIsRead_ = false;
};

}  // namespace qx
