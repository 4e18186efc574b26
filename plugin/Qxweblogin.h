// Who may put files back on a web server that a run changed them on: an optional interface that an action class may
// implement besides TQXAction. An action without it works as ever; the host knows no names.
#pragma once

#include <optional>
#include <string>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct WebLogin {
  std::string userName, password;
};

// Implemented by an action class; asked by the host with WebLoginOf. The current folder is the build project's.
class IQXWebLogin : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{4E8A17C2-D05B-4963-B7F1-62C3A90E5D84}");
  using Base = IInterface;

  // With what the action comes to the file of that address ("http://server:8080/Site/a.cs"); none where it has
  // nothing to do with that server. Raises Exception when a password cannot be decrypted. While no run is under way.
  virtual std::optional<WebLogin> GetWebLogin(const std::string& url) = 0;

 protected:
  ~IQXWebLogin() = default;
};

// The action's logins; null for an action that has none.
inline IQXWebLogin* WebLoginOf(TQXAction& action) { return dynamic_cast<IQXWebLogin*>(&action); }

}  // namespace qx
