// The files of web projects, projects known only by their URL: how the updater finds them, and fetches and
// puts back those that it cannot open in their place. One object for one run over a list of projects.
#pragma once

#include <memory>
#include <string>

#include "plugin/Qxwebdavclient.h"
#include "versioning/Qxassemblyinfo.h"

namespace qx {

// Failures are raised as Exception, as weblocation/Qxresolveiisdirectory.h says.
class WebProjects {
 public:
  explicit WebProjects(ProjectLocationSettings settings) : settings_(std::move(settings)) {}
  // Disconnects.
  ~WebProjects();
  WebProjects(const WebProjects&) = delete;
  WebProjects& operator=(const WebProjects&) = delete;

  // The local path of the project file behind a URL, by the detection method; empty for a method that is none.
  std::string FindProjectFile(const std::string& url);

  // Whether a project's other files have to be fetched, one by one, and put back.
  bool AreFetched() const;
  // Fetches the file that the project file found last refers to, and gives its local path.
  std::string Fetch(const std::string& reference);
  // Puts a fetched file back into the folder that the reference leads to.
  void Put(const std::string& localFile, const std::string& reference);

 private:
  std::string RemoteFolderOf(const std::string& reference) const;

  ProjectLocationSettings settings_;
  std::unique_ptr<TQXWebDavClient> client_;  // none before the first project that needs it
  std::string remoteBase_;                   // the project file's folder on the server
};

}  // namespace qx
