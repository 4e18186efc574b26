// Reads real project files that nobody of this house wrote. They lie in ../shared/corpus beside the source,
// or in $QX_CORPUS.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>

#include "platform/files/Files.h"
#include "platform/xml/XmlDocument.h"
#include "projects/vc/VcAttributes.h"
#include "projects/vc/VcSettings.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> ProjectFiles() {
  const char* named = std::getenv("QX_CORPUS");
  const fs::path folder = named != nullptr ? fs::path(named) : fs::path(QX_SOURCE_DIR) / "../shared/corpus";
  std::vector<std::string> found;
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(folder, missing)) {
    if (entry.path().extension() == ".vcproj") found.push_back(entry.path().string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

// Every attribute of a file by its element, the tools by their names.
void Collect(const XmlElement& element, std::map<std::string, std::set<std::string>>& found) {
  std::string name = element.Name();
  const bool isTool = name == "Tool";
  if (isTool) name = element.Attribute("Name");
  for (const auto& [attribute, value] : element.Attributes()) {
    if (!isTool || attribute != "Name") found[name].insert(attribute);
  }
  for (XmlElement child = element.FirstChild(); child; child = child.NextSibling()) Collect(child, found);
}

TEST(VcCorpus, EveryConfigurationOfEveryProjectIsWorkedOut) {
  const std::vector<std::string> files = ProjectFiles();
  if (files.empty()) GTEST_SKIP() << "no real projects beside the source: set QX_CORPUS";
  std::map<std::string, int> counts;
  for (const std::string& file : files) {
    std::string bytes = ReadFile(file);
    const VcProject project = ReadVcProject(bytes);
    EXPECT_FALSE(project.configurations.empty()) << file;
    for (const VcConfiguration& configuration : project.configurations) {
      const VcOutput output =
          OutputOfVcProject(PlaceOnDisk(file, "", configuration.name, configuration.platform));
      EXPECT_NE(output.path.empty(), output.reason.empty()) << file << ": " << output.path << output.reason;
      ++counts[output.reason.empty() ? "known" : output.reason.substr(0, 28)];
    }
    counts["files listed"] += static_cast<int>(project.files.size());
  }
  std::cout << files.size() << " projects\n";
  for (const auto& [what, count] : counts) std::cout << count << " " << what << "\n";
  EXPECT_GT(counts["known"], 0);
}

TEST(VcCorpus, EveryAttributeIsKnown) {
  if (ProjectFiles().empty()) GTEST_SKIP() << "no real projects beside the source: set QX_CORPUS";
  std::map<std::string, std::set<std::string>> found;
  for (const std::string& file : ProjectFiles()) {
    std::string bytes = ReadFile(file);
    XmlDocument document;
    document.Parse(bytes);
    Collect(document.Root(), found);
  }
  std::map<VcUse, int> counts;
  for (const auto& [element, attributes] : found) {
    for (const std::string& attribute : attributes) {
      const VcAttribute* known = FindVcAttribute(element, attribute);
      EXPECT_NE(known, nullptr) << element << " " << attribute;
      if (known != nullptr) ++counts[known->use];
    }
  }
  std::cout << "attributes seen: " << counts[VcUse::Followed] << " followed, " << counts[VcUse::Partly]
            << " partly, " << counts[VcUse::Ignored] << " ignored with the reason, " << counts[VcUse::Refused]
            << " refused\n";
  EXPECT_GT(counts[VcUse::Followed], 0);
}

TEST(VcAttributes, DocumentHasTheTable) {
  const std::string file = std::string(QX_SOURCE_DIR) + "/docs/vcproj.md";
  std::string text = ReadFile(file);
  std::erase(text, '\r');
  EXPECT_NE(text.find(VcAttributesAsMarkdown()), std::string::npos) << file << " is to hold this table:\n"
                                                                    << VcAttributesAsMarkdown();
}

}  // namespace
}  // namespace qx
