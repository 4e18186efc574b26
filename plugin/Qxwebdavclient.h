// The host's WebDAV client, by which the files of a web project are fetched and put back.
#pragma once

#include <memory>
#include <string>

#include "plugin/Qxtypes.h"

namespace qx {

// Used on one thread. A password appears in no message.
class QX_API TQXWebDavClient {
 public:
  TQXWebDavClient();
  ~TQXWebDavClient();
  TQXWebDavClient(const TQXWebDavClient&) = delete;
  TQXWebDavClient& operator=(const TQXWebDavClient&) = delete;

  std::string host;
  int port = 80;
  std::string userName;
  std::string password;
  // How long a server may keep silent, while connecting and between two bytes, until an operation fails. The
  // host's setting when the client is made, one minute where nobody set it.
  int timeoutSeconds;

  // Each returns false on failure and tells why in GetErrorText.
  bool Connect();
  void Disconnect();
  // A download appears under its local name whole or not at all.
  bool DownloadFile(const std::string& remotePath, const std::string& localPath);
  bool UploadFile(const std::string& localPath, const std::string& remoteFolder);
  const std::string& GetErrorText() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
