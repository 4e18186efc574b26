#include "pages/Qxmstestframe.h"

#include <memory>

#include "actions/Qxmstestaction.h"
#include "pages/ActionOf.h"
#include "pages/Browsing.h"

namespace qx {
namespace {

// All three say so, although none is a directory or holds devenv.com: users know the page by it
// (docs/deliberate.md).
constexpr const char* kHint = "The directory where devenv.com is installed.";

// The output file too is picked by a dialog that opens files (docs/deliberate.md).
void OfferFiles(TButtonEdit& edit, const char* filter) {
  edit.hint = kHint;
  AddFileButton(edit, filter);
}

}  // namespace

TMSTestFrame::TMSTestFrame() {
  OfferFiles(txtAssemblyFilename_, "Assemblies (*.dll, *.exe)|*.dll;*.exe");
  OfferFiles(txtConfigFileName_, "Config Files (*.testrunconfig)|*.testrunconfig");
  OfferFiles(txtOutputFileName_, "Output File (*.trx)|*.trx");
}

const TFrameClass& TMSTestFrame::Class() {
  static constexpr TFrameClass record{
      "TMSTestFrame", []() -> std::unique_ptr<TFrame> { return std::make_unique<TMSTestFrame>(); }};
  return record;
}

void TMSTestFrame::ReadActionData(TPersistent& object) {
  const auto& action = ActionOf<TQXMSTestAction>(object);
  txtAssemblyFilename_.SetText(action.GetAssemblyFileName());
  txtConfigFileName_.SetText(action.GetConfigFileName());
  txtOutputFileName_.SetText(action.GetOutputFileName());
}

void TMSTestFrame::WriteActionData(TPersistent& object) {
  auto& action = ActionOf<TQXMSTestAction>(object);
  action.SetAssemblyFileName(txtAssemblyFilename_.Text());
  action.SetConfigFileName(txtConfigFileName_.Text());
  action.SetOutputFileName(txtOutputFileName_.Text());
}

}  // namespace qx
