#include "platform/xml/XmlDocument.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/xml/XmlEncoding.h"

namespace qx {
namespace {

// The attribute "a" of the document element.
std::string AttributeOf(std::string bytes) {
  XmlDocument document;
  document.Parse(bytes);
  return document.Root().Attribute("a");
}

TEST(XmlDocument, WalksElementsByName) {
  std::string bytes = "<?xml version=\"1.0\"?><!-- c --><r><x n='1'/>text<y/><x n='2'><x n='3'/></x></r>";
  XmlDocument document;
  document.Parse(bytes);
  EXPECT_EQ(document.Root().Name(), "r");
  const XmlElement first = document.Root().FirstChild("x");
  const XmlElement second = first.NextSibling("x");
  EXPECT_EQ(first.Attribute("n"), "1");
  EXPECT_EQ(second.Attribute("n"), "2");
  EXPECT_EQ(second.FirstChild("x").Attribute("n"), "3");
  EXPECT_FALSE(second.NextSibling("x"));
  EXPECT_FALSE(document.Root().FirstChild("X"));
  EXPECT_EQ(first.Attribute("missing"), "");
}

TEST(XmlDocument, WalksElementsOfAnyName) {
  std::string bytes = "<!-- before --><r>text<a/>more<!-- none --><b/><a/></r>";
  XmlDocument document;
  document.Parse(bytes, XmlTexts::Kept);
  std::string names;
  for (XmlElement at = document.Root().FirstChild(); at; at = at.NextSibling()) names += at.Name();
  EXPECT_EQ(names, "aba");
}

TEST(XmlDocument, GivesAttributesInTheirOrder) {
  std::string bytes = "<r b=\"1\" a=\"x &amp; y\" c=\"\"/>";
  XmlDocument document;
  document.Parse(bytes);
  const std::vector<std::pair<std::string, std::string>> expected = {{"b", "1"}, {"a", "x & y"}, {"c", ""}};
  EXPECT_EQ(document.Root().Attributes(), expected);
}

TEST(XmlDocument, GivesTextsWhereTheyAreKept) {
  const std::string text = "<r> one &lt;<!-- none --><![CDATA[two & ]]><a>not this</a>three\r\nfour </r>";
  XmlDocument document;
  std::string bytes = text;
  document.Parse(bytes, XmlTexts::Kept);
  EXPECT_EQ(document.Root().Text(), "one <two & three\nfour");
  EXPECT_EQ(document.Root().FirstChild("a").Text(), "not this");
}

TEST(XmlDocument, WhatIsNotThereHoldsNothing) {
  const XmlDocument document;
  EXPECT_FALSE(document.Root());
  EXPECT_EQ(document.Root().Name(), "");
  EXPECT_EQ(document.Root().Attribute("a"), "");
  EXPECT_FALSE(document.Root().FirstChild("a"));
  EXPECT_FALSE(document.Root().NextSibling("a"));
}

TEST(XmlDocument, ParsesAgain) {
  XmlDocument document;
  for (const char* name : {"a", "b"}) {
    std::string bytes = std::string("<") + name + "/>";
    document.Parse(bytes);
    EXPECT_EQ(document.Root().Name(), name);
  }
}

TEST(XmlDocument, DecodesReferences) {
  EXPECT_EQ(AttributeOf("<r a='&lt;&amp;&gt;&quot;&apos;&#65;&#x20AC;'/>"), "<&>\"'A€");
}

TEST(XmlDocument, ReadsUnicode) {
  EXPECT_EQ(AttributeOf("<r a='ä'/>"), "ä");
  EXPECT_EQ(AttributeOf("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><r a='ä'/>"), "ä");
  std::string wide = "\xFF\xFE";
  for (const char16_t c : std::u16string_view(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><r a='ä€'/>")) {
    wide += static_cast<char>(c & 0xFF);
    wide += static_cast<char>(c >> 8);
  }
  EXPECT_EQ(AttributeOf(wide), "ä€");
}

struct Legacy {
  const char* encoding;
  const char* bytes;
  const char* text;
};
class XmlLegacyEncoding : public testing::TestWithParam<Legacy> {};

TEST_P(XmlLegacyEncoding, IsDecoded) {
  const std::string head =
      std::string("<?xml version=\"1.0\" encoding=\"") + GetParam().encoding + "\"?>\r\n";
  EXPECT_EQ(AttributeOf(head + "<r a=\"" + GetParam().bytes + "\"/>"), GetParam().text);
  EXPECT_EQ(AttributeOf(head + "<r a=\"plain\"/>"), "plain")
      << "ASCII alone reads the same in every encoding";
}

INSTANTIATE_TEST_SUITE_P(
    Declared, XmlLegacyEncoding,
    testing::Values(Legacy{"Windows-1252", "\xE4\x80", "ä€"}, Legacy{"windows-1250", "\xB9\xEA", "ąę"},
                    Legacy{"windows-1251", "\xC0\xFF", "Ая"}, Legacy{"windows-1255", "\xE0", "א"},
                    Legacy{"windows-1256", "\xC7", "ا"}, Legacy{"iso-8859-1", "\xE4", "ä"},
                    Legacy{"ISO-8859-15", "\xA4", "€"}, Legacy{"shift_jis", "\x83\x5C\x83\x74", "ソフ"},
                    Legacy{"Shift_JIS", "\x96\x7B", "本"}, Legacy{"gb2312", "\xB7\xAD\xD2\xEB", "翻译"},
                    Legacy{"big5", "\xA4\xA4\xA4\xE5", "中文"}, Legacy{"euc-kr", "\xC7\xD1\xB1\xDB", "한글"},
                    Legacy{"ks_c_5601-1987", "\xC7\xD1", "한"}));

TEST(XmlDocument, ReadsOnBehindAByteThatItsEncodingDoesNotHold) {
  const std::string text = AttributeOf("<?xml version=\"1.0\" encoding=\"shift_jis\"?><r a=\"x\xFF y\"/>");
  EXPECT_TRUE(text.starts_with("x") && text.ends_with(" y")) << text;
}

class XmlMalformed : public testing::TestWithParam<const char*> {};

TEST_P(XmlMalformed, IsRefusedWithAReason) {
  XmlDocument document;
  std::string bytes = GetParam();
  EXPECT_NE(MessageOf([&] { document.Parse(bytes); }), "");
  EXPECT_FALSE(document.Root());
}

INSTANTIATE_TEST_SUITE_P(Texts, XmlMalformed,
                         testing::Values("", "  ", "no markup", "<r>", "<r></s>", "<r a='1></r>", "<r a=1/>",
                                         "<", "<?xml version=\"1.0\"?>", "<r><a></r></a>"));

TEST(XmlDocument, DeepNestingIsReadOrRefusedWithoutHarm) {
  constexpr int kDepth = 200000;
  std::string bytes;
  for (int i = 0; i < kDepth; ++i) bytes += "<a>";
  for (int i = 0; i < kDepth; ++i) bytes += "</a>";
  XmlDocument document;
  try {
    document.Parse(bytes);
    EXPECT_EQ(document.Root().Name(), "a");
  } catch (const std::exception& error) {
    EXPECT_STRNE(error.what(), "");
  }
}

TEST(XmlDocument, FetchesNoEntityAndExpandsNone) {
  const TestFolder folder;
  const std::string secret = folder.Write("secret.txt", "SECRET");
  std::string bytes = "<!DOCTYPE r [<!ENTITY e SYSTEM \"" + secret +
                      "\"><!ENTITY b \"bbbb\"><!ENTITY c \"&b;&b;\">]><r a=\"&c;\">&e;</r>";
  XmlDocument document;
  try {
    document.Parse(bytes);
    const std::string text = document.Root().Attribute("a");
    EXPECT_TRUE(text == "&c;" || text == "bbbbbbbb") << text;
  } catch (const std::exception& error) {
    EXPECT_STRNE(error.what(), "") << "a document type may be refused";
  }
}

TEST(XmlDeclaration, NamesTheEncoding) {
  EXPECT_EQ(DeclaredEncoding("<?xml version=\"1.0\" encoding = 'Big5' ?><r/>"), "Big5");
  EXPECT_EQ(DeclaredEncoding("<?xml version=\"1.0\"?><r encoding='x'/>"), "");
  for (const char* none :
       {"<r/>", "<?xml", "<?xml encoding", "<?xml encoding?>", "<?xml encoding=?>", "<?xml encoding='?>",
        "<?xml encoding='a\nb'?>", "<?xml-stylesheet encoding='big5'?><r/>"}) {
    EXPECT_EQ(DeclaredEncoding(none), "") << none;
  }
}

}  // namespace
}  // namespace qx
