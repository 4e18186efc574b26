#include <windows.h>

#include <msxml2.h>
#include <oleauto.h>
#include <shlwapi.h>

#include <utility>
#include <vector>

#include "platform/Texts.h"
#include "platform/WindowsText.h"
#include "platform/xml/XmlDocument.h"
#include "platform/xml/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// A counted reference to a COM object.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  explicit ComPtr(T* adopted) : pointer_(adopted) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  T** Receive() { return &pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

 private:
  T* pointer_ = nullptr;
};

class BStr {
 public:
  BStr() = default;
  explicit BStr(const std::wstring& text)
      : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  ~BStr() { SysFreeString(text_); }
  BStr(const BStr&) = delete;
  BStr& operator=(const BStr&) = delete;
  BSTR get() const { return text_; }
  BSTR* Receive() { return &text_; }
  std::string Text() const {
    return text_ == nullptr ? std::string() : system::FromWide(std::wstring_view(text_, SysStringLen(text_)));
  }

 private:
  BSTR text_ = nullptr;
};

// COM on this thread for as long as it is needed; a thread that has it in another mode keeps that.
class ComOnThread {
 public:
  ComOnThread() : mine_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ~ComOnThread() {
    if (mine_) CoUninitialize();
  }
  ComOnThread(const ComOnThread&) = delete;
  ComOnThread& operator=(const ComOnThread&) = delete;

 private:
  bool mine_;
};

// IXMLDOMDocument2, which the import libraries leave out.
constexpr IID kDocument2 = {0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

ComPtr<IXMLDOMDocument2> CreateDocument() {
  ComPtr<IXMLDOMDocument2> document;
  for (const wchar_t* name : {L"Msxml2.DOMDocument.6.0", L"Msxml2.DOMDocument.3.0"}) {
    CLSID id;
    if (FAILED(CLSIDFromProgID(name, &id))) continue;
    if (SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, kDocument2,
                                   reinterpret_cast<void**>(document.Receive())))) {
      return document;
    }
  }
  throw Exception("MSXML is not installed");
}

void ProhibitDtd(IXMLDOMDocument2& document) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  const BStr name(L"ProhibitDTD");
  document.setProperty(name.get(), value);  // version 3.0 does not know it, and fetches nothing all the same
}

// Every element that a document hands out is kept by it.
using Keeper = std::vector<ComPtr<IXMLDOMNode>>;

std::string TrimmedReason(std::string reason) {
  const std::size_t last = reason.find_last_not_of("\r\n ");
  return reason.substr(0, last == std::string::npos ? 0 : last + 1);
}

}  // namespace

struct XmlElement::Access {
  static IXMLDOMNode* Node(const XmlElement& element) { return static_cast<IXMLDOMNode*>(element.node_); }

  static XmlElement Keep(Keeper* keeper, ComPtr<IXMLDOMNode> node) {
    if (!node) return {};
    keeper->push_back(std::move(node));
    return {keeper, keeper->back().get()};
  }

  // The first element of that name (null: of any) from `node` on, among its siblings.
  static XmlElement Find(const XmlElement& from, ComPtr<IXMLDOMNode> node, const char* name) {
    const std::wstring wanted = name == nullptr ? std::wstring() : system::ToWide(name);
    while (node) {
      DOMNodeType kind = NODE_INVALID;
      BStr found;
      node->get_nodeType(&kind);
      node->get_nodeName(found.Receive());
      if (kind == NODE_ELEMENT && (name == nullptr || (found.get() != nullptr && wanted == found.get())))
        break;
      ComPtr<IXMLDOMNode> next;
      node->get_nextSibling(next.Receive());
      node = std::move(next);
    }
    return Keep(static_cast<Keeper*>(from.owner_), std::move(node));
  }
};

struct XmlDocument::State {
  ComOnThread com;  // first, so that it goes last
  ComPtr<IXMLDOMDocument2> document;
  Keeper nodes;
};

std::string XmlElement::Name() const {
  BStr name;
  if (node_ != nullptr) Access::Node(*this)->get_nodeName(name.Receive());
  return name.Text();
}

std::string XmlElement::Attribute(const char* name) const {
  ComPtr<IXMLDOMElement> element;
  if (node_ == nullptr || FAILED(Access::Node(*this)->QueryInterface(
                              IID_IXMLDOMElement, reinterpret_cast<void**>(element.Receive())))) {
    return {};
  }
  ComPtr<IXMLDOMAttribute> attribute;
  element->getAttributeNode(BStr(system::ToWide(name)).get(), attribute.Receive());
  BStr text;
  if (attribute) attribute->get_text(text.Receive());
  return text.Text();
}

XmlElement XmlElement::FirstChild(const char* name) const {
  ComPtr<IXMLDOMNode> child;
  if (node_ != nullptr) Access::Node(*this)->get_firstChild(child.Receive());
  return Access::Find(*this, std::move(child), name);
}

XmlElement XmlElement::NextSibling(const char* name) const {
  ComPtr<IXMLDOMNode> sibling;
  if (node_ != nullptr) Access::Node(*this)->get_nextSibling(sibling.Receive());
  return Access::Find(*this, std::move(sibling), name);
}

XmlElement XmlElement::FirstChild() const { return FirstChild(nullptr); }
XmlElement XmlElement::NextSibling() const { return NextSibling(nullptr); }

std::vector<std::pair<std::string, std::string>> XmlElement::Attributes() const {
  std::vector<std::pair<std::string, std::string>> all;
  ComPtr<IXMLDOMNamedNodeMap> map;
  if (node_ != nullptr) Access::Node(*this)->get_attributes(map.Receive());
  long count = 0;
  if (map) map->get_length(&count);
  for (long i = 0; i < count; ++i) {
    ComPtr<IXMLDOMNode> attribute;
    map->get_item(i, attribute.Receive());
    if (!attribute) continue;
    BStr name, value;
    attribute->get_nodeName(name.Receive());
    attribute->get_text(value.Receive());
    all.emplace_back(name.Text(), value.Text());
  }
  return all;
}

std::string XmlElement::Text() const {
  std::string text;
  ComPtr<IXMLDOMNode> child;
  if (node_ != nullptr) Access::Node(*this)->get_firstChild(child.Receive());
  while (child) {
    DOMNodeType kind = NODE_INVALID;
    child->get_nodeType(&kind);
    if (kind == NODE_TEXT || kind == NODE_CDATA_SECTION) {
      BStr part;
      child->get_text(part.Receive());
      text += part.Text();
    }
    ComPtr<IXMLDOMNode> next;
    child->get_nextSibling(next.Receive());
    child = std::move(next);
  }
  return Trim(text);
}

XmlDocument::XmlDocument() : state_(std::make_unique<State>()) {}
XmlDocument::~XmlDocument() = default;

namespace {

// What does not know ProhibitDTD has read it.
void RefuseDocumentType(ComPtr<IXMLDOMDocument2>& document) {
  ComPtr<IXMLDOMDocumentType> type;
  document->get_doctype(type.Receive());
  if (!type) return;
  document = {};
  throw Exception("DTD is prohibited.");
}

}  // namespace

void XmlDocument::Parse(std::string& bytes, XmlTexts /*texts: the system's document keeps them always*/) {
  state_->nodes.clear();
  state_->document = CreateDocument();
  IXMLDOMDocument2& document = *state_->document.get();
  document.put_async(VARIANT_FALSE);
  document.put_validateOnParse(VARIANT_FALSE);
  document.put_resolveExternals(VARIANT_FALSE);
  ProhibitDtd(document);

  DecodeDeclaredLegacy(bytes);  // not every system's MSXML knows all of them
  // Through a stream: loading by name would read "%41" in the name as a letter.
  const ComPtr<IStream> stream(
      SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
  VARIANT source;
  VariantInit(&source);
  source.vt = VT_UNKNOWN;
  source.punkVal = stream.get();
  VARIANT_BOOL loaded = VARIANT_FALSE;
  const HRESULT result = document.load(source, &loaded);
  if (SUCCEEDED(result) && loaded == VARIANT_TRUE) return RefuseDocumentType(state_->document);

  ComPtr<IXMLDOMParseError> error;
  BStr reason;
  if (SUCCEEDED(document.get_parseError(error.Receive())) && error) error->get_reason(reason.Receive());
  state_->document = {};
  const std::string text = TrimmedReason(reason.Text());
  throw Exception(text.empty() ? system::ErrorText(static_cast<unsigned long>(result)) : text);
}

XmlElement XmlDocument::Root() const {
  ComPtr<IXMLDOMElement> root;
  if (state_->document) state_->document->get_documentElement(root.Receive());
  ComPtr<IXMLDOMNode> node;
  if (root) root->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.Receive()));
  return XmlElement::Access::Keep(&state_->nodes, std::move(node));
}

}  // namespace qx
