// The assembly attributes of managed projects: the updater that finds the AssemblyInfo file of each chosen project
// of a solution, backs it up, works out the new values and stamps them. The rules for a file's lines stand in
// AssemblyAttributes.h. Everything here runs on the build's thread; failures are raised as Exception.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "plugin/Qxaction.h"
#include "plugin/Qxservices.h"
#include "plugin/Qxstrings.h"
#include "plugin/Qxtypes.h"

namespace qx {

class IVSDotNetSolution;

// The nine attributes, in the order of their bits in the set of entries that a file still lacks.
enum class AssemblyAttribute : std::uint8_t {
  Title,
  Comment,
  Company,
  Description,
  Copyright,
  Trademark,
  Product,
  FileVersion,
  Version
};

// How web projects are found; the action's properties of the same names.
struct ProjectLocationSettings {
  std::int32_t projLocationDetectMethod = 0;  // 0 metabase, 1 share, 2 WebDAV; any other finds nothing
  std::int32_t wmiWebsiteNum = 1;
  std::string sharePath;
  std::string webDavUsername;
  // The password in clear text, asked for when a server is first needed; raises Exception when it cannot be had.
  // Empty: there is none.
  std::function<std::string()> webDavPassword;
};

// What the updater asks of the action. Implemented by the build action, which the host owns: it must outlive
// the updater. Flags and texts are asked for at the moment of use, the location settings once, at creation.
class IAssemblyInfoSource : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{D15C6A93-7E42-4F8B-B0A6-28E3F4970C5D}");
  using Base = IInterface;

  // UpdateAssemblyTitle, UpdateAssemblyComment, ..., UpdateAssemblyVersion.
  virtual bool IsAttributeUpdated(AssemblyAttribute attribute) = 0;
  // AssemblyTitle, AssemblyComment, ..., AssemblyFileVersion, AssemblyVersion as stored: not expanded, the
  // versions joined by "|".
  virtual std::string GetAttributeText(AssemblyAttribute attribute) = 0;
  // LinkAssemblyFileVersionInfo: the file version attribute receives the assembly version.
  virtual bool IsFileVersionLinked() = 0;
  virtual ProjectLocationSettings GetProjectLocation() = 0;
  // The action's ExpandExpression with nested expansion on.
  virtual std::string ExpandText(const std::string& text) = 0;
  // Of the action's context.
  virtual InterfacePtr<IQXApplicationServices> GetServices() = 0;
  // Told of each AssemblyInfo file on disk once it was stamped: not of those that go back to a web server.
  virtual void FileStamped(const std::string& /*path*/, const std::string& /*backup*/, bool /*changed*/) {}

 protected:
  ~IAssemblyInfoSource() = default;
};

// The value that an attribute is to get, expanded and with its bars made points; none for one that is not to be
// updated. Raises Exception when it cannot be expanded.
std::optional<std::string> NewAttributeValue(IAssemblyInfoSource& source, AssemblyAttribute attribute);

class IQXAssemblyInfoUpdater : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{6B2E04F7-91AD-4C36-A5E8-0D7B3C1F8264}");
  using Base = IInterface;

  // Processes every project of the solution, in the order of its project list.
  virtual void UpdateAll() = 0;
  // Processes the projects named by their identifiers, in that order; with a filter only those that are in it
  // too, letter case aside. `filter` may be null. An error ends the run; files already processed stay so.
  virtual void UpdateSelected(const TStringList& projectIds, const TStringList* filter) = 0;

 protected:
  ~IQXAssemblyInfoUpdater() = default;
};

// An updater for one run. Every line of progress is appended to the log.
InterfacePtr<IQXAssemblyInfoUpdater> GetAssemblyInfoUpdater(InterfacePtr<IVSDotNetSolution> solution,
                                                            IAssemblyInfoSource& source,
                                                            InterfacePtr<IQXActionLogMessage> log);

}  // namespace qx
