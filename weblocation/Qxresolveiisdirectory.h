// Web project location: the three ways to the files of a project that a solution names by its URL - the
// metabase of the web server, a network share, WebDAV. Plain functions without state; the rules of the
// metabase stand in Metabase.h. Failures are raised as Exception, nothing is logged or retried, and no
// message holds a password.
#pragma once

#include <cstdint>
#include <string>

#include "plugin/Qxwebdavclient.h"

namespace qx {

// The path of the URL's document on the server's disk, by the metabase of the web site of that number; for
// another computer the path through its administrative share. Outside Windows no metabase can be asked.
std::string GetPhysicalDirFromIISDir(const std::string& url, std::int32_t siteNumber);

// "\\HOST\SHARE\FOLDERS\DOCUMENT". The slashes between the folders stay "/", which Windows accepts and saved
// paths have always shown (docs/deliberate.md).
std::string BuildShareName(const std::string& url, const std::string& shareName);

// The caller makes the client, sets user name and password before, and disconnects it afterwards. A null
// client raises an assertion failure.

// Connects to the URL's server and fetches its document; sets the folder on the server, without slashes
// around it, and the local copy, a file in the host's temporary folder.
void GetProjectFileUsingWebDAV(TQXWebDavClient* client, const std::string& url, std::string& remoteFolder,
                               std::string& localFile);
// Fetches one file. A name that is no plain file name, and a folder that leads upwards, are refused.
void GetFileUsingWebDAV(TQXWebDavClient* client, const std::string& remoteFolder, const std::string& fileName,
                        std::string& localFile);
// Puts a file into the folder on the server, under its own name.
void PutFileUsingWebDAV(TQXWebDavClient* client, const std::string& localFile,
                        const std::string& remoteFolder);

}  // namespace qx
