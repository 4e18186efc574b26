#include <pugixml.hpp>

#include <algorithm>

#include "platform/Texts.h"
#include "platform/xml/XmlCheck.h"
#include "platform/xml/XmlDocument.h"
#include "platform/xml/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct XmlElement::Access {
  static pugi::xml_node Node(const XmlElement& element) {
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(element.node_));
  }
  // The first element from `node` on, among its siblings.
  static XmlElement Find(pugi::xml_node node) {
    while (node && node.type() != pugi::node_element) node = node.next_sibling();
    return Make(node);
  }
  static XmlElement Make(const pugi::xml_node& node) { return {nullptr, node.internal_object()}; }
};

struct XmlDocument::State {
  pugi::xml_document document;
};

std::string XmlElement::Name() const { return Access::Node(*this).name(); }
std::string XmlElement::Attribute(const char* name) const {
  return Access::Node(*this).attribute(name).value();
}
XmlElement XmlElement::FirstChild(const char* name) const {
  return Access::Make(Access::Node(*this).child(name));
}
XmlElement XmlElement::NextSibling(const char* name) const {
  return Access::Make(Access::Node(*this).next_sibling(name));
}
XmlElement XmlElement::FirstChild() const { return Access::Find(Access::Node(*this).first_child()); }
XmlElement XmlElement::NextSibling() const { return Access::Find(Access::Node(*this).next_sibling()); }

std::vector<std::pair<std::string, std::string>> XmlElement::Attributes() const {
  std::vector<std::pair<std::string, std::string>> all;
  for (const pugi::xml_attribute& attribute : Access::Node(*this).attributes()) {
    all.emplace_back(attribute.name(), attribute.value());
  }
  return all;
}

std::string XmlElement::Text() const {
  std::string text;
  for (const pugi::xml_node& child : Access::Node(*this).children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
  }
  return Trim(text);
}

XmlDocument::XmlDocument() : state_(std::make_unique<State>()) {}
XmlDocument::~XmlDocument() = default;

namespace {

// In UTF-16 a file begins with a mark, or is known by its first two characters. Half of a character at its end is
// passed over.
std::string FromUtf16(std::string_view bytes) {
  const bool isMarked = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
  const std::size_t high = bytes[0] == '\0' || bytes[0] == '\xFE' ? 0 : 1;
  if (isMarked) bytes.remove_prefix(2);
  std::u16string wide(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[2 * i + at]); };
    wide[i] = static_cast<char16_t>(byte(high) << 8 | byte(1 - high));
  }
  return ToUtf8(wide);
}

void Decode(std::string& bytes) {
  using namespace std::string_view_literals;
  const auto begins = [&](std::string_view with) { return bytes.starts_with(with); };
  const bool isWide = begins("\xFF\xFE") || begins("\xFE\xFF") || begins("<\0?\0"sv) || begins("\0<\0?"sv);
  if (isWide) {
    bytes = FromUtf16(bytes);
  } else {
    DecodeDeclaredLegacy(bytes);
  }
  const std::size_t mark = begins("\xEF\xBB\xBF") ? 3 : 0;
  const std::string_view name = DeclaredEncoding(std::string_view(bytes).substr(mark));
  if (name.empty() || SameText(name, "utf-8") || SameText(name, "utf8")) return;
  if (isWide ? SameText(name, "utf-16") : FindLegacyEncoding(name) != nullptr)
    return;  // a mark goes before a name
  throw Exception("the file is not in the encoding that it declares, or nobody knows that one: " +
                  std::string(name.substr(0, 40)));
}

}  // namespace

void XmlDocument::Parse(std::string& bytes, XmlTexts texts) {
  state_->document.reset();
  Decode(bytes);
  CheckXml(bytes);
  // Elements and attribute values are all that is mostly asked for; comments and instructions are never kept.
  constexpr unsigned kFlags = pugi::parse_minimal | pugi::parse_escapes;
  constexpr unsigned kTexts = pugi::parse_cdata | pugi::parse_eol;
  const unsigned flags = texts == XmlTexts::Kept ? kFlags | kTexts : kFlags;
  const pugi::xml_parse_result result =
      state_->document.load_buffer_inplace(bytes.data(), bytes.size(), flags, pugi::encoding_utf8);
  if (result) return;
  state_->document.reset();
  throw Exception(result.description());
}

XmlElement XmlDocument::Root() const { return XmlElement::Access::Make(state_->document.document_element()); }

}  // namespace qx
