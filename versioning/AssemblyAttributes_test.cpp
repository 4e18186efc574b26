#include "versioning/AssemblyAttributes.h"

#include <gtest/gtest.h>

#include <map>

namespace qx {
namespace {

using Values = std::map<AssemblyAttribute, std::string>;

struct Stamped {
  std::string text;
  std::vector<std::string> log;
};

Stamped Stamp(std::string_view text, const Values& values, std::string_view extension = ".cs") {
  Stamped result;
  result.text = StampAssemblyInfo(
      text, extension,
      [&](AssemblyAttribute attribute) {
        const auto found = values.find(attribute);
        return found == values.end() ? std::nullopt : std::optional(found->second);
      },
      [](const std::string& value, std::string_view) { return value; },
      [&](const std::string& line) { result.log.push_back(line); });
  return result;
}

std::string StampText(std::string_view text, const Values& values, std::string_view extension = ".cs") {
  return Stamp(text, values, extension).text;
}

// One line stamped with a title of "NEW".
std::string Title(const std::string& line) {
  const std::string text = StampText(line, {{AssemblyAttribute::Title, "NEW"}});
  return text.substr(0, text.find("\r\n"));
}

const Values kTitle = {{AssemblyAttribute::Title, "T"}};

TEST(AssemblyAttributeTable, KnowsEightNamesInTwoForms) {
  const std::pair<const char*, AssemblyAttribute> rows[] = {
      {"AssemblyTitle", AssemblyAttribute::Title},
      {"AssemblyDescription", AssemblyAttribute::Description},
      {"AssemblyCompany", AssemblyAttribute::Company},
      {"AssemblyProduct", AssemblyAttribute::Product},
      {"AssemblyCopyright", AssemblyAttribute::Copyright},
      {"AssemblyTrademark", AssemblyAttribute::Trademark},
      {"AssemblyFileVersion", AssemblyAttribute::FileVersion},
      {"AssemblyVersion", AssemblyAttribute::Version},
  };
  for (const auto& [name, attribute] : rows) {
    EXPECT_EQ(FindAssemblyAttribute(name), attribute) << name;
    EXPECT_EQ(FindAssemblyAttribute(std::string(name) + "Attribute"), attribute) << name;
    EXPECT_EQ(FindAssemblyAttribute(std::string(name) + "Attributes"), std::nullopt) << name;
  }
  for (const char* name :
       {"AssemblyComment", "assemblytitle", "AssemblyCopyRight", "AssemblyTradeMark", "AssemblyConfiguration",
        "VersionAttribute", "AssemblyInformationalVersion", "", "System.Reflection.AssemblyTitle"}) {
    EXPECT_EQ(FindAssemblyAttribute(name), std::nullopt) << name;
  }
}

TEST(AssemblyStamp, EveryAttributeGetsItsOwnValue) {
  const std::string before =
      "[assembly: AssemblyTitle(\"\")]\r\n[assembly: AssemblyDescription(\"\")]\r\n"
      "[assembly: AssemblyCompany(\"\")]\r\n[assembly: AssemblyProduct(\"\")]\r\n"
      "[assembly: AssemblyCopyright(\"\")]\r\n[assembly: AssemblyTrademark(\"\")]\r\n"
      "[assembly: AssemblyFileVersion(\"\")]\r\n[assembly: AssemblyVersion(\"\")]\r\n";
  const std::string after =
      "[assembly: AssemblyTitle(\"t\")]\r\n[assembly: AssemblyDescription(\"d\")]\r\n"
      "[assembly: AssemblyCompany(\"c\")]\r\n[assembly: AssemblyProduct(\"p\")]\r\n"
      "[assembly: AssemblyCopyright(\"r\")]\r\n[assembly: AssemblyTrademark(\"m\")]\r\n"
      "[assembly: AssemblyFileVersion(\"1.2\")]\r\n[assembly: AssemblyVersion(\"3.4\")]\r\n";
  EXPECT_EQ(StampText(before, {{AssemblyAttribute::Title, "t"},
                               {AssemblyAttribute::Comment, "never"},
                               {AssemblyAttribute::Description, "d"},
                               {AssemblyAttribute::Company, "c"},
                               {AssemblyAttribute::Product, "p"},
                               {AssemblyAttribute::Copyright, "r"},
                               {AssemblyAttribute::Trademark, "m"},
                               {AssemblyAttribute::FileVersion, "1.2"},
                               {AssemblyAttribute::Version, "3.4"}}),
            after);
}

TEST(AssemblyStamp, KeepsEachLanguagesBrackets) {
  EXPECT_EQ(Title("[assembly: AssemblyTitle(\"x\")]"), "[assembly: AssemblyTitle(\"NEW\")]");
  EXPECT_EQ(Title("<Assembly: AssemblyTitle(\"x\")>"), "<Assembly: AssemblyTitle(\"NEW\")>");
  EXPECT_EQ(Title("<Assembly: AssemblyTitle(\"x\")> _"), "<Assembly: AssemblyTitle(\"NEW\")> _");
  EXPECT_EQ(Title("[assembly:AssemblyTitleAttribute(\"a\")];"),
            "[assembly: AssemblyTitleAttribute(\"NEW\")];");
  EXPECT_EQ(Title("[ASSEMBLY   :x]\r\n[ assembly:   AssemblyTitle  (  \"a\")] // tail"), "[ASSEMBLY   :x]");
  EXPECT_EQ(Title("[ assembly:   AssemblyTitle  (  \"a\")] // tail (\"x\")"),
            "[ assembly: AssemblyTitle(\"NEW\")] // tail (\"x\")");
  EXPECT_EQ(Title("\t[assembly: AssemblyTitle(\"x\")]"), "\t[assembly: AssemblyTitle(\"NEW\")]");
}

TEST(AssemblyStamp, BlanksBeforeTheClosingParenthesisGo) {
  EXPECT_EQ(Title("[ assembly: AssemblyTitle( \"x\" ) ]"), "[ assembly: AssemblyTitle(\"NEW\") ]");
}

TEST(AssemblyStamp, UnquotedValuesRunToTheLastParenthesis) {
  EXPECT_EQ(Title("[assembly: AssemblyTitle(Ids.Title)]"), "[assembly: AssemblyTitle(NEW)]");
  EXPECT_EQ(Title("[assembly: AssemblyTitle( F(1, (2)) )];"), "[assembly: AssemblyTitle(NEW)];");
  EXPECT_EQ(Title("[assembly: AssemblyTitle(@\"x\")]"), "[assembly: AssemblyTitle(NEW)]");
  EXPECT_EQ(Title("[assembly: AssemblyTitle()]"), "[assembly: AssemblyTitle(NEW)]");
}

// The character behind the quote goes, whatever it is; these are the shapes that the rule breaks.
TEST(AssemblyStamp, OneCharacterBehindTheQuoteGoes) {
  EXPECT_EQ(Title("[assembly: AssemblyTitle(\"x\" + \"y\")]"), "[assembly: AssemblyTitle(\"NEW\")+ \"y\")]");
  EXPECT_EQ(Title("[assembly: AssemblyTitle(\"x\", 1)]"), "[assembly: AssemblyTitle(\"NEW\") 1)]");
  EXPECT_EQ(Title("[assembly: AssemblyTitle(\"say \\\"x\\\"\")]"),
            "[assembly: AssemblyTitle(\"NEW\")\\\"\")]");
  EXPECT_EQ(Title("[assembly: AssemblyTitle(\"x\""), "[assembly: AssemblyTitle(\"NEW\")");
}

TEST(AssemblyStamp, LeavesLinesThatAreNoWholeAttribute) {
  for (const std::string line :
       {"[assembly: AssemblyTitle]", "[assembly: AssemblyTitle(", "[assembly: AssemblyTitle(  \t",
        "[assembly: AssemblyTitle(\"x", "[assembly: AssemblyTitle(\"", "[assembly: AssemblyTitle(@\"x",
        "[assembly:", "assembly:", ")assembly: AssemblyTitle(x", "[assembly AssemblyTitle(\"x\")]",
        "[module: AssemblyTitle(\"x\")]", "/** @assembly AssemblyTitle(\"x\") */", ":",
        "[assembly: AssemblyTitleX(\"x\")]", "[assembly: assemblytitle(\"x\")]",
        "[assembly: System.Reflection.AssemblyTitle(\"x\")]",
        "[assembly:Utils::VersionAttribute(\"S\", 1)];"}) {
    EXPECT_EQ(Title(line), line);
  }
}

TEST(AssemblyStamp, TheFirstColonEndsThePrefix) {
  EXPECT_EQ(Title("[a::b] [assembly: AssemblyTitle(\"x\")]"), "[a::b] [assembly: AssemblyTitle(\"x\")]");
  EXPECT_EQ(Title(":assembly: AssemblyTitle(\"x\")"), ":assembly: AssemblyTitle(\"NEW\")");
  EXPECT_EQ(Title("assembly: AssemblyTitle(\"x\")]"), "assembly: AssemblyTitle(\"NEW\")]");
}

TEST(AssemblyStamp, OnlyTheFirstAttributeOfALine) {
  EXPECT_EQ(StampText("[assembly: AssemblyTitle(\"a\")][assembly: AssemblyCompany(\"b\")]\r\n",
                      {{AssemblyAttribute::Title, "T"}, {AssemblyAttribute::Company, "C"}}),
            "[assembly: AssemblyTitle(\"T\")][assembly: AssemblyCompany(\"b\")]\r\n"
            "[assembly: AssemblyCompany(\"C\")][assembly: AssemblyCompany(\"b\")]\r\n");
}

TEST(AssemblyStamp, EveryLineOfANameIsUpdated) {
  EXPECT_EQ(StampText("#if A\r\n[assembly: AssemblyTitle(\"a\")]\r\n#else\r\n[assembly: "
                      "AssemblyTitle(\"b\")]\r\n#endif\r\n",
                      kTitle),
            "#if A\r\n[assembly: AssemblyTitle(\"T\")]\r\n#else\r\n[assembly: "
            "AssemblyTitle(\"T\")]\r\n#endif\r\n");
}

TEST(AssemblyStamp, ValuesAreTextNotPatterns) {
  const std::string value = "$1 \\1 & %x% \"quoted\" \\\\ (a) [b]: assembly:";
  EXPECT_EQ(StampText("[assembly: AssemblyTitle(\"x\")]\r\n", {{AssemblyAttribute::Title, value}}),
            "[assembly: AssemblyTitle(\"" + value + "\")]\r\n");
}

TEST(AssemblyStamp, AttributesThatAreNotUpdatedStay) {
  const std::string text = "[assembly:AssemblyTitle( \"x\" )]\r\n";
  EXPECT_EQ(StampText(text, {{AssemblyAttribute::Version, "1.0"}}),
            text + "[assembly: AssemblyVersion(\"1.0\")]\r\n");
  EXPECT_EQ(StampText(text, {}), text);
}

TEST(AssemblyStamp, LineEndsBecomeCrLf) {
  EXPECT_EQ(StampText("a\nb\rc\r\n\nd", {}), "a\r\nb\r\nc\r\n\r\nd\r\n");
  EXPECT_EQ(StampText("", {}), "");
  EXPECT_EQ(StampText("\n", {}), "\r\n");
}

TEST(AssemblyStamp, LogsWhatItDoes) {
  const Stamped stamped = Stamp("[assembly: AssemblyTitleAttribute(\"x\")]\r\n",
                                {{AssemblyAttribute::Title, "T"}, {AssemblyAttribute::Company, "C"}}, ".CPP");
  EXPECT_EQ(stamped.log, (std::vector<std::string>{"Processing Entry : AssemblyTitleAttribute",
                                                   "Adding Entry : AssemblyCompany Value : C"}));
}

TEST(AssemblyStampMissing, AreAppendedInBitOrderInTheLastLinesStyle) {
  EXPECT_EQ(
      StampText("[assembly: X(1)]\r\n<Assembly:Y(\"y\")>\r\nend", {{AssemblyAttribute::Version, "1.0"},
                                                                   {AssemblyAttribute::Title, "t"},
                                                                   {AssemblyAttribute::FileVersion, "2.0"},
                                                                   {AssemblyAttribute::Description, "d"},
                                                                   {AssemblyAttribute::Company, "c"},
                                                                   {AssemblyAttribute::Product, "p"}}),
      "[assembly: X(1)]\r\n<Assembly:Y(\"y\")>\r\nend\r\n"
      "<Assembly: AssemblyTitle(\"t\")>\r\n<Assembly: AssemblyCompany(\"c\")>\r\n"
      "<Assembly: AssemblyDescription(\"d\")>\r\n<Assembly: AssemblyProduct(\"p\")>\r\n"
      "<Assembly: AssemblyFileVersion(\"2.0\")>\r\n<Assembly: AssemblyVersion(\"1.0\")>\r\n");
}

// Deliberate: their names in the list of added entries are spelled otherwise than in the table.
TEST(AssemblyStampMissing, CopyrightTrademarkAndCommentAreNeverAdded) {
  const std::string text = "[assembly: AssemblyTitle(\"x\")]\r\n";
  EXPECT_EQ(StampText(text, {{AssemblyAttribute::Copyright, "c"},
                             {AssemblyAttribute::Trademark, "m"},
                             {AssemblyAttribute::Comment, "n"}}),
            text);
}

// Deliberate: a comment attribute has no row.
TEST(AssemblyStamp, CommentAttributesAreNeverRewritten) {
  const std::string text = "[assembly: AssemblyComment(\"x\")]\r\n";
  EXPECT_EQ(StampText(text, {{AssemblyAttribute::Comment, "n"}}), text);
}

TEST(AssemblyStampMissing, CppNamesEndInAttribute) {
  for (const std::string extension : {".cpp", ".CPP", ".Cpp"}) {
    EXPECT_EQ(StampText("[assembly:X(\"x\")];\r\n", kTitle, extension),
              "[assembly:X(\"x\")];\r\n[assembly: AssemblyTitleAttribute(\"T\")];\r\n");
  }
  EXPECT_EQ(StampText("[assembly:X(\"x\")];\r\n", kTitle, ".h"),
            "[assembly:X(\"x\")];\r\n[assembly: AssemblyTitle(\"T\")];\r\n");
}

TEST(AssemblyStampMissing, AddedValuesAreAlwaysQuoted) {
  EXPECT_EQ(StampText("[assembly: X(true)]\r\n", kTitle),
            "[assembly: X(true)]\r\n[assembly: AssemblyTitle(\"T\")]\r\n");
}

// Deliberate: the comment line stays, but its "/" opens the entries that are added.
TEST(AssemblyStampMissing, ACommentLinesSlashOpensAddedEntries) {
  EXPECT_EQ(
      StampText("[assembly: X(\"x\")]\r\n// [assembly: AssemblyTitle(\"x\")]\r\n", kTitle),
      "[assembly: X(\"x\")]\r\n// [assembly: AssemblyTitle(\"x\")]\r\n/assembly: AssemblyTitle(\"T\")]\r\n");
}

// Deliberate: only a "/" in the first column makes a comment.
TEST(AssemblyStamp, OtherCommentsAreAttributeLines) {
  EXPECT_EQ(Title("' <Assembly: AssemblyTitle(\"x\")>"), "' <Assembly: AssemblyTitle(\"NEW\")>");
  EXPECT_EQ(Title("  // [assembly: AssemblyTitle(\"x\")]"), "  // [assembly: AssemblyTitle(\"NEW\")]");
}

// Deliberate: without any attribute line added entries begin with the character of code 0.
TEST(AssemblyStampMissing, CodeZeroOpensEntriesWithoutAModel) {
  EXPECT_EQ(StampText("using System;\r\n", kTitle),
            "using System;\r\n" + std::string(1, '\0') + ": AssemblyTitle(\"T\")\r\n");
  EXPECT_EQ(StampText("", kTitle), std::string(1, '\0') + ": AssemblyTitle(\"T\")\r\n");
}

// Deliberate, as a consequence of the two before: what was added is no attribute line, so every run adds it again.
TEST(AssemblyStampMissing, EntriesThatAreNoAttributeLinesComeAgain) {
  const std::string once = StampText("x\r\n", kTitle);
  EXPECT_EQ(StampText(once, kTitle), once + std::string(1, '\0') + ": AssemblyTitle(\"T\")\r\n");
  const std::string slash = StampText("// [assembly: X]\r\n", kTitle);
  EXPECT_EQ(StampText(slash, kTitle), slash + "/: AssemblyTitle(\"T\")\r\n");
}

TEST(AssemblyStampMissing, ALineWithoutParenthesisGivesItsFirstCharacterOnly) {
  EXPECT_EQ(StampText("<Assembly: X(\"x\")>\r\n[assembly: CLSCompliant]\r\n", kTitle),
            "<Assembly: X(\"x\")>\r\n[assembly: CLSCompliant]\r\n[Assembly: AssemblyTitle(\"T\")>\r\n");
}

TEST(AssemblyStamp, NothingLeaksFromOneTextToTheNext) {
  StampText("[assembly: AssemblyTitle(\"x\")];\r\n", kTitle);
  EXPECT_EQ(StampText("<Assembly: X(\"x\")>\r\n", kTitle),
            "<Assembly: X(\"x\")>\r\n<Assembly: AssemblyTitle(\"T\")>\r\n");
  EXPECT_EQ(StampText("x\r\n", kTitle)[3], '\0');
}

TEST(AssemblyStamp, TheSameValuesTwiceChangeNothing) {
  const Values values = {{AssemblyAttribute::Title, "T"}, {AssemblyAttribute::Company, "C"}};
  const std::string once = StampText("// [assembly: X]\n[assembly:AssemblyTitle( Ids.A )]\n", values);
  EXPECT_EQ(StampText(once, values), once);
}

TEST(AssemblyStamp, WhatDoesNotFitEndsIt) {
  const auto refuse = [](const std::string&, std::string_view name) -> std::string {
    throw Exception("refused " + std::string(name));
  };
  const auto value = [](AssemblyAttribute) { return std::optional<std::string>("v"); };
  try {
    StampAssemblyInfo("[assembly: AssemblyCompanyAttribute(\"x\")]", ".cs", value, refuse,
                      [](const std::string&) {});
    FAIL();
  } catch (const Exception& error) {
    EXPECT_EQ(error.Message(), "refused AssemblyCompanyAttribute");
  }
}

TEST(FindWordTest, FindsItInAnyLetterCaseBeforeItsMark) {
  EXPECT_EQ(FindWord("x=\"AssemblyInfo.cs\"", "assemblyinfo", '.'), 3U);
  EXPECT_EQ(FindWord("a.b assemblyinfo ASSEMBLYINFO.", "assemblyinfo", '.'), 17U);
  EXPECT_EQ(FindWord("ssemblyinfo.", "assemblyinfo", '.'), std::string_view::npos);
  EXPECT_EQ(FindWord("", "assemblyinfo", '.'), std::string_view::npos);
}

TEST(WrittenVersions, AreReadInTheFormsOfAllLanguages) {
  const auto both = [](std::string_view text) {
    const WrittenVersions versions = ReadWrittenVersions(text);
    return versions.assembly + " " + versions.file;
  };
  EXPECT_EQ(
      both("[assembly: AssemblyVersion(\"1.2.*\")]\r\n[assembly: AssemblyFileVersion(\"1.2.3.4\")]\r\n"),
      "1.2.* 1.2.3.4");
  EXPECT_EQ(both("<Assembly: AssemblyVersion(\"1.2\")> "), "1.2 ");
  EXPECT_EQ(both("[assembly:AssemblyVersionAttribute( \"1.2\")];"), "1.2 ");
  EXPECT_EQ(both("[assembly: AssemblyTitle(\"1.2\")]"), " ");
  EXPECT_EQ(both(""), " ");
}

TEST(WrittenVersions, AreNotTakenFromComments) {
  const std::string real = "[assembly: AssemblyVersion(\"2.0\")]\n";
  for (const char* comment :
       {"// [assembly: AssemblyVersion(\"1.0.*\")]\n", "   // [assembly: AssemblyVersion(\"1.0.*\")]\n",
        "' <Assembly: AssemblyVersion(\"1.0.*\")>\n", "/* [assembly: AssemblyVersion(\"1.0.*\")] */\n",
        "/*\n[assembly: AssemblyVersion(\"1.0.*\")]\n*/\n"}) {
    EXPECT_EQ(ReadWrittenVersions(comment + real).assembly, "2.0") << comment;
    EXPECT_EQ(ReadWrittenVersions(real + comment).assembly, "2.0") << comment;
  }
}

TEST(WrittenVersions, AreEmptyWhereTheFileDoesNotDecide) {
  EXPECT_EQ(ReadWrittenVersions("[assembly: AssemblyVersion(Versions.Ours)]").assembly, "");
  const std::string one = "[assembly: AssemblyVersion(\"1.0\")]\n",
                    other = "[assembly: AssemblyVersion(\"2.0\")]\n";
  EXPECT_EQ(ReadWrittenVersions("#if A\n" + one + "#else\n" + other + "#endif\n").assembly, "");
  EXPECT_EQ(ReadWrittenVersions(one + other + one).assembly, "");
  EXPECT_EQ(ReadWrittenVersions("#if A\n" + one + "#else\n" + one + "#endif\n").assembly, "1.0");
}

TEST(AssemblyInfoReference, IsTheFirstQuotedNameThatBeginsSo) {
  EXPECT_EQ(AssemblyInfoReference("<Compile Include=\"Properties\\AssemblyInfo.cs\" />"),
            "Properties\\AssemblyInfo.cs");
  EXPECT_EQ(AssemblyInfoReference("RelPath = \"ASSEMBLYINFO.vb\" \"AssemblyInfo.cs\""), "ASSEMBLYINFO.vb");
  EXPECT_EQ(AssemblyInfoReference("AssemblyInfo.cs"), "");
}

}  // namespace
}  // namespace qx
