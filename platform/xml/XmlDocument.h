// A small window on the system's XML DOM: parse a file's bytes, walk elements, read attributes. No external
// entity is fetched and no document type is acted upon. One document is used on one thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

// An element, copied freely; valid until its document parses again or goes away.
class XmlElement {
 public:
  XmlElement() = default;
  // False past the last element, and for a document without one.
  explicit operator bool() const { return node_ != nullptr; }
  // As written, with its prefix.
  std::string Name() const;
  // The first child element of that exact name, and the next sibling of it.
  XmlElement FirstChild(const char* name) const;
  XmlElement NextSibling(const char* name) const;
  // The same for elements of any name.
  XmlElement FirstChild() const;
  XmlElement NextSibling() const;
  // Empty when there is no such attribute; UTF-8.
  std::string Attribute(const char* name) const;
  // Name and value of each, in document order.
  std::vector<std::pair<std::string, std::string>> Attributes() const;
  // What stands directly in it, without elements and comments and without the blanks around it; UTF-8, line
  // ends are LF. Empty unless the document was parsed with XmlTexts::Kept.
  std::string Text() const;

 private:
  friend class XmlDocument;
  struct Access;
  XmlElement(void* owner, void* node) : owner_(owner), node_(node) {}
  void* owner_ = nullptr;
  void* node_ = nullptr;
};

// Whether the texts between elements are asked for: to keep them costs time and memory.
enum class XmlTexts { Dropped, Kept };

class XmlDocument {
 public:
  XmlDocument();
  ~XmlDocument();
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  // Takes a whole file: UTF-8 or UTF-16, or the legacy encoding that its declaration names. The document may
  // work in the buffer, which has to stay until it parses again and holds nothing of use meanwhile.
  // Raises Exception with the parser's reason alone.
  void Parse(std::string& bytes, XmlTexts texts = XmlTexts::Dropped);

  // The document element; false before a successful Parse.
  XmlElement Root() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
