// The web servers that runs put files on, as restoring comes to them: with the login of an action of the build project.
#pragma once

#include <memory>
#include <string>

#include "host/history/Restore.h"
#include "host/project/OpenProject.h"

namespace qx {

class WebServers final : public ServerFiles {
 public:
  // `project` outlives it; the current folder is the project's.
  explicit WebServers(OpenProject& project);
  ~WebServers();
  WebServers(const WebServers&) = delete;
  WebServers& operator=(const WebServers&) = delete;

  std::string Read(const std::string& url) override;
  void Put(const std::string& url, std::string_view bytes) override;

 private:
  struct Connection;
  OpenProject& project_;
  std::unique_ptr<Connection> connection_;  // the one that was read from last
};

}  // namespace qx
