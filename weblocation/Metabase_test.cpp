#include "weblocation/Metabase.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// A metabase in memory that writes down what is asked of it.
class TestMetabase {
 public:
  struct Node {
    std::vector<std::string> kinds;  // one answer after the other; the last one stays
    std::string path;
  };

  void Add(const std::string& path, const std::string& kind, const std::string& physical = {}) {
    nodes_[path] = {{kind}, physical};
  }
  void AddChanging(const std::string& path, std::vector<std::string> kinds) {
    nodes_[path] = {std::move(kinds), "D:\\x"};
  }

  std::string Resolve(const std::string& url, std::int32_t site = 1) {
    return ResolveInMetabase(url, site, "BUILDER", [this](const std::string& path) { return Bind(path); });
  }
  std::string Complaint(const std::string& url) {
    try {
      return "resolved to " + Resolve(url);
    } catch (const Exception& e) {
      return e.Message();
    }
  }
  const std::vector<std::string>& Asked() const { return asked_; }

 private:
  struct Object final : ComObject {
    explicit Object(Node& node) : node_(node) {}
    std::string GetText(const std::string& property) override {
      if (property == "Path") return node_.path;
      if (property != "class") throw Exception("no property " + property);
      std::string kind = node_.kinds.front();
      if (node_.kinds.size() > 1) node_.kinds.erase(node_.kinds.begin());
      return kind;
    }
    Node& node_;
  };

  std::unique_ptr<ComObject> Bind(const std::string& path) {
    asked_.push_back(path);
    const auto node = nodes_.find(path);
    if (node == nodes_.end()) return nullptr;
    return std::make_unique<Object>(node->second);
  }

  std::map<std::string, Node> nodes_;
  std::vector<std::string> asked_;
};

constexpr const char* kNothingFound = "Unable to resolve to physical path - no object found";

TEST(Metabase, GivesTheFolderOfAVirtualDirectory) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site", "IIsWebVirtualDir", "D:\\Web\\Site");
  EXPECT_EQ(metabase.Resolve("http://localhost/Site/App.csproj"), "D:\\Web\\Site\\App.csproj");
  EXPECT_EQ(metabase.Asked(), std::vector<std::string>{"IIS://localhost/w3svc/1/ROOT/Site"});
}

TEST(Metabase, AsksForTheGivenSite) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/17/ROOT/Site", "IIsWebVirtualDir", "D:\\Web");
  EXPECT_EQ(metabase.Resolve("http://localhost/Site/App.csproj", 17), "D:\\Web\\App.csproj");
}

TEST(Metabase, AsksForTheRootWithoutItsSlash) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT", "IIsWebVirtualDir", "C:\\Inetpub\\wwwroot");
  EXPECT_EQ(metabase.Resolve("http://localhost/App.csproj"), "C:\\Inetpub\\wwwroot\\App.csproj");
}

TEST(Metabase, EndsThePathInASlashWhereTheUrlHasNone) {
  TestMetabase metabase;
  metabase.Add("IIS:///w3svc/1/ROOT/", "IIsWebVirtualDir", "C:\\Web");
  EXPECT_EQ(metabase.Resolve("App.csproj"), "\\\\\\C$\\Web\\App.csproj");
}

TEST(Metabase, WalksUpFromAFolderToItsVirtualDirectory) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site/A/B", "IIsWebDirectory");
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site/A", "IIsWebDirectory");
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site", "IIsWebVirtualDir", "D:\\Web\\Site");
  EXPECT_EQ(metabase.Resolve("http://localhost/Site/A/B/App.csproj"), "D:\\Web\\Site\\A\\B\\App.csproj");
  const std::vector<std::string> asked{"IIS://localhost/w3svc/1/ROOT/Site/A/B",
                                       "IIS://localhost/w3svc/1/ROOT/Site/A",
                                       "IIS://localhost/w3svc/1/ROOT/Site"};
  EXPECT_EQ(metabase.Asked(), asked);
}

TEST(Metabase, WalksUpToTheRoot) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site", "IIsWebDirectory");
  metabase.Add("IIS://localhost/w3svc/1/ROOT", "IIsWebVirtualDir", "C:\\Inetpub\\wwwroot");
  EXPECT_EQ(metabase.Resolve("http://localhost/Site/App.csproj"), "C:\\Inetpub\\wwwroot\\Site\\App.csproj");
}

TEST(Metabase, ComplainsAboutAnUnknownNode) {
  TestMetabase metabase;
  EXPECT_EQ(metabase.Complaint("http://localhost/Site/App.csproj"), kNothingFound);
}

TEST(Metabase, ComplainsAboutAnUnknownNodeOnTheWayUp) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site/A", "IIsWebDirectory");
  EXPECT_EQ(metabase.Complaint("http://localhost/Site/A/App.csproj"), kNothingFound);
}

TEST(Metabase, StopsWhereNoSlashIsLeft) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site", "IIsWebDirectory");
  metabase.Add("IIS://localhost/w3svc/1/ROOT", "IIsWebServer");
  EXPECT_EQ(metabase.Complaint("http://localhost/Site/App.csproj"), kNothingFound);
  EXPECT_EQ(metabase.Asked().size(), 2u);
}

TEST(Metabase, ComparesTheClassExactly) {
  TestMetabase metabase;
  metabase.Add("IIS://localhost/w3svc/1/ROOT/Site", "IISWEBVIRTUALDIR", "D:\\Web");
  metabase.Add("IIS://localhost/w3svc/1/ROOT", "IIsWebVirtualDir", "C:\\Root");
  EXPECT_EQ(metabase.Resolve("http://localhost/Site/App.csproj"), "C:\\Root\\Site\\App.csproj");
}

TEST(Metabase, LeavesTheLabelOfTheOriginalUriWithoutText) {
  TestMetabase metabase;
  metabase.AddChanging("IIS://localhost/w3svc/1/ROOT/Site", {"IIsWebVirtualDir", "IIsWebFile"});
  EXPECT_EQ(metabase.Complaint("http://localhost/Site/App.csproj"),
            "Unable to resolve to physical path - found IIsWebFile\rOriginal IIS uri: ");
}

TEST(Metabase, GoesThroughTheAdministrativeShareOfAnotherServer) {
  TestMetabase metabase;
  metabase.Add("IIS://web1/w3svc/1/ROOT/Site", "IIsWebVirtualDir", "D:\\Web\\Site");
  EXPECT_EQ(metabase.Resolve("http://web1/Site/App.csproj"), "\\\\web1\\D$\\Web\\Site\\App.csproj");
}

TEST(Metabase, ReplacesTheFirstColonOnly) {
  TestMetabase metabase;
  metabase.Add("IIS://web1/w3svc/1/ROOT/Site", "IIsWebVirtualDir", "D:\\Web:2");
  EXPECT_EQ(metabase.Resolve("http://web1/Site/a:b.csproj"), "\\\\web1\\D$\\Web:2\\a:b.csproj");
}

TEST(Metabase, ComparesTheMachineNameExactlyAndLocalhostInAnyLetterCase) {
  TestMetabase metabase;
  for (const char* host : {"BUILDER", "Builder", "LocalHost"}) {
    metabase.Add(std::string("IIS://") + host + "/w3svc/1/ROOT/S", "IIsWebVirtualDir", "D:\\S");
  }
  EXPECT_EQ(metabase.Resolve("http://BUILDER/S/A.csproj"), "D:\\S\\A.csproj");
  EXPECT_EQ(metabase.Resolve("http://LocalHost/S/A.csproj"), "D:\\S\\A.csproj");
  EXPECT_EQ(metabase.Resolve("http://Builder/S/A.csproj"), "\\\\Builder\\D$\\S\\A.csproj");
}

}  // namespace
}  // namespace qx
