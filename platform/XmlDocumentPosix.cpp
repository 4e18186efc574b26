#include <pugixml.hpp>

#include <algorithm>

#include "platform/XmlDocument.h"
#include "platform/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct XmlElement::Access {
  static pugi::xml_node Node(const XmlElement& element) {
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(element.node_));
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

XmlDocument::XmlDocument() : state_(std::make_unique<State>()) {}
XmlDocument::~XmlDocument() = default;

void XmlDocument::Parse(std::string& bytes) {
  const XmlDeclaration declaration = ReadXmlDeclaration(bytes);
  pugi::xml_encoding encoding = pugi::encoding_auto;
  if (declaration.size > 0) {
    encoding = pugi::encoding_utf8;
    const LegacyEncoding* legacy = FindLegacyEncoding(declaration.encoding);
    if (legacy != nullptr && !IsAscii(bytes)) bytes = system::DecodeLegacy(*legacy, bytes);
  }
  // Elements and attribute values are all that is asked for: no texts, comments or instructions are kept.
  constexpr unsigned kFlags = pugi::parse_minimal | pugi::parse_escapes;
  const pugi::xml_parse_result result =
      state_->document.load_buffer_inplace(bytes.data(), bytes.size(), kFlags, encoding);
  if (result) return;
  state_->document.reset();
  throw Exception(result.description());
}

XmlElement XmlDocument::Root() const { return XmlElement::Access::Make(state_->document.document_element()); }

}  // namespace qx
