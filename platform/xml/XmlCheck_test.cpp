#include "platform/xml/XmlCheck.h"

#include <gtest/gtest.h>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Empty where there is none.
std::string Fault(const std::string& text) {
  try {
    CheckXml(text);
    return "";
  } catch (const Exception& fault) {
    return fault.Message();
  }
}

struct Case {
  const char* text;
  const char* fault;
};
class XmlCheckFaults : public testing::TestWithParam<Case> {};

TEST_P(XmlCheckFaults, AreNamedWithTheirLine) { EXPECT_EQ(Fault(GetParam().text), GetParam().fault); }

INSTANTIATE_TEST_SUITE_P(
    Texts, XmlCheckFaults,
    testing::Values(
        Case{"", "there is no element (line 1)"}, Case{"<a>\n<b>\n", "the element b is not closed (line 3)"},
        Case{"<a>\r\n</b>", "the end tag b stands where a is open (line 2)"},
        Case{"<a/>\n</a>", "the end tag a has no start tag (line 2)"},
        Case{"<a/>\n<b/>", "a second outermost element (line 2)"},
        Case{"<a/>\nb", "text outside of the outermost element (line 2)"},
        Case{"<a\n b='' b=''/>", "the attribute b stands twice (line 2)"},
        Case{"<a b='<'/>", "\"<\" in a value (line 1)"},
        Case{"<a b='1' c=2/>", "a value without quotes (line 1)"},
        Case{"<a b='1", "a value is not closed (line 1)"},
        Case{"<a b/>", "\"=\" is missing behind a name (line 1)"},
        Case{"<a b='1'c='2'/>", "a blank or \">\" is missing in the tag a (line 1)"},
        Case{"<a>&b;</a>", "an entity that is not known (line 1)"},
        Case{"<a>&#x0;</a>", "a reference to no character (line 1)"},
        Case{"<a>]]></a>", "\"]]>\" in a text (line 1)"},
        Case{"<a>\x02</a>", "a character that no file may hold: U+0002 (line 1)"},
        Case{"<a>\xE4</a>", "bytes that are no text in the file's encoding (line 1)"},
        Case{"<a><1/></a>",
             "a name is missing or begins with a character that it cannot begin with (line 1)"},
        Case{"<a></a", "\">\" is missing in an end tag (line 1)"},
        Case{"<a><!-- -- --></a>", "\">\" is missing behind \"--\" in a comment (line 1)"},
        Case{"<a><!-- ", "a comment is not closed (line 1)"},
        Case{"<a><![CDATA[ ]", "a section of characters is not closed (line 1)"},
        Case{"<a><?b ", "an instruction is not closed (line 1)"},
        Case{"<a><?b+?></a>", "a blank is missing in an instruction (line 1)"},
        Case{"\n<?xml version='1.0'?><a/>", "a declaration that is not the file's beginning (line 2)"},
        Case{"<!DOCTYPE a><a/>", "a document type is not allowed (line 1)"},
        Case{"<!a><a/>", "markup that begins with \"<!\" (line 1)"},
        Case{"<?xml version='1.1'?><a/>", "the declaration says no version, or another than 1.0 (line 1)"},
        Case{"<?xml version='1.0' encoding=''?><a/>", "an encoding whose name is none (line 1)"},
        Case{"<?xml version='1.0' standalone='1'?><a/>", "standalone is neither yes nor no (line 1)"},
        Case{"<?xml version='1.0' a='b'?><a/>",
             "the declaration holds more than a version, an encoding and standalone, or is not closed (line "
             "1)"},
        Case{"<a b:c=''/>", "the prefix b is not declared (line 1)"},
        Case{"<a xmlns:b=''/>", "a namespace without a name (line 1)"},
        Case{"<a xmlns:b='c'><b:d:e/></a>", "the name b:d:e has its colon in a wrong place (line 1)"},
        Case{"<a xmlns:b='c'><b:1/></a>", "the name b:1 has its colon in a wrong place (line 1)"}));

class XmlCheckSound : public testing::TestWithParam<const char*> {};

TEST_P(XmlCheckSound, HasNoFault) { EXPECT_EQ(Fault(GetParam()), ""); }

INSTANTIATE_TEST_SUITE_P(
    Texts, XmlCheckSound,
    testing::Values(
        "<a/>",
        "\xEF\xBB\xBF<?xml version='1.0' encoding='b' standalone='yes' ?>\r\n<a b = '\"'\tc=\"'\" />\n",
        "<a b='&lt;&#65;&#xE4;>]]>'>&amp;&apos;]] ></a >", "<!-- - - <b> --><a/>",
        "<a><!-- - & < ]]> --><![CDATA[ <b> & ]] ]> -- ]]><?c d?><?e?></a><!----><?f?>",
        "<Ä\xC2\xB7ö ü.-_1=''></Ä\xC2\xB7ö>", "<a xmlns:b='c' b:d=''><b:e xmlns:b='f'/><b:e/></a>",
        "<a xml:lang='de' xmlns='b'/>"));

TEST(XmlCheck, TheSecondOfManyAttributesIsFoundToo) {
  std::string tag = "<a";
  for (int i = 0; i < 1000; ++i) tag += " b" + std::to_string(i) + "=''";
  EXPECT_EQ(Fault(tag + "/>"), "");
  EXPECT_EQ(Fault(tag + " b31=''/>"), "the attribute b31 stands twice (line 1)");
  EXPECT_EQ(Fault(tag + " b999=''/>"), "the attribute b999 stands twice (line 1)");
}

TEST(XmlCheck, ALongNameIsShownInPart) {
  std::string name = "x", shown;
  for (int i = 0; i < 1000; ++i) name += "ä";
  shown = name.substr(0, 79) + "...";
  EXPECT_EQ(Fault("<" + name + ">"), "the element " + shown + " is not closed (line 1)");
}

TEST(XmlCheck, APrefixEndsWithItsElement) {
  EXPECT_EQ(Fault("<a><b xmlns:c='d'><c:e/></b><c:e/></a>"), "the prefix c is not declared (line 1)");
  EXPECT_EQ(Fault("<a xmlns:c='d'><b xmlns:c='e'/><c:f/></a>"), "");
}

TEST(XmlCheck, DepthIsBounded) {
  const auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<a>";
    for (int i = 0; i < depth; ++i) text += "</a>";
    return Fault(text);
  };
  EXPECT_EQ(nested(256), "");
  EXPECT_EQ(nested(257), "elements lie in each other more than 256 deep (line 1)");
}

}  // namespace
}  // namespace qx
