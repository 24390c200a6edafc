// The module's seven class objects: singletons made on first use and added to the package
// "embedded", each filling its constructor signatures, properties and methods once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "host/messages.h"
#include "host/xo_class.h"
#include "quantize/loggingquantizer.h"
#include "quantize/qlogger.h"
#include "types/embedded.h"
#include "types/fimath.h"
#include "types/numeric_type.h"

namespace corbel {

// A copy of a class's object. A slope-bias quantizer copies as one; a fi copies whole.
template <class T>
T* copy_of(const T& object) {
  return new T(object);
}
loggingquantizer* copy_of(const loggingquantizer& q);
inline fi* copy_of(const fi& f) {
  return new fi(f, fi::WholeCopy);
}

// What the seven classes share. Derived gives kName (the host class name), kDummyName (its
// own name in the refusal of its dummy constructor), fill() (its tables) and build() (its
// object from constructor arguments); it may give kDummy, the refusal's message.
template <class Derived, class ObjectT>
class CorbelXoClass : public XoClass {
 public:
  using Object = ObjectT;
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;

  // The dummy constructor: never called by the module; refuses with the class's internal
  // error.
  CorbelXoClass(char, int, float, double) { raise(Derived::kDummy, Derived::kDummyName); }

  // The singleton; the first call makes it and adds it to the package. If making it fails
  // nothing is kept.
  static Derived* getInstance() {
    if (instance_ == nullptr) {
      auto made = std::unique_ptr<Derived>(new Derived());
      embedded::getEmbeddedPackage()->addClass(made.get());
      instance_ = made.release();
    }
    return instance_;
  }
  // Makes sure the singleton exists and keeps it in a slot of its own; later calls do
  // nothing.
  static void registerXoClass() {
    if (registered_ == nullptr) registered_ = getInstance();
  }

  // Fills the class's tables, once.
  void init() {
    if (initialized_) return;
    initialized_ = true;
    static_cast<Derived*>(this)->fill();
  }

  // A new instance (one reference) around a copy of `object`.
  static XoInterface* wrap(const Object& object) {
    std::unique_ptr<Object> copy(copy_of(object));
    XoInterface* instance = XoInterface::create(getInstance(), copy.get());
    copy.release();
    return instance;
  }

  // An instance made without arguments.
  XoInterface* createClassSpecificObject(XoInterface* instance) {
    return createClassSpecificObject(instance, nullptr, 0);
  }
  XoInterface* createClassSpecificObject(XoInterface* instance, void** args, int nargs) override {
    std::unique_ptr<Object> object = static_cast<Derived*>(this)->build(args, nargs);
    instance->setClassSpecificObject(object.release());
    return instance;
  }
  void destroyObject(XoInterface* instance) override {
    delete static_cast<Object*>(instance->getClassSpecificObject());
    instance->setClassSpecificObject(nullptr);
  }
  XoInterface* duplicateInstance(XoInterface* instance) override {
    return wrap(*static_cast<const Object*>(instance->getClassSpecificObject()));
  }

 protected:
  CorbelXoClass() { setName(Derived::kName); }

 private:
  static inline Derived* instance_ = nullptr;
  static inline Derived* registered_ = nullptr;
  bool initialized_ = false;
};

// Declares a class object: its host name, its own name, and the base it fills through.
#define CORBEL_CLASS_OBJECT_BODY(Cls, Obj, hostName)                 \
 public:                                                              \
  static constexpr const char* kName = hostName;                     \
  static constexpr const char* kDummyName = #Cls;                    \
  using CorbelXoClass<Cls, Obj>::CorbelXoClass;                      \
  void fill();                                                       \
  std::unique_ptr<Obj> build(void** args, int nargs);                \
                                                                     \
 private:                                                            \
  friend class CorbelXoClass<Cls, Obj>;                              \
  Cls() = default;                                                   \
                                                                     \
 public:

class NumericTypeXoClass : public CorbelXoClass<NumericTypeXoClass, NumericType> {
  CORBEL_CLASS_OBJECT_BODY(NumericTypeXoClass, NumericType, "numerictype")
  void init_fi_methods();
};

// The three quantizer classes hold their object as a loggingquantizer (a slope-bias
// quantizer is one), so that the properties and methods they share read it alike.
class ModelessQuantizerXoClass : public CorbelXoClass<ModelessQuantizerXoClass, loggingquantizer> {
  CORBEL_CLASS_OBJECT_BODY(ModelessQuantizerXoClass, loggingquantizer, "ModelessQuantizer")
};

class QuantizerXoClass : public CorbelXoClass<QuantizerXoClass, loggingquantizer> {
  CORBEL_CLASS_OBJECT_BODY(QuantizerXoClass, loggingquantizer, "CoreQuantizer")
};

class SlopeBiasQuantizerXoClass
    : public CorbelXoClass<SlopeBiasQuantizerXoClass, loggingquantizer> {
  CORBEL_CLASS_OBJECT_BODY(SlopeBiasQuantizerXoClass, loggingquantizer, "slopebiasquantizer")
};

class FimathXoClass : public CorbelXoClass<FimathXoClass, fimath> {
  CORBEL_CLASS_OBJECT_BODY(FimathXoClass, fimath, "fimath")
  static constexpr Msg kDummy = Msg::FimathDummyConstructor;
  void init_fi_methods();
};

class FiXoClass : public CorbelXoClass<FiXoClass, fi> {
  CORBEL_CLASS_OBJECT_BODY(FiXoClass, fi, "CoreFi")
  static constexpr Msg kDummy = Msg::FiDummyConstructor;
  std::vector<std::size_t> getInstanceDims(XoInterface* instance) const override;
};

class QloggerXoClass : public CorbelXoClass<QloggerXoClass, qlogger> {
  CORBEL_CLASS_OBJECT_BODY(QloggerXoClass, qlogger, "qloggerstruct")
};

#undef CORBEL_CLASS_OBJECT_BODY

// The module's registration steps.
class Corbel {
 public:
  // Makes sure the seven class objects exist, in registration order; runs once.
  static void declareXoClasses();
  // Declares the classes if that has not happened, then fills every class in order; runs
  // once.
  static void registerXoClasses();
};

}  // namespace corbel
