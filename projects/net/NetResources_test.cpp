#include "projects/net/NetResources.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

NetResourceName Name(const std::string& place, const std::string& classOfSource = "",
                     NetLanguage language = NetLanguage::CSharp, NetForm form = NetForm::Attributes) {
  NetProject project;
  project.rootNamespace = "Root";
  project.language = language;
  project.form = form;
  NetFile file;
  file.place = place;
  return NameOfResource(project, file, classOfSource);
}

TEST(NetResources, NameFilesByFolders) {
  EXPECT_EQ(Name("logo.bmp").name, "Root.logo.bmp");
  EXPECT_EQ(Name("Images\\2nd try\\logo.bmp").name, "Root.Images._2nd_try.logo.bmp");
  EXPECT_EQ(Name("..\\shared\\logo.bmp").name, "Root.shared.logo.bmp");
  EXPECT_EQ(Name("Images\\logo.bmp", "", NetLanguage::VisualBasic).name, "Root.logo.bmp");
}

TEST(NetResources, NameResxAfterTheClass) {
  EXPECT_EQ(Name("Forms\\Form1.resx", "Other.Space.MainForm").name, "Other.Space.MainForm.resources");
  EXPECT_EQ(Name("Forms\\Form1.resx").name, "Root.Forms.Form1.resources");
  EXPECT_EQ(Name("Form1.resx", "Inner.Form1", NetLanguage::VisualBasic).name, "Root.Inner.Form1.resources");
}

TEST(NetResources, KnowCultures) {
  const NetResourceName german = Name("Form1.de-AT.resx", "Root.Form1");
  EXPECT_EQ(german.name, "Root.Form1.de-AT.resources");
  EXPECT_EQ(german.culture, "de-AT");
  EXPECT_EQ(Name("Texts.fr.resx").name, "Root.Texts.fr.resources");
  EXPECT_EQ(Name("My.Strings.resx").culture, "");
  EXPECT_EQ(Name("My.Strings.resx").name, "Root.My.Strings.resources");
}

TEST(NetResources, LookForACultureInOtherNamesFrom2005On) {
  EXPECT_EQ(Name("readme.de.txt").culture, "");
  EXPECT_EQ(Name("readme.de.txt").name, "Root.readme.de.txt");
  const NetResourceName newer = Name("readme.de.txt", "", NetLanguage::CSharp, NetForm::MsBuild);
  EXPECT_EQ(newer.culture, "de");
  EXPECT_EQ(newer.name, "Root.readme.txt");
}

TEST(NetResources, TakeCultureNamesOnly) {
  for (const char* name :
       {"A.de.resx", "A.zh-CHS.resx", "A.sr-SP-Cyrl.resx", "A.PT-br.resx", "A.kok-IN.resx"}) {
    EXPECT_NE(CultureOfName(name), "") << name;
  }
  for (const char* name :
       {"A.resx", "A.xx.resx", "A.de-.resx", "A.de-1234.resx", "A..resx", "A.form.resx", "de.resx"}) {
    EXPECT_EQ(CultureOfName(name), "") << name;
  }
}

}  // namespace
}  // namespace qx
