#include "solution/VcprojScan.h"

#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

template <class Visitor>
void ForEachChild(const XmlElement& parent, const char* name, Visitor&& visit) {
  for (XmlElement child = parent.FirstChild(name); child; child = child.NextSibling(name)) visit(child);
}

}  // namespace

std::vector<std::string> ListedResourceScripts(std::string& bytes, XmlDocument& document) {
  try {
    document.Parse(bytes);
  } catch (const Exception& error) {
    throw Exception("Error parsing project file : " + error.Message());
  }
  std::vector<std::string> scripts;
  const XmlElement root = document.Root();
  if (!root || root.Name() != "VisualStudioProject") return scripts;
  // Files outside a filter, or in a filter inside a filter, are not looked at: builds stamp the script that
  // this rule finds (docs/deliberate.md).
  ForEachChild(root, "Files", [&](const XmlElement& files) {
    ForEachChild(files, "Filter", [&](const XmlElement& filter) {
      ForEachChild(filter, "File", [&](const XmlElement& file) {
        std::string path = file.Attribute("RelativePath");
        if (HasExtension(path, ".rc")) scripts.push_back(std::move(path));
      });
    });
  });
  return scripts;
}

}  // namespace qx
