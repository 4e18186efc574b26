// The version numbers that an action keeps, told and set as a person writes them: an optional interface that
// an action class may implement besides TQXAction. An action without it works as ever; the host knows no names.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct ActionVersion {
  std::string name;   // "AssemblyVersion"
  std::string value;  // dotted, "1.2.0.0", as it goes into files; empty where no part is set
};

enum class VersionPart : std::uint8_t { Major, Minor, Build, Revision };

// Implemented by an action class; asked by the host with VersionsOf, on the thread that edits.
class IQXVersions : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{B27F5A90-3D14-4E6C-8A5B-90C1E7D3F246}");
  using Base = IInterface;

  // All that the action keeps, whether it is used or not.
  virtual std::vector<ActionVersion> GetVersions() = 0;
  // Gives all of them this number, "2.1.0.0". Raises Exception for a text that is none of four parts and for
  // a part that is too large, with nothing set.
  virtual void SetVersions(const std::string& dotted) = 0;
  // Raises that part of each by one; the parts behind it become 0. Raises Exception for a part that is no
  // number or would become too large, with nothing set. An empty part and "*" count as 0.
  virtual void BumpVersions(VersionPart part) = 0;
  // What is wrong with a text that a property of that name is to be given, and how it is meant to look: one
  // line. Empty: nothing, or no version.
  virtual std::string WarnOfText(const std::string& property, const std::string& text) = 0;

 protected:
  ~IQXVersions() = default;
};

// The action's versions; null for an action that keeps none.
inline IQXVersions* VersionsOf(TQXAction& action) { return dynamic_cast<IQXVersions*>(&action); }

}  // namespace qx
