#include "versioning/LocateWebProject.h"

namespace qx {

std::string LocateWebProject(const std::string& url, const ProjectLocationSettings& settings) {
  const bool isMethod = settings.projLocationDetectMethod >= 0 && settings.projLocationDetectMethod <= 2;
  if (!isMethod) return {};
  throw Exception("Web projects cannot be reached yet, clear the project's tick : " + url);
}

}  // namespace qx
