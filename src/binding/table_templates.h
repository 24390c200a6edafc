// The few templates every class table is written over: value kinds (how a C++ value
// travels as a typed object-system value), one property template, and the method shapes
// the tables use. A row of a table names a template instance; the same row registers it.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "host/host_array.h"
#include "host/xo_class.h"
#include "host/xo_types.h"
#include "types/embedded.h"

namespace corbel::binding {

// The class-specific object of an instance, as the class stores it.
template <class T>
T& object_of(XoInterface* instance) {
  return *static_cast<T*>(instance->getClassSpecificObject());
}

XoDataType* repository_type(std::string_view name);

// A string literal usable as a template argument.
template <std::size_t N>
struct FixedString {
  char text[N];
  constexpr FixedString(const char (&s)[N]) {
    for (std::size_t i = 0; i < N; ++i) text[i] = s[i];
  }
  constexpr const char* c_str() const { return text; }
};

// ---- Value kinds ------------------------------------------------------------------------
// Each kind names its host type, boxes a C++ value into a new typed value (xo_values.h) and
// reads a borrowed one.

template <class V, const std::string_view& Name>
struct PlainKind {
  using value_type = V;
  static XoDataType* type() { return repository_type(Name); }
  static void* box(V v) { return new V(std::move(v)); }
  static const V& unbox(void* p) { return *static_cast<const V*>(p); }
};
using Int32 = PlainKind<std::int32_t, kXoInt32TypeName>;
using Double = PlainKind<double, kXoDoubleTypeName>;
using Bool = PlainKind<bool, kXoBoolTypeName>;
using String = PlainKind<std::string, kXoStringTypeName>;
using AnyArray = PlainKind<HostArray, kXoHostArrayTypeName>;

// An enumeration travels as its code.
template <class E, XoEnumStringType* (*Type)()>
struct EnumKind {
  using value_type = E;
  static XoDataType* type() { return Type(); }
  static void* box(E v) { return new std::int32_t(static_cast<std::int32_t>(v)); }
  static E unbox(void* p) { return static_cast<E>(*static_cast<const std::int32_t*>(p)); }
};
template <class E>
using Enum = EnumKind<E, &embedded::getEnumType<E>>;

// An object of one of the module's classes travels as a new instance around a copy.
// Cls provides `using Object`, getInstance() and wrap(const Object&).
template <class Cls>
struct ObjectKind {
  using value_type = typename Cls::Object;
  static XoDataType* type() { return Cls::getInstance()->getClassType(); }
  static void* box(const value_type& v) { return Cls::wrap(v); }
  static const value_type& unbox(void* p) {
    return object_of<value_type>(static_cast<XoInterface*>(p));
  }
};

// ---- Properties -------------------------------------------------------------------------

// No last-property-set code.
inline constexpr int kNoCode = -1000;

// A property read by Get(owner) and written by Set(owner, value); each is a member
// function pointer or a function pointer. Without Set the property is read-only. With a
// Code, a successful set records it as the owner's last property set. A null value sets
// nothing.
template <class Owner, class Kind, auto Get, auto Set = nullptr, int Code = kNoCode>
class TableProp : public XoPropInfoTemplate {
  static constexpr bool kReadOnly = std::is_null_pointer_v<decltype(Set)>;

 public:
  explicit TableProp(std::string name, unsigned flags = 0)
      : XoPropInfoTemplate(std::move(name), Kind::type(), flags | (kReadOnly ? kXoPropReadOnly : 0)) {}

  void* getValue(XoInterface* instance) override {
    return Kind::box(std::invoke(Get, object_of<Owner>(instance)));
  }
  void setValue(XoInterface* instance, void* value) override {
    if constexpr (kReadOnly) {
      XoPropInfoTemplate::setValue(instance, value);
    } else {
      if (value == nullptr) return;
      Owner& owner = object_of<Owner>(instance);
      std::invoke(Set, owner, Kind::unbox(value));
      if constexpr (Code != kNoCode) owner.setLastPropertySet(Code);
    }
  }
};

// Evaluates text as a host expression ("eval" with the error trap on) and returns the real
// scalar it gives; a host failure is raised again as the host's error.
double evaluate_text(const std::string& text);

// Raises the wrong-value error of the numeric twin of text property `textProperty` unless
// v is an integer in the int32 range.
void refuse_unless_int32(double v, const std::string& textProperty, XoInterface* instance);

// The radix argument of the radix-text methods: a real scalar 2, 8, 10 or 16.
int radix_argument(const HostArray& r);

// A text twin of a numeric property: read as Get(owner) (text made from the value, so it
// always mirrors the numeric property); written by evaluating the text and calling
// Set(owner, number) with the result converted to the setter's argument type.
template <class Owner, auto Get, auto Set, class Arg>
class TextProp : public XoPropInfoTemplate {
 public:
  explicit TextProp(std::string name) : XoPropInfoTemplate(std::move(name), String::type()) {}
  void* getValue(XoInterface* instance) override {
    return String::box(std::invoke(Get, object_of<Owner>(instance)));
  }
  void setValue(XoInterface* instance, void* value) override {
    if (value == nullptr) return;
    const double v = evaluate_text(String::unbox(value));
    // An integer property's text must give what the property itself takes.
    if constexpr (std::is_integral_v<Arg>) refuse_unless_int32(v, getName(), instance);
    std::invoke(Set, object_of<Owner>(instance), static_cast<Arg>(v));
  }
};

// ---- Methods ----------------------------------------------------------------------------

// The type of the owner's instances: the self argument of every method.
template <class Cls>
XoDataType* self_type() {
  return Cls::getInstance()->getClassType();
}

// F(owner) gives a host array (a predicate's logical, a count's double, ...).
template <class Cls, auto F>
class QueryMethod : public XoMethodInfo {
 public:
  explicit QueryMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature().addArgType(self_type<Cls>()).addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    outputs[0] = AnyArray::box(
        std::invoke(F, object_of<typename Cls::Object>(static_cast<XoInterface*>(inputs[0]))));
    *nout = 1;
  }
};

// A logical scalar of a predicate of the owner.
template <auto Pred, class Owner>
HostArray logical_of(const Owner& owner) {
  return HostArray::make_logical(std::invoke(Pred, owner));
}
// A double scalar of a count of the owner.
template <auto Count, class Owner>
HostArray double_of(const Owner& owner) {
  return HostArray::make_double(static_cast<double>(std::invoke(Count, owner)));
}
template <class Owner>
HostArray always_true(const Owner&) {
  return HostArray::make_logical(true);
}

// F(owner) acts and gives nothing (display, resets).
template <class Cls, auto F>
class ActionMethod : public XoMethodInfo {
 public:
  explicit ActionMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature().addArgType(self_type<Cls>());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void**, int, void** inputs) override {
    std::invoke(F, object_of<typename Cls::Object>(static_cast<XoInterface*>(inputs[0])));
    *nout = 0;
  }
};

// The restricted "set" of a class, built with the class label its refusal shows.
template <class Cls>
std::unique_ptr<XoMethodInfo> make_set_method(const char* label) {
  auto set = std::make_unique<EmbeddedFiSetMethodInfo>(label);
  set->addSignature().addArgType(AnyArray::type()).setVarArgs(true).addResultType(AnyArray::type());
  return set;
}

}  // namespace corbel::binding
