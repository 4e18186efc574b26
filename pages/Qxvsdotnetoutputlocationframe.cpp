#include "pages/Qxvsdotnetoutputlocationframe.h"

#include <limits>
#include <memory>

#include "actions/Qxvsdotnetaction.h"
#include "pages/ActionOf.h"

namespace qx {

TVSDotNetOutputLocationFrame::TVSDotNetOutputLocationFrame() {
  spiWebsiteNumber_.SetRange(1, std::numeric_limits<std::int32_t>::max());
  edtPassword_.masked = true;
}

const TFrameClass& TVSDotNetOutputLocationFrame::Class() {
  static constexpr TFrameClass record{"TVSDotNetOutputLocationFrame", []() -> std::unique_ptr<TFrame> {
                                        return std::make_unique<TVSDotNetOutputLocationFrame>();
                                      }};
  return record;
}

void TVSDotNetOutputLocationFrame::ReadActionData(TPersistent& object) {
  auto& action = ActionOf<TQXCustomVSDotNetAction>(object);
  const VSDotNetSettings& settings = action.Settings();
  const TProjLocDetectMethod method = settings.projLocationDetectMethod;
  if (method == TProjLocDetectMethod::useWMI) rbWMI_.SetChecked(true);
  if (method == TProjLocDetectMethod::useShare) rbNetworkShare_.SetChecked(true);
  if (method == TProjLocDetectMethod::useWebDAV) rbWebDAV_.SetChecked(true);
  edtShare_.SetText(settings.sharePath);
  spiWebsiteNumber_.SetValue(settings.wmiWebsiteNum);
  edtUser_.SetText(settings.webDavUsername);
  edtPassword_.SetText("");
  passwordIsRead_ = false;
  edtPassword_.SetText(action.GetWebDAVPassword());
  passwordIsRead_ = true;
}

void TVSDotNetOutputLocationFrame::WriteActionData(TPersistent& object) {
  auto& action = ActionOf<TQXCustomVSDotNetAction>(object);
  VSDotNetSettings& settings = action.Settings();
  if (rbWMI_.Checked()) settings.projLocationDetectMethod = TProjLocDetectMethod::useWMI;
  if (rbNetworkShare_.Checked()) settings.projLocationDetectMethod = TProjLocDetectMethod::useShare;
  if (rbWebDAV_.Checked()) settings.projLocationDetectMethod = TProjLocDetectMethod::useWebDAV;
  settings.sharePath = edtShare_.Text();
  settings.wmiWebsiteNum = spiWebsiteNumber_.Value();
  settings.webDavUsername = edtUser_.Text();
  if (passwordIsRead_ || !edtPassword_.Text().empty()) action.SetWebDAVPassword(edtPassword_.Text());
}

}  // namespace qx
