// Elements added, taken out, moved and copied, with the white space and the comments that go with them.
#include <algorithm>
#include <cstddef>
#include <vector>

#include "host/xml/XmlFile.h"

namespace qx {
namespace {

std::ptrdiff_t LineEndsIn(pugi::xml_node space) {
  const std::string_view text = space.value();
  return std::count(text.begin(), text.end(), '\n');
}

bool IsComment(pugi::xml_node node) { return node.type() == pugi::node_comment; }

}  // namespace

// The blanks between the last line end and the element.
std::string XmlFile::Indent(pugi::xml_node element) const {
  const pugi::xml_node before = element.previous_sibling();
  if (!IsBlankText(before)) return "";
  const std::string_view blank = before.value();
  const std::size_t lineEnd = blank.find_last_of("\r\n");
  return std::string(lineEnd == blank.npos ? "" : blank.substr(lineEnd + 1));
}

pugi::xml_node XmlFile::Insert(pugi::xml_node parent, pugi::xml_node previous, const char* name) {
  changed_ = true;
  const std::string outer = newLine_ + Indent(parent);
  const bool wasEmpty = !parent.first_child();
  pugi::xml_node space = previous ? parent.insert_child_after(pugi::node_pcdata, previous)
                                  : parent.prepend_child(pugi::node_pcdata);
  space.set_value((outer + "  ").c_str());
  pugi::xml_node element = parent.insert_child_after(pugi::node_element, space);
  element.set_name(name);
  if (wasEmpty) parent.append_child(pugi::node_pcdata).set_value(outer.c_str());
  return element;
}

pugi::xml_node XmlFile::Append(pugi::xml_node parent, const char* name) {
  pugi::xml_node last = parent.last_child();
  if (IsBlankText(last)) last = last.previous_sibling();
  // An element that holds nothing but white space is written anew.
  if (!last) parent.remove_children();
  return Insert(parent, last, name);
}

void XmlFile::Remove(pugi::xml_node element) {
  changed_ = true;
  pugi::xml_node parent = element.parent();
  if (IsBlankText(element.previous_sibling())) parent.remove_child(element.previous_sibling());
  parent.remove_child(element);
  if (parent.first_child() && !parent.first_child().next_sibling() && IsBlankText(parent.first_child())) {
    parent.remove_children();
  }
}

void XmlFile::Move(pugi::xml_node element, pugi::xml_node previous) {
  changed_ = true;
  pugi::xml_node parent = element.parent();
  const pugi::xml_node space = element.previous_sibling();
  const bool withSpace = IsBlankText(space);
  if (previous) {
    parent.insert_move_after(element, previous);
  } else {
    parent.prepend_move(element);
  }
  if (withSpace) parent.insert_move_before(space, element);
}

// The comments on the lines right above an element are about it, and so is one behind it on its own line.
XmlFile::Block XmlFile::BlockOf(pugi::xml_node element) {
  Block block{element, element};
  for (;;) {
    const pugi::xml_node space = block.first.previous_sibling();
    const pugi::xml_node comment = IsBlankText(space) ? space.previous_sibling() : space;
    if (!IsComment(comment) || (IsBlankText(space) && LineEndsIn(space) > 1)) break;
    const pugi::xml_node before = comment.previous_sibling();
    const bool hasOwnLine = IsBlankText(before) && LineEndsIn(before) > 0;
    if (!hasOwnLine) break;
    block.first = comment;
  }
  for (;;) {
    const pugi::xml_node space = block.last.next_sibling();
    const pugi::xml_node comment = IsBlankText(space) ? space.next_sibling() : space;
    const bool sameLine = !IsBlankText(space) || LineEndsIn(space) == 0;
    const pugi::xml_node behind = comment.next_sibling();
    const bool endsLine = !behind || (IsBlankText(behind) && LineEndsIn(behind) > 0);
    if (!IsComment(comment) || !sameLine || !endsLine) break;
    block.last = comment;
  }
  if (IsBlankText(block.first.previous_sibling())) block.first = block.first.previous_sibling();
  return block;
}

pugi::xml_node XmlFile::InsertBefore(pugi::xml_node element, const char* name) {
  return Insert(element.parent(), BlockOf(element).first.previous_sibling(), name);
}

pugi::xml_node XmlFile::Duplicate(pugi::xml_node element) {
  changed_ = true;
  pugi::xml_node parent = element.parent();
  const pugi::xml_node space = element.previous_sibling();
  pugi::xml_node behind = BlockOf(element).last;
  if (IsBlankText(space) && LineEndsIn(space) > 0) {
    const std::string oneLineEnd = newLine_ + Indent(element);
    behind = parent.insert_child_after(pugi::node_pcdata, behind);
    behind.set_value(oneLineEnd.c_str());
  }
  return parent.insert_copy_after(element, behind);
}

void XmlFile::MoveBlock(pugi::xml_node element, pugi::xml_node other, Side side) {
  if (element == other) return;
  changed_ = true;
  pugi::xml_node parent = element.parent();
  const Block block = BlockOf(element);
  const Block place = BlockOf(other);
  std::vector<pugi::xml_node> nodes;
  for (pugi::xml_node node = block.first; node; node = node.next_sibling()) {
    nodes.push_back(node);
    if (node == block.last) break;
  }
  if (side == Side::Before) {
    for (const pugi::xml_node node : nodes) parent.insert_move_before(node, place.first);
    return;
  }
  pugi::xml_node behind = place.last;
  for (const pugi::xml_node node : nodes) behind = parent.insert_move_after(node, behind);
}

}  // namespace qx
