#include "host/xml/XmlFile.h"

#include <gtest/gtest.h>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

std::string Fault(const std::string& text) {
  try {
    XmlFile::Parse(text, "a.xml", "R");
  } catch (const Exception& fault) {
    return fault.Message();
  }
  return "accepted";
}

// Sets a text, saves, reads again.
std::string RoundTrip(const std::string& text) {
  XmlFile xml = XmlFile::Parse("<R version='1'><T/></R>", "a.xml", "R");
  xml.SetText(xml.Root().child("T"), text);
  const XmlFile again = XmlFile::Parse(xml.Text(), "a.xml", "R");
  return again.TextOf(again.Root().child("T"));
}

TEST(XmlFile, GivesBackTheBytesWhenNothingWasChanged) {
  const std::string text =
      "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!DOCTYPE R [ <!ENTITY a 'b'> ]>\r\n<R  version = '1' "
      "><a></a></R >\r\n";
  EXPECT_EQ(XmlFile::Parse(text, "a.xml", "R").Text(), text);
}

TEST(XmlFile, KeepsEverythingElseWhenATextIsSet) {
  const std::string before =
      "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!DOCTYPE R [<!ENTITY a 'b'>]>\r\n<?pi  some data?>\r\n"
      "<R version=\"1\"><!-- a & b <c> --><x y='\"' "
      "z=\"&#13;'\">&#x41;&a;<![CDATA[<&>]]></x>\r\n\t<T>old</T></R>\r\n<!--end-->\r\n";
  std::string after = before;
  after.replace(after.find("old"), 3, "n&amp;w");
  after.replace(after.find("<?pi  "), 6, "<?pi ");
  XmlFile xml = XmlFile::Parse(before, "a.xml", "R");
  xml.SetText(xml.Root().child("T"), "n&w");
  EXPECT_EQ(xml.Text(), after);
}

TEST(XmlFile, CarriesEveryByte) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(RoundTrip(all), all);
  for (const std::string& text :
       {std::string("a\r\nb\rc\nd"), std::string("<&>\"'%25]]>"), std::string("  \t "), std::string("\r"),
        std::string(), std::string("gr\xC3\xBC\xC3\x9F"), std::string("caf\xE9 %ROOT%"), std::string("\0", 1),
        std::string("\xEF\xBF\xBF"), std::string("\xED\xA0\x80"), std::string("\xF0\x9F\x98\x80\x7F"),
        std::string("&amp;#13;")}) {
    EXPECT_EQ(RoundTrip(text), text);
  }
}

TEST(XmlFile, WritesWhatXmlCannotHoldWithPercentSigns) {
  XmlFile xml = XmlFile::Parse("<R version='1'><T/></R>", "a.xml", "R");
  xml.SetText(xml.Root().child("T"), "caf\xE9 50%\r\n");
  EXPECT_EQ(xml.Text(), "<R version=\"1\"><T encoding=\"percent\">caf%E9 50%25%0D\n</T></R>");
  xml.SetText(xml.Root().child("T"), "50%");
  EXPECT_EQ(xml.Text(), "<R version=\"1\"><T>50%</T></R>");
}

TEST(XmlFile, ReadsLineEndsAsXmlDoes) {
  // A version control system may turn the file's line ends; a carriage return that matters is a reference.
  const XmlFile xml = XmlFile::Parse("<R version='1'><T>a&#13;\r\nb\r\nc\rd</T></R>", "a.xml", "R");
  EXPECT_EQ(xml.TextOf(xml.Root().child("T")), "a\r\nb\nc\nd");
}

TEST(XmlFile, SetsATextBesideItsComment) {
  XmlFile xml = XmlFile::Parse("<R version='1'><T>o<!--why-->l<![CDATA[d]]></T></R>", "a.xml", "R");
  EXPECT_EQ(xml.TextOf(xml.Root().child("T")), "old");
  xml.SetText(xml.Root().child("T"), "new");
  EXPECT_EQ(xml.Text(), "<R version=\"1\"><T>new<!--why--></T></R>");
}

TEST(XmlFile, IndentsAndEndsNewLinesLikeItsSurroundings) {
  XmlFile xml = XmlFile::Parse("<R version='1'>\r\n    <A/>\r\n</R>\r\n", "a.xml", "R");
  pugi::xml_node a = xml.Root().child("A");
  const pugi::xml_node first = xml.Append(a, "B");
  xml.Append(a, "C");
  xml.Insert(a, first, "D");
  xml.Insert(a, {}, "E");
  EXPECT_EQ(xml.Text(),
            "<R version=\"1\">\r\n    <A>\r\n      <E/>\r\n      <B/>\r\n      <D/>\r\n      <C/>\r\n    "
            "</A>\r\n</R>\r\n");
  for (const char* name : {"E", "B", "C", "D"}) xml.Remove(a.child(name));
  EXPECT_EQ(xml.Text(), "<R version=\"1\">\r\n    <A/>\r\n</R>\r\n");
}

TEST(XmlFile, RefusesWithFileAndLine) {
  EXPECT_EQ(Fault("<R version='1'>\n<a>\n</R>"), "a.xml(3): malformed XML: Start-end tags mismatch");
  EXPECT_EQ(Fault(""), "a.xml(1): no XML element stands here; wanted <R version=\"1\">");
  EXPECT_EQ(Fault("\n<S version='1'/>"), "a.xml(2): <S> stands here; wanted <R>");
  EXPECT_EQ(Fault("<R/>"), "a.xml(1): the version of <R> is \"\"; this program knows version \"1\"");
  EXPECT_EQ(Fault("<R version='2'/>"),
            "a.xml(1): the version of <R> is \"2\"; this program knows version \"1\"");
  EXPECT_EQ(Fault("<R version='1'/>\n<R version='1'/>"),
            "a.xml(2): malformed XML: a second root element <R>");
  EXPECT_EQ(Fault("<R version='1'/>\nrest"), "a.xml(1): malformed XML: text outside the root element");
  EXPECT_EQ(Fault("<R version='1' version='1'/>"),
            "a.xml(1): malformed XML: the attribute \"version\" stands twice");
  EXPECT_EQ(Fault("<R version='1'>\n\n\x01</R>"),
            "a.xml(3): a byte stands here that is no UTF-8 text or that XML forbids");
  EXPECT_EQ(Fault("<R version='1'>\n\xE9</R>"),
            "a.xml(2): a byte stands here that is no UTF-8 text or that XML forbids");
  EXPECT_EQ(Fault("<?xml version='1.0' encoding='windows-1252'?><R version='1'/>"),
            "a.xml(1): the encoding \"windows-1252\" is declared; save the file as UTF-8");
  std::string deep = "<R version='1'>";
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  for (int i = 0; i < 100000; ++i) deep += "</a>";
  EXPECT_EQ(Fault(deep + "</R>"), "a.xml(1): malformed XML: elements are nested too deeply");
}

TEST(XmlFile, RefusesAnUnknownEntityWhenItsTextIsAskedFor) {
  const XmlFile xml =
      XmlFile::Parse("<R version='1'>\n<T>&who;</T>\n<T>&#1;</T><T>A&B</T></R>", "a.xml", "R");
  for (const pugi::xml_node node : xml.Root().children("T")) EXPECT_THROW(xml.TextOf(node), Exception);
  try {
    xml.TextOf(xml.Root().child("T"));
  } catch (const Exception& fault) {
    EXPECT_EQ(fault.Message(), "a.xml(2): \"&who\" begins no known character");
  }
}

}  // namespace
}  // namespace qx
