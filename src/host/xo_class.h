// Class objects of the host object system, with their instances, property infos, method
// infos and method signatures.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/xo_types.h"

namespace corbel {

class XoClass;
class XoPackage;

// Access flags of a property.
inline constexpr unsigned kXoPropReadOnly = 0x1;  // listed as not settable; set is refused
inline constexpr unsigned kXoPropHidden = 0x2;    // left out of listings, still reachable

// Ordered argument types and ordered result types of one form of a method or constructor.
// With the variable-argument flag the last argument type may be repeated any number of times
// (at least once).
class XoMethodSignature {
 public:
  XoMethodSignature& addArgType(XoDataType* type);
  XoMethodSignature& addResultType(XoDataType* type);
  XoMethodSignature& setVarArgs(bool on) {
    var_args_ = on;
    return *this;
  }

  const std::vector<XoDataType*>& getArgTypes() const { return args_; }
  const std::vector<XoDataType*>& getResultTypes() const { return results_; }
  bool isVarArgs() const { return var_args_; }

 private:
  std::vector<XoDataType*> args_;
  std::vector<XoDataType*> results_;
  bool var_args_ = false;
};

// One host instance: its class and the class-specific object (the module's own object, held
// as void*). Reference counted: create() returns the first reference; when release() drops
// the last one the class's destroyObject runs exactly once and the instance is freed.
// Invariant: the class outlives all of its instances.
class XoInterface final {
 public:
  static XoInterface* create(XoClass* cls, void* object = nullptr);
  // The number of instances created and not yet freed, process-wide.
  static long getLiveCount() { return live_; }

  XoClass* getClass() const { return class_; }
  void* getClassSpecificObject() const { return object_; }
  void setClassSpecificObject(void* object) { object_ = object; }

  void addRef() { ++count_; }
  void release();
  int getRefCount() const { return count_; }

 private:
  XoInterface(XoClass* cls, void* object) : class_(cls), object_(object) { ++live_; }
  ~XoInterface() { --live_; }

  static inline long live_ = 0;

  XoClass* class_;
  void* object_;
  int count_ = 1;
};

// Base of every property info: name, type and access flags, and the three value operations.
// Values follow the convention of xo_values.h.
class XoPropInfoTemplate {
 public:
  XoPropInfoTemplate(std::string name, XoDataType* type, unsigned flags = 0)
      : name_(std::move(name)), type_(type), flags_(flags) {}
  virtual ~XoPropInfoTemplate() = default;
  XoPropInfoTemplate(const XoPropInfoTemplate&) = delete;
  XoPropInfoTemplate& operator=(const XoPropInfoTemplate&) = delete;

  // Returns a newly allocated value of the property's type read from the instance.
  virtual void* getValue(XoInterface* instance) = 0;
  // Stores a value; `value` is borrowed for the call. A read-only property does not override
  // this, and the base refuses with Msg::XoReadOnlyProperty.
  virtual void setValue(XoInterface* instance, void* value);
  // Frees a value that getValue returned (deletes the buffer, releases an instance).
  virtual void releaseValue(void* value);

  const std::string& getName() const { return name_; }
  XoDataType* getType() const { return type_; }
  unsigned getFlags() const { return flags_; }
  bool isReadOnly() const { return (flags_ & kXoPropReadOnly) != 0; }

 private:
  std::string name_;
  XoDataType* type_;
  unsigned flags_;
};

// Base of every method info: a name and its signatures, in the order added.
class XoMethodInfo {
 public:
  explicit XoMethodInfo(std::string name) : name_(std::move(name)) {}
  virtual ~XoMethodInfo() = default;
  XoMethodInfo(const XoMethodInfo&) = delete;
  XoMethodInfo& operator=(const XoMethodInfo&) = delete;

  // Runs the method in the form `matched` (one of this method's signatures, already chosen by
  // the caller). inputs[0..nin) are borrowed values of the signature's argument types. On
  // entry *nout is the number of results the caller asked for and outputs has room for
  // max(*nout, declared results) values, all null; the method writes newly allocated results
  // to outputs and their number to *nout.
  virtual void invokeMethod(XoMethodSignature* matched, int* nout, void** outputs, int nin,
                            void** inputs) = 0;

  XoMethodSignature& addSignature();
  const std::vector<std::unique_ptr<XoMethodSignature>>& getSignatures() const {
    return signatures_;
  }
  const std::string& getName() const { return name_; }

 private:
  std::string name_;
  std::vector<std::unique_ptr<XoMethodSignature>> signatures_;
};

// A class object: name, superclass, constructor signatures, properties and methods (each list
// in the order added; the class owns its property and method infos). Subclasses build and
// destroy the class-specific objects of their instances.
class XoClass {
 public:
  explicit XoClass(std::string name = {}) : name_(std::move(name)) {}
  // Leaves its package first, if it is in one.
  virtual ~XoClass();
  XoClass(const XoClass&) = delete;
  XoClass& operator=(const XoClass&) = delete;

  const std::string& getName() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }
  XoClass* getSuperclass() const { return superclass_; }
  void setSuperclass(XoClass* superclass) { superclass_ = superclass; }
  XoPackage* getPackage() const { return package_; }
  // "package.Class", or the bare name for a class in no package.
  std::string getPackageClassName() const;
  // The type of references to this class's instances (null while in no package).
  XoClassType* getClassType() const { return type_; }
  // True when this class is `other` or derives from it.
  bool isA(const XoClass* other) const;

  XoMethodSignature& addConstructorSignature();
  XoPropInfoTemplate* addProperty(std::unique_ptr<XoPropInfoTemplate> property);
  XoMethodInfo* addMethod(std::unique_ptr<XoMethodInfo> method);

  const std::vector<std::unique_ptr<XoMethodSignature>>& getConstructorSignatures() const {
    return constructors_;
  }
  const std::vector<std::unique_ptr<XoPropInfoTemplate>>& getProperties() const {
    return properties_;
  }
  const std::vector<std::unique_ptr<XoMethodInfo>>& getMethods() const { return methods_; }

  // Look-up by exact name in this class, then up the superclass chain; null if absent.
  XoPropInfoTemplate* findProperty(std::string_view name) const;
  XoMethodInfo* findMethod(std::string_view name) const;

  // Builds the class-specific object of a new instance from constructor arguments (values of
  // the matched constructor signature's types, or HostArray* each when the class declares no
  // constructor signature). `instance` is a fresh instance holding one reference and no
  // object: attach the object to it and return it, or return another new instance (its one
  // reference passes to the caller, which then releases `instance`).
  virtual XoInterface* createClassSpecificObject(XoInterface* instance, void** args, int nargs) = 0;
  // Frees the class-specific object of an instance whose last reference has gone.
  virtual void destroyObject(XoInterface* instance) = 0;
  // A new instance (holding its one reference) around a deep copy of the instance's object;
  // a class whose instances cannot be copied refuses with Msg::XoCannotCopy.
  virtual XoInterface* duplicateInstance(XoInterface* instance);
  // The dimensions the host shows for an instance: 1x1 unless the class holds arrays.
  virtual std::vector<std::size_t> getInstanceDims(XoInterface* instance) const;

  virtual bool canOtherClassContainThisClass(XoClass*) { return true; }
  virtual bool canThisClassContainOtherClass(XoClass*) { return true; }

 private:
  friend class XoPackage;

  std::string name_;
  XoClass* superclass_ = nullptr;
  XoPackage* package_ = nullptr;
  XoClassType* type_ = nullptr;
  std::vector<std::unique_ptr<XoMethodSignature>> constructors_;
  std::vector<std::unique_ptr<XoPropInfoTemplate>> properties_;
  std::vector<std::unique_ptr<XoMethodInfo>> methods_;
};

}  // namespace corbel
