// The page of the package's global settings: where each Visual Studio and MSTest.exe lie, and which version a
// new action uses.
#pragma once

#include <string>

#include "pages/Page.h"

namespace qx {

class TVSDotNetOptionsFrame final : public Page<TQXOptionsFrame> {
 public:
  TVSDotNetOptionsFrame();
  static const TFrameClass& Class();

  std::string GetPageName() const override { return ""; }
  // Both take a TVSDotNetOptions and raise Exception for anything else.
  void ReadOptions(TQXOptionsObject& object) override;
  // Of a location that names devenv.exe or devenv.com the folder is kept, in the edit too.
  void WriteOptions(TQXOptionsObject& object) override;

 private:
  TLabel& grpLocations_ = Heading("grpLocations", "Visual Studio Locations");
  TLabel& lblMSDevLocation_ = Add<TLabel>("lblMSDevLocation", "Visual Studio 2002 (devenv.com) Location :");
  TButtonEdit& txtMSDevLocation_ = Beside<TButtonEdit>(lblMSDevLocation_, 0, "txtMSDevLocation");
  TLabel& lblMSDev2003Location_ =
      Add<TLabel>("lblMSDev2003Location", "Visual Studio 2003 (devenv.com) Location :");
  TButtonEdit& txtMSDev2003Location_ = Beside<TButtonEdit>(lblMSDev2003Location_, 1, "txtMSDev2003Location");
  TLabel& lblMSDev2005Location_ =
      Add<TLabel>("lblMSDev2005Location", "Visual Studio 2005 (devenv.com) Location :");
  TButtonEdit& txtMSDev2005Location_ = Beside<TButtonEdit>(lblMSDev2005Location_, 5, "txtMSDev2005Location");

  TLabel& grpDefaultVersion_ = Heading("grpDefaultVersion", "Default Visual Studio Version");
  TRadioButton& rbVS2002_ = Stop<TRadioButton>(2, "rbVS2002", "Visual Studio 2002");
  TRadioButton& rbVS2003_ = Stop<TRadioButton>(3, "rbVS2003", "Visual Studio 2003");
  TRadioButton& rbVS2005_ = Stop<TRadioButton>(4, "rbVS2005", "Visual Studio 2005");

  TLabel& grpMSTest_ = Heading("grpMSTest", "MSTest Location");
  TButtonEdit& txtMSTestLoc_ = Stop<TButtonEdit>(6, "txtMSTestLoc");
};

}  // namespace qx
