// XML files that belong to people as much as to the host (build projects, the options store): what the host
// does not touch comes back as it was written - comments, unknown elements, white space, character references
// - and a text of any bytes can be kept. The document is held unescaped-as-written; only the texts that the
// host sets are escaped anew.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <pugixml.hpp>

#include "plugin/Qxtypes.h"

namespace qx {

// A complaint about such a file, "FILE(LINE): reason": the place is told already.
class QX_API XmlFault final : public Exception {
 public:
  using Exception::Exception;
  ~XmlFault() override;
};

class XmlFile {
 public:
  // The attribute of an element whose text is written with percent signs; see SetText.
  static constexpr const char* kEncodingName = "encoding";

  // Reads a document. `file` is the name that errors begin with, "FILE(LINE): reason". Raises XmlFault when
  // the text is not UTF-8, holds a character that XML forbids, is malformed, has not exactly one root element
  // called `root`, or that one's `version` is not "1". A DTD is kept and never read, so no entity of it is
  // known.
  static XmlFile Parse(std::string text, std::string file, std::string_view root);

  // The document; the very bytes that were read as long as nothing was changed.
  std::string Text() const;
  const std::string& File() const { return file_; }
  // Under another name from now on.
  void SetFile(std::string file) { file_ = std::move(file); }
  bool IsChanged() const { return changed_; }

  pugi::xml_node Root() const { return root_; }
  // 1-based; 0 for what was added since.
  std::size_t LineOf(pugi::xml_node node) const;
  // The complaint "FILE(LINE): reason", with the line of the node.
  [[noreturn]] void Complain(pugi::xml_node node, const std::string& reason) const;

  // The text directly inside an element, comments in it left out, line ends as XML reads them (a carriage
  // return is there only as a character reference). Raises XmlFault for an unknown entity.
  std::string TextOf(pugi::xml_node element) const;
  // A text that XML cannot hold (control characters, bytes that are not UTF-8) is written with the attribute
  // encoding="percent": each such byte, each byte above 127 and each percent sign as %XX. TextOf undoes it.
  void SetText(pugi::xml_node element, std::string_view text);

  std::optional<std::string> AttributeOf(pugi::xml_node element, const char* name) const;
  // Raises XmlFault when XML cannot hold the value.
  void SetAttribute(pugi::xml_node element, const char* name, std::string_view value);

  // One that is not there is no error.
  void RemoveAttribute(pugi::xml_node element, const char* name);

  // A new element behind `previous` (null: before everything else) on a line of its own, indented like a
  // child of `parent`; the line ends are the document's.
  pugi::xml_node Insert(pugi::xml_node parent, pugi::xml_node previous, const char* name);
  // A new element behind everything else in `parent`.
  pugi::xml_node Append(pugi::xml_node parent, const char* name);
  // Takes an element out, and the white space before it.
  void Remove(pugi::xml_node element);
  // Puts an element, and the white space before it, behind `previous`, a sibling of it (null: to the front).
  void Move(pugi::xml_node element, pugi::xml_node previous);

  // The three below keep an element together with what is about it: the comments on the lines right above it,
  // and one behind it on its own line.
  // A new element on a line of its own before another one.
  pugi::xml_node InsertBefore(pugi::xml_node element, const char* name);
  // A copy of the element behind it; the comments around it are not copied, those in it are.
  pugi::xml_node Duplicate(pugi::xml_node element);
  // Puts an element before or behind a sibling of it.
  enum class Side { Before, Behind };
  void MoveBlock(pugi::xml_node element, pugi::xml_node other, Side side);

  // The first child element of that name that has the attribute value; null when there is none.
  pugi::xml_node FindChild(pugi::xml_node parent, const char* name, const char* attribute,
                           std::string_view value) const;

 private:
  // From its first node, the white space before it, to its last.
  struct Block {
    pugi::xml_node first;
    pugi::xml_node last;
  };

  XmlFile() = default;
  static bool IsBlankText(pugi::xml_node node);
  static Block BlockOf(pugi::xml_node element);
  std::string Indent(pugi::xml_node element) const;

  std::string file_;
  std::string original_;                          // as it was read, a byte order mark included
  std::unique_ptr<pugi::xml_document> document_;  // on the heap: nodes point into it
  pugi::xml_node root_;
  std::string newLine_ = "\n";
  std::size_t markSize_ = 0;
  bool changed_ = false;
};

}  // namespace qx
