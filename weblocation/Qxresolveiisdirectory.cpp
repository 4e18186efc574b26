#include "weblocation/Qxresolveiisdirectory.h"

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/registry/ComObject.h"
#include "plugin/Qxutils.h"
#include "weblocation/Metabase.h"
#include "weblocation/TemporaryName.h"
#include "weblocation/Url.h"

namespace qx {
namespace {

constexpr std::int32_t kHttpPort = 80;

void AssertClient(const TQXWebDavClient* client) {
  if (client == nullptr) throw Exception("Assertion failure (PlugIns/VStudio.NET/QXResolveIISDirectory)");
}

// One message of several lines, parted by carriage returns as they have always been (docs/deliberate.md).
[[noreturn]] void RaiseTransferError(const TQXWebDavClient& client, const std::string& heading,
                                     const std::string& local, const std::string& remote) {
  throw Exception(heading + client.GetErrorText() + "\r" + local + "\rServername: " + client.host +
                  "\rServerport: " + std::to_string(client.port) + "\rUserID: " + client.userName + "\r" +
                  remote);
}

}  // namespace

std::string GetPhysicalDirFromIISDir(const std::string& url, std::int32_t siteNumber) {
  return ResolveInMetabase(url, siteNumber, MachineName(), BindComObject);
}

// Saved paths have always looked so: slashes between the folders, two backslashes where there is none, no
// port (docs/deliberate.md).
std::string BuildShareName(const std::string& text, const std::string& shareName) {
  const Url url = SplitUrl(text);
  return "\\\\" + url.host + "\\" + shareName + "\\" + TrimSlashes(url.path) + "\\" + url.document;
}

void GetProjectFileUsingWebDAV(TQXWebDavClient* client, const std::string& text, std::string& remoteFolder,
                               std::string& localFile) {
  AssertClient(client);
  const Url url = SplitUrl(text);
  remoteFolder = TrimSlashes(url.path);
  client->host = url.host;
  client->port = ToInteger(url.port).value_or(kHttpPort);
  if (!client->Connect()) throw Exception("Unable to connect using WebDAV : " + client->GetErrorText());
  GetFileUsingWebDAV(client, remoteFolder, url.document, localFile);
}

void GetFileUsingWebDAV(TQXWebDavClient* client, const std::string& remoteFolder, const std::string& fileName,
                        std::string& localFile) {
  AssertClient(client);
  RequireTemporaryName(fileName);
  RequireRemoteFolder(remoteFolder);
  localFile = GetTemporaryPath() + "\\" + fileName;
  try {
    RemoveFile(localFile);
  } catch (const Exception&) {
    // What cannot be removed fails the download, with its reason.
  }
  const std::string remoteFile = "/" + remoteFolder + "/" + fileName;
  if (client->DownloadFile(remoteFile, localFile)) return;
  RaiseTransferError(*client, "Error retrieving file with WebDAV: ", "Download filename: " + localFile,
                     "Requested file: " + remoteFile);
}

void PutFileUsingWebDAV(TQXWebDavClient* client, const std::string& localFile,
                        const std::string& remoteFolder) {
  AssertClient(client);
  RequireRemoteFolder(remoteFolder);
  const std::string remotePath = "/" + remoteFolder + "/";
  if (client->UploadFile(localFile, remotePath)) return;
  RaiseTransferError(*client, "Error uploading file with WebDAV: ", "Local filename: " + localFile,
                     "Remote Path: " + remotePath);
}

}  // namespace qx
