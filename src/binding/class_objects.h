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

// What the seven classes share. Derived gives kName (the host class name), kDummy (the
// refusal of its dummy constructor), fill() (its tables) and build() (its object from
// constructor arguments); it may give copyObject() for objects without a copy
// constructor.
template <class Derived, class ObjectT>
class CorbelXoClass : public XoClass {
 public:
  using Object = ObjectT;

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
    std::unique_ptr<Object> copy(Derived::copyObject(object));
    XoInterface* instance = XoInterface::create(getInstance(), copy.get());
    copy.release();
    return instance;
  }
  static Object* copyObject(const Object& object) { return new Object(object); }

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
  // The dummy constructor: never called by the module; refuses with the class's internal
  // error.
  CorbelXoClass(char, int, float, double) { raise(Derived::kDummy, Derived::kDummyName); }

 private:
  static inline Derived* instance_ = nullptr;
  static inline Derived* registered_ = nullptr;
  bool initialized_ = false;
};

class NumericTypeXoClass : public CorbelXoClass<NumericTypeXoClass, NumericType> {
 public:
  static constexpr const char* kName = "numerictype";
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;
  static constexpr const char* kDummyName = "NumericTypeXoClass";
  NumericTypeXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  void init_fi_methods();
  std::unique_ptr<NumericType> build(void** args, int nargs);

 private:
  friend class CorbelXoClass<NumericTypeXoClass, NumericType>;
  NumericTypeXoClass() = default;
};

// The three quantizer classes hold their object as a loggingquantizer (a slope-bias
// quantizer is one), so that the properties and methods they share read it alike.
class ModelessQuantizerXoClass : public CorbelXoClass<ModelessQuantizerXoClass, loggingquantizer> {
 public:
  static constexpr const char* kName = "ModelessQuantizer";
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;
  static constexpr const char* kDummyName = "ModelessQuantizerXoClass";
  ModelessQuantizerXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  std::unique_ptr<loggingquantizer> build(void** args, int nargs);
  // Keeps the dynamic type: a slope-bias quantizer copies as one.
  static loggingquantizer* copyObject(const loggingquantizer& q);

 private:
  friend class CorbelXoClass<ModelessQuantizerXoClass, loggingquantizer>;
  ModelessQuantizerXoClass() = default;
};

class QuantizerXoClass : public CorbelXoClass<QuantizerXoClass, loggingquantizer> {
 public:
  static constexpr const char* kName = "CoreQuantizer";
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;
  static constexpr const char* kDummyName = "QuantizerXoClass";
  QuantizerXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  std::unique_ptr<loggingquantizer> build(void** args, int nargs);
  static loggingquantizer* copyObject(const loggingquantizer& q) {
    return ModelessQuantizerXoClass::copyObject(q);
  }

 private:
  friend class CorbelXoClass<QuantizerXoClass, loggingquantizer>;
  QuantizerXoClass() = default;
};

class SlopeBiasQuantizerXoClass
    : public CorbelXoClass<SlopeBiasQuantizerXoClass, loggingquantizer> {
 public:
  static constexpr const char* kName = "slopebiasquantizer";
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;
  static constexpr const char* kDummyName = "SlopeBiasQuantizerXoClass";
  SlopeBiasQuantizerXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  std::unique_ptr<loggingquantizer> build(void** args, int nargs);
  static loggingquantizer* copyObject(const loggingquantizer& q) {
    return ModelessQuantizerXoClass::copyObject(q);
  }

 private:
  friend class CorbelXoClass<SlopeBiasQuantizerXoClass, loggingquantizer>;
  SlopeBiasQuantizerXoClass() = default;
};

class FimathXoClass : public CorbelXoClass<FimathXoClass, fimath> {
 public:
  static constexpr const char* kName = "fimath";
  static constexpr Msg kDummy = Msg::FimathDummyConstructor;
  static constexpr const char* kDummyName = "FimathXoClass";
  FimathXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  void init_fi_methods();
  std::unique_ptr<fimath> build(void** args, int nargs);

 private:
  friend class CorbelXoClass<FimathXoClass, fimath>;
  FimathXoClass() = default;
};

class FiXoClass : public CorbelXoClass<FiXoClass, fi> {
 public:
  static constexpr const char* kName = "CoreFi";
  static constexpr Msg kDummy = Msg::FiDummyConstructor;
  static constexpr const char* kDummyName = "FiXoClass";
  FiXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  // From 0 to 3 host values: the value, a numeric type, a fimath (more are refused).
  std::unique_ptr<fi> build(void** args, int nargs);
  static fi* copyObject(const fi& f) { return new fi(f, fi::WholeCopy); }
  std::vector<std::size_t> getInstanceDims(XoInterface* instance) const override;
  // The constructor signatures fill() made, in order (none before).
  const std::vector<XoMethodSignature*>& constructorSignatures() const { return constructors_; }

 private:
  friend class CorbelXoClass<FiXoClass, fi>;
  FiXoClass() = default;
  std::vector<XoMethodSignature*> constructors_;
};

class QloggerXoClass : public CorbelXoClass<QloggerXoClass, qlogger> {
 public:
  static constexpr const char* kName = "qloggerstruct";
  static constexpr Msg kDummy = Msg::XoClassDummyConstructor;
  static constexpr const char* kDummyName = "QloggerXoClass";
  QloggerXoClass(char c, int i, float f, double d) : CorbelXoClass(c, i, f, d) {}
  void fill();
  std::unique_ptr<qlogger> build(void** args, int nargs);

 private:
  friend class CorbelXoClass<QloggerXoClass, qlogger>;
  QloggerXoClass() = default;
};

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
