// Data types of the host object system (primitive, enumerated string and class types) and the
// process-wide type repository that finds them by name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corbel {

class XoClass;

// What a type's values are, and so how a value of the type travels as a void* (see
// xo_values.h for the full convention).
enum class XoTypeKind {
  Int32,       // std::int32_t*
  Double,      // double*
  Bool,        // bool*
  String,      // std::string*
  HostArray,   // HostArray*  (the type "Norvak array": any host value)
  EnumString,  // std::int32_t* holding the code of one of the type's value strings
  Class,       // XoInterface*
};

// The names under which the primitive types are registered.
inline constexpr std::string_view kXoInt32TypeName = "int32";
inline constexpr std::string_view kXoDoubleTypeName = "double";
inline constexpr std::string_view kXoBoolTypeName = "bool";
inline constexpr std::string_view kXoStringTypeName = "string";
inline constexpr std::string_view kXoHostArrayTypeName = "Norvak array";

class XoDataType {
 public:
  XoDataType(std::string name, XoTypeKind kind) : name_(std::move(name)), kind_(kind) {}
  virtual ~XoDataType() = default;
  XoDataType(const XoDataType&) = delete;
  XoDataType& operator=(const XoDataType&) = delete;

  const std::string& getName() const { return name_; }
  XoTypeKind getKind() const { return kind_; }

 private:
  std::string name_;
  XoTypeKind kind_;
};

// A named set of value strings, each with an integer code, kept in the order they were added.
// Strings are unique within a type and so are codes; codes need not be contiguous.
class XoEnumStringType : public XoDataType {
 public:
  struct Value {
    std::string text;
    std::int32_t code;
  };

  explicit XoEnumStringType(std::string name)
      : XoDataType(std::move(name), XoTypeKind::EnumString) {}

  // Adds a value string with its code; a repeated string or code is an internal error.
  void addValue(std::string text, std::int32_t code);

  const std::vector<Value>& getValues() const { return values_; }
  // The code of a value string (exact match), or nothing.
  std::optional<std::int32_t> codeOf(std::string_view text) const;
  // The value string of a code, or null when the type has no such code.
  const std::string* stringOf(std::int32_t code) const;

 private:
  std::vector<Value> values_;
};

// The type of references to instances of one class, named by the class's package class name
// ("embedded.CoreFi"). The class pointer is cleared when the class leaves its package or is
// destroyed; a type without class matches no value.
class XoClassType : public XoDataType {
 public:
  XoClassType(std::string name, XoClass* cls)
      : XoDataType(std::move(name), XoTypeKind::Class), class_(cls) {}
  XoClass* getClass() const { return class_; }
  void forgetClass() { class_ = nullptr; }

 private:
  XoClass* class_;
};

// The process-wide repository of types. It owns every type registered with it; a type taken
// out of the name look-up (retired) is kept alive, because properties and signatures may
// still point at it. Types are never destroyed while the process runs.
class XoTypeRepository {
 public:
  // The repository, created on first use with the five primitive types registered.
  static XoTypeRepository& instance();

  // The type registered under `name`, or null. With a non-zero search flag a name not
  // registered is also tried as a bare class name in every package, in package order
  // ("CoreFi" finds the type "embedded.CoreFi").
  XoDataType* getType(std::string_view name, int search = 0) const;

  // Takes ownership of `type` and makes it findable by its name; a name already registered
  // raises Msg::XoTypeExists. Returns the registered type.
  XoDataType* registerType(std::unique_ptr<XoDataType> type);

  // Takes `type` out of the name look-up and keeps it alive; unknown types are ignored.
  void retireType(XoDataType* type);

  // The names of the findable types, in registration order.
  std::vector<std::string> getTypeNames() const;

 private:
  XoTypeRepository();
  std::vector<std::unique_ptr<XoDataType>> types_;
  std::vector<std::unique_ptr<XoDataType>> retired_;
};

}  // namespace corbel
