#include <pugixml.hpp>

#include <algorithm>

#include "platform/Texts.h"
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

void XmlDocument::Parse(std::string& bytes, XmlTexts texts) {
  const XmlDeclaration declaration = ReadXmlDeclaration(bytes);
  pugi::xml_encoding encoding = pugi::encoding_auto;
  if (declaration.size > 0) {
    encoding = pugi::encoding_utf8;
    const LegacyEncoding* legacy = FindLegacyEncoding(declaration.encoding);
    if (legacy != nullptr && !IsAscii(bytes)) bytes = system::DecodeLegacy(*legacy, bytes);
  }
  // Elements and attribute values are all that is mostly asked for; comments and instructions are never kept.
  constexpr unsigned kFlags = pugi::parse_minimal | pugi::parse_escapes;
  constexpr unsigned kTexts = pugi::parse_cdata | pugi::parse_eol;
  const unsigned flags = texts == XmlTexts::Kept ? kFlags | kTexts : kFlags;
  const pugi::xml_parse_result result =
      state_->document.load_buffer_inplace(bytes.data(), bytes.size(), flags, encoding);
  if (result) return;
  state_->document.reset();
  throw Exception(result.description());
}

XmlElement XmlDocument::Root() const { return XmlElement::Access::Make(state_->document.document_element()); }

}  // namespace qx
