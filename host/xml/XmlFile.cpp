#include "host/xml/XmlFile.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "platform/MarkupEntity.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
// Far deeper than any file of the host's; keeps a hostile one from exhausting the stack.
constexpr int kDeepest = 100;
constexpr int kMostAttributes = 100;
constexpr std::string_view kPercent = "percent";

// kNoCodePoint is none.
bool IsXmlCharacter(char32_t code) {
  return code == '\t' || code == '\n' || code == '\r' ||
         (code >= 0x20 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF) && code != 0xFFFE &&
          code != 0xFFFF);
}

// Where the first byte stands that XML cannot hold; npos when there is none.
std::size_t FindForbidden(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    if (!IsXmlCharacter(NextCodePoint(text, at))) return begin;
  }
  return std::string_view::npos;
}

// Appends what &NAME; stands for; false when nobody knows.
bool AppendReference(std::string& out, std::string_view name) {
  struct Entity {
    std::string_view name;
    char character;
  };
  constexpr Entity entities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const Entity& entity : entities) {
    if (name != entity.name) continue;
    out += entity.character;
    return true;
  }
  if (name.size() < 2 || name[0] != '#') return false;
  const bool hex = name[1] == 'x';
  const std::string_view digits = name.substr(hex ? 2 : 1);
  std::uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size() || !IsXmlCharacter(code)) return false;
  AppendUtf8(out, code);
  return true;
}

// Character data as written -> the text it stands for. Raw line ends become LF, as XML wants them read
// (docs/deliberate.md).
std::string Unescape(std::string_view raw) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\r') {
      if (i + 1 == raw.size() || raw[i + 1] != '\n') out += '\n';
    } else if (raw[i] == '&') {
      const std::size_t end = raw.find(';', i);
      const std::string_view name = raw.substr(i + 1, end == raw.npos ? 0 : end - i - 1);
      if (!AppendReference(out, name))
        throw Exception("\"&" + std::string(name) + "\" begins no known character");
      i = end;
    } else {
      out += raw[i];
    }
  }
  return out;
}

// A text -> character data that Unescape, and any XML reader, gives back unchanged.
std::string Escape(std::string_view text, bool attribute) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (const char c : text) {
    const std::string_view entity = MarkupEntity(c);
    if (!attribute && (c == '"' || c == '\n' || c == '\t')) {
      out += c;
    } else if (c == '\r' || c == '\n' || c == '\t') {
      out += "&#" + std::to_string(int{c}) + ";";
    } else if (!entity.empty()) {
      out += entity;
    } else {
      out += c;
    }
  }
  return out;
}

// For what XML cannot hold: no byte of a property is refused or lost (docs/deliberate.md).
std::string PercentEncode(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (c == '\t' || c == '\n' || (byte >= 0x20 && byte < 0x80 && c != '%')) {
      out += c;
    } else {
      out += '%' + UpperHex(byte, 2);
    }
  }
  return out;
}

std::optional<std::string> PercentDecode(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      out += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const int high = HexDigit(text[i + 1]);
    const int low = HexDigit(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    out += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return out;
}

bool IsText(pugi::xml_node node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

void WriteAttributes(std::string& out, pugi::xml_node node) {
  for (const pugi::xml_attribute attribute : node.attributes()) {
    // As written: a value that holds a double quote stood between single ones.
    const char quote = std::strchr(attribute.value(), '"') != nullptr ? '\'' : '"';
    out.append(" ").append(attribute.name()).append("=");
    out += quote;
    out += attribute.value();
    out += quote;
  }
}

void WriteNode(std::string& out, pugi::xml_node node) {
  switch (node.type()) {
    case pugi::node_pcdata:
      out += node.value();
      return;
    case pugi::node_cdata:
      out.append("<![CDATA[").append(node.value()).append("]]>");
      return;
    case pugi::node_comment:
      out.append("<!--").append(node.value()).append("-->");
      return;
    case pugi::node_doctype:
      out.append("<!DOCTYPE ").append(node.value()).append(">");
      return;
    case pugi::node_pi:
      out.append("<?").append(node.name()).append(*node.value() ? " " : "").append(node.value()).append("?>");
      return;
    case pugi::node_declaration:
      out.append("<?").append(node.name());
      WriteAttributes(out, node);
      out += "?>";
      return;
    default:
      break;
  }
  out.append("<").append(node.name());
  WriteAttributes(out, node);
  if (!node.first_child()) {
    out += "/>";
    return;
  }
  out += ">";
  for (const pugi::xml_node child : node.children()) WriteNode(out, child);
  out.append("</").append(node.name()).append(">");
}

// What is wrong with a node that the parser let pass; empty when nothing is.
std::string FindFault(pugi::xml_node node) {
  int count = 0;
  for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
    if (++count > kMostAttributes) return "an element has too many attributes";
    for (pugi::xml_attribute b = a.next_attribute(); b; b = b.next_attribute()) {
      if (std::strcmp(a.name(), b.name()) == 0)
        return "the attribute \"" + std::string(a.name()) + "\" stands twice";
    }
    if (std::strchr(a.value(), '<') != nullptr) return "an attribute's value holds a \"<\"";
  }
  return "";
}

// Visits every node, never recursing: the depth is not known yet.
struct Checker : pugi::xml_tree_walker {
  std::string fault;
  pugi::xml_node where;
  bool for_each(pugi::xml_node& node) override {
    fault = depth() > kDeepest ? "elements are nested too deeply" : FindFault(node);
    where = node;
    return fault.empty();
  }
};

std::size_t LineAt(std::string_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  const std::string_view before = text.substr(0, offset);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

[[noreturn]] void Refuse(const std::string& file, std::size_t line, const std::string& reason) {
  throw XmlFault(line == 0 ? file + ": " + reason : file + "(" + std::to_string(line) + "): " + reason);
}

bool SameWord(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

bool XmlFile::IsBlankText(pugi::xml_node node) {
  return node.type() == pugi::node_pcdata &&
         std::string_view(node.value()).find_first_not_of(" \t\r\n") == std::string_view::npos;
}

XmlFile XmlFile::Parse(std::string text, std::string file, std::string_view root) {
  XmlFile xml;
  xml.file_ = std::move(file);
  xml.original_ = std::move(text);
  xml.markSize_ = std::string_view(xml.original_).starts_with(kMark) ? kMark.size() : 0;
  xml.document_ = std::make_unique<pugi::xml_document>();
  const std::string_view body = std::string_view(xml.original_).substr(xml.markSize_);
  if (const std::size_t bad = FindForbidden(body); bad != body.npos) {
    Refuse(xml.file_, LineAt(body, bad), "a byte stands here that is no UTF-8 text or that XML forbids");
  }
  // Everything is kept, and nothing is unescaped: that happens when a text is asked for.
  constexpr unsigned keepAll = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata |
                               pugi::parse_ws_pcdata | pugi::parse_declaration | pugi::parse_doctype |
                               pugi::parse_fragment;
  const pugi::xml_parse_result result =
      xml.document_->load_buffer(body.data(), body.size(), keepAll, pugi::encoding_utf8);
  if (!result) {
    Refuse(xml.file_, LineAt(body, static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0))),
           std::string("malformed XML: ") + result.description());
  }
  Checker checker;
  xml.document_->traverse(checker);
  if (!checker.fault.empty()) xml.Complain(checker.where, "malformed XML: " + checker.fault);

  for (const pugi::xml_node node : xml.document_->children()) {
    if (IsText(node) && !IsBlankText(node))
      xml.Complain(node, "malformed XML: text outside the root element");
    if (node.type() == pugi::node_declaration) {
      const std::string_view encoding = node.attribute("encoding").as_string("utf-8");
      if (!SameWord(encoding, "utf-8") && !SameWord(encoding, "us-ascii")) {
        xml.Complain(node,
                     "the encoding \"" + std::string(encoding) + "\" is declared; save the file as UTF-8");
      }
    }
    if (node.type() != pugi::node_element) continue;
    if (xml.root_)
      xml.Complain(node, "malformed XML: a second root element <" + std::string(node.name()) + ">");
    xml.root_ = node;
  }
  const std::string wanted(root);
  if (!xml.root_) Refuse(xml.file_, 1, "no XML element stands here; wanted <" + wanted + " version=\"1\">");
  if (root != xml.root_.name()) {
    xml.Complain(xml.root_, "<" + std::string(xml.root_.name()) + "> stands here; wanted <" + wanted + ">");
  }
  if (xml.AttributeOf(xml.root_, "version").value_or("") != "1") {
    xml.Complain(xml.root_, "the version of <" + wanted + "> is \"" + xml.root_.attribute("version").value() +
                                "\"; this program knows version \"1\"");
  }
  const std::size_t lineEnd = body.find('\n');
  if (lineEnd != body.npos && lineEnd > 0 && body[lineEnd - 1] == '\r') xml.newLine_ = "\r\n";
  return xml;
}

std::string XmlFile::Text() const {
  if (!changed_) return original_;
  std::string out = original_.substr(0, markSize_);
  out.reserve(original_.size() + original_.size() / 8);
  for (const pugi::xml_node node : document_->children()) WriteNode(out, node);
  return out;
}

std::size_t XmlFile::LineOf(pugi::xml_node node) const {
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset < 0) return 0;
  return LineAt(std::string_view(original_).substr(markSize_), static_cast<std::size_t>(offset));
}

XmlFault::~XmlFault() = default;

void XmlFile::Complain(pugi::xml_node node, const std::string& reason) const {
  Refuse(file_, LineOf(node), reason);
}

std::string XmlFile::TextOf(pugi::xml_node element) const {
  std::string text;
  try {
    for (const pugi::xml_node child : element.children()) {
      if (child.type() == pugi::node_pcdata) text += Unescape(child.value());
      if (child.type() == pugi::node_cdata) text += child.value();
    }
  } catch (const Exception& fault) {
    Complain(element, fault.Message());
  }
  const std::optional<std::string> encoding = AttributeOf(element, kEncodingName);
  if (!encoding) return text;
  const std::optional<std::string> bytes = *encoding == kPercent ? PercentDecode(text) : std::nullopt;
  if (!bytes) Complain(element, "the text is not in the encoding \"" + *encoding + "\"");
  return *bytes;
}

void XmlFile::SetText(pugi::xml_node element, std::string_view text) {
  changed_ = true;
  const bool holds = FindForbidden(text) == text.npos;
  const std::string written = Escape(holds ? std::string(text) : PercentEncode(text), false);
  if (holds) {
    element.remove_attribute(kEncodingName);
  } else {
    SetAttribute(element, kEncodingName, kPercent);
  }
  pugi::xml_node place;
  for (pugi::xml_node child = element.first_child(), next; child; child = next) {
    next = child.next_sibling();
    if (!IsText(child)) continue;
    if (!place && child.type() == pugi::node_pcdata && !written.empty()) {
      place = child;
    } else {
      element.remove_child(child);
    }
  }
  if (written.empty()) return;
  if (!place) place = element.prepend_child(pugi::node_pcdata);
  place.set_value(written.c_str());
}

std::optional<std::string> XmlFile::AttributeOf(pugi::xml_node element, const char* name) const {
  const pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) return std::nullopt;
  try {
    return Unescape(attribute.value());
  } catch (const Exception& fault) {
    Complain(element, std::string(name) + ": " + fault.Message());
  }
}

void XmlFile::SetAttribute(pugi::xml_node element, const char* name, std::string_view value) {
  if (FindForbidden(value) != value.npos)
    Refuse(file_, 0, std::string(name) + " holds a character that XML forbids");
  changed_ = true;
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) attribute = element.append_attribute(name);
  attribute.set_value(Escape(value, true).c_str());
}

void XmlFile::RemoveAttribute(pugi::xml_node element, const char* name) {
  if (element.remove_attribute(name)) changed_ = true;
}

pugi::xml_node XmlFile::FindChild(pugi::xml_node parent, const char* name, const char* attribute,
                                  std::string_view value) const {
  for (const pugi::xml_node child : parent.children(name)) {
    const pugi::xml_attribute found = child.attribute(attribute);
    const std::string_view raw = found.value();
    // Nearly every value is written as it is.
    const bool isPlain = raw.find_first_of("&\r") == raw.npos;
    if (found && (isPlain ? raw == value : AttributeOf(child, attribute) == value)) return child;
  }
  return {};
}

}  // namespace qx
