// The page "Settings" of "Run MSTest": the three files that MSTest.exe is given.
#pragma once

#include <string>

#include "pages/Page.h"

namespace qx {

class TMSTestFrame final : public Page<TFrame> {
 public:
  TMSTestFrame();
  static const TFrameClass& Class();

  std::string PageName() const override { return "Settings"; }
  // Both take a TQXMSTestAction and raise Exception for anything else.
  void ReadActionData(TPersistent& object) override;
  void WriteActionData(TPersistent& object) override;

 private:
  TLabel& grpSettings_ = Heading("grpSettings", "MS Test Options");
  TLabel& lblAssemblyFilename_ = Add<TLabel>("lblAssemblyFilename", "Assembly file name");
  TButtonEdit& txtAssemblyFilename_ = Beside<TButtonEdit>(lblAssemblyFilename_, 0, "txtAssemblyFilename");
  TLabel& lblConfigFileName_ = Add<TLabel>("lblConfigFileName", "Configuration file name");
  TButtonEdit& txtConfigFileName_ = Beside<TButtonEdit>(lblConfigFileName_, 1, "txtConfigFileName");
  TLabel& lblOutputFileName_ = Add<TLabel>("lblOutputFileName", "Output file name");
  TButtonEdit& txtOutputFileName_ = Beside<TButtonEdit>(lblOutputFileName_, 2, "txtOutputFileName");
};

}  // namespace qx
