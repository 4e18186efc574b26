// The ground of the contract between host and package: the one exception type, interface identifiers,
// the interface root, the intrusive pointer that holds interfaces, and the classes that implement them.
// Everything here is header-only but `Exception`, which the host's runtime defines.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

// What the runtime library shows to packages. Windows exports by default, ELF by this mark.
#ifdef __ELF__
#define QX_API __attribute__((visibility("default")))
#else
#define QX_API
#endif

namespace qx {

// The one exception that crosses the boundary between host and package, in either direction.
class QX_API Exception : public std::exception {
 public:
  explicit Exception(std::string message);
  ~Exception() override;
  const char* what() const noexcept override { return message_.c_str(); }
  // The whole text shown to the user; 8-bit, UTF-8 where its source was.
  const std::string& Message() const noexcept { return message_; }

 private:
  std::string message_;
};

// Identifier of an interface: the 16 bytes of {2F39A06C-B1BB-4982-8B17-16BD323C3104} in text order.
struct TGUID {
  std::array<std::uint8_t, 16> bytes{};
  friend constexpr bool operator==(const TGUID&, const TGUID&) = default;
};

// Parses "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" at compile time; a malformed literal does not compile.
consteval TGUID Guid(const char (&text)[39]) {
  TGUID guid;
  std::size_t digits = 0;
  for (std::size_t i = 0; i < 38; ++i) {
    const char c = text[i];
    const bool brace = i == 0 || i == 37;
    const bool dash = i == 9 || i == 14 || i == 19 || i == 24;
    if (brace || dash) {
      if (c != (brace ? (i == 0 ? '{' : '}') : '-')) throw "malformed identifier";
      continue;
    }
    const int value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                             : throw "malformed identifier";
    guid.bytes[digits / 2] = static_cast<std::uint8_t>(guid.bytes[digits / 2] * 16 + value);
    ++digits;
  }
  return guid;
}

// Root of all interfaces. The first three slots of every interface are these, in this order.
// Every interface declares `IID`, and `Base` when it derives from another interface than this one.
class IInterface {
 public:
  static constexpr TGUID IID = Guid("{00000000-0000-0000-C000-000000000046}");
  using Base = void;

  // Stores the interface asked for in *out and counts a reference to it; false and null when there is none.
  virtual bool QueryInterface(const TGUID& iid, void** out) = 0;
  // Both return the new count; objects that the host owns are not counted and return -1. Any thread.
  virtual std::int32_t _AddRef() = 0;
  virtual std::int32_t _Release() = 0;

 protected:
  ~IInterface() = default;
};

// Holds one counted reference. Never made from a raw pointer without a word that says who owns it.
template <class T>
class InterfacePtr {
 public:
  InterfacePtr() = default;
  InterfacePtr(std::nullptr_t) {}
  InterfacePtr(const InterfacePtr& other) : pointer_(other.pointer_) { Retain(); }
  InterfacePtr(InterfacePtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> InterfacePtr(const InterfacePtr<U>& other) : pointer_(other.get()) {
    Retain();
  }
  ~InterfacePtr() {
    if (pointer_ != nullptr) pointer_->_Release();
  }
  InterfacePtr& operator=(InterfacePtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }

  // Takes over the reference that the caller holds.
  static InterfacePtr Adopt(T* pointer) {
    InterfacePtr result;
    result.pointer_ = pointer;
    return result;
  }
  // Counts a reference of its own.
  static InterfacePtr Share(T* pointer) {
    InterfacePtr result;
    result.pointer_ = pointer;
    result.Retain();
    return result;
  }
  // Gives the reference to the caller.
  T* Detach() { return std::exchange(pointer_, nullptr); }

  T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  T& operator*() const { return *pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  friend bool operator==(const InterfacePtr& a, const InterfacePtr& b) { return a.pointer_ == b.pointer_; }
  friend bool operator==(const InterfacePtr& a, std::nullptr_t) { return a.pointer_ == nullptr; }

 private:
  void Retain() const {
    if (pointer_ != nullptr) pointer_->_AddRef();
  }
  T* pointer_ = nullptr;
};

// The interface T of an object, null when it has none.
template <class T, class Object>
InterfacePtr<T> Query(Object* object) {
  void* found = nullptr;
  if (object == nullptr || !object->QueryInterface(T::IID, &found)) return nullptr;
  return InterfacePtr<T>::Adopt(static_cast<T*>(found));
}

namespace detail {

// Walks from Interface to the root, looking for the identifier; the cast follows the same walk.
template <class Interface, class Object>
bool AnswerQuery(Object* object, const TGUID& iid, void** out) {
  if (iid == Interface::IID) {
    *out = static_cast<Interface*>(object);
    return true;
  }
  if constexpr (!std::is_void_v<typename Interface::Base> &&
                !std::is_same_v<typename Interface::Base, IInterface>) {
    return AnswerQuery<typename Interface::Base>(static_cast<Interface*>(object), iid, out);
  } else {
    return false;
  }
}

}  // namespace detail

// A reference-counted object behind the listed interfaces. The query is made from the list, so it cannot
// disagree with the bases. Deletes itself with its last reference; starts with a count of zero.
template <class First, class... Others>
class Implements : public First, public Others... {
 public:
  bool QueryInterface(const TGUID& iid, void** out) override {
    *out = nullptr;
    if (iid == IInterface::IID) *out = static_cast<IInterface*>(static_cast<First*>(this));
    const bool found = *out != nullptr || detail::AnswerQuery<First>(static_cast<First*>(this), iid, out) ||
                       (detail::AnswerQuery<Others>(static_cast<Others*>(this), iid, out) || ...);
    if (found) _AddRef();
    return found;
  }
  std::int32_t _AddRef() override { return references_.fetch_add(1, std::memory_order_relaxed) + 1; }
  std::int32_t _Release() override {
    const std::int32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }

 protected:
  Implements() = default;
  Implements(const Implements&) = delete;
  Implements& operator=(const Implements&) = delete;
  virtual ~Implements() = default;

 private:
  std::atomic<std::int32_t> references_{0};
};

// The same for an object that somebody else owns (the host owns actions and options): it answers queries
// and counts nothing.
template <class First, class... Others>
class AnswersUncounted : public First, public Others... {
 public:
  bool QueryInterface(const TGUID& iid, void** out) override {
    *out = nullptr;
    if (iid == IInterface::IID) *out = static_cast<IInterface*>(static_cast<First*>(this));
    return *out != nullptr || detail::AnswerQuery<First>(static_cast<First*>(this), iid, out) ||
           (detail::AnswerQuery<Others>(static_cast<Others*>(this), iid, out) || ...);
  }
  std::int32_t _AddRef() override { return -1; }
  std::int32_t _Release() override { return -1; }

 protected:
  ~AnswersUncounted() = default;
};

// Makes a counted object and holds it.
template <class Object, class... Arguments>
InterfacePtr<Object> MakeInterface(Arguments&&... arguments) {
  return InterfacePtr<Object>::Share(new Object(std::forward<Arguments>(arguments)...));
}

}  // namespace qx
