// A toy class for the object-system tests: a counter in package "toy" with one property of
// every value kind, a read-only property, and methods with several signatures.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/host_array.h"
#include "host/xo_class.h"
#include "host/xo_package.h"
#include "host/xo_types.h"

namespace corbel::toy {

struct Counter {
  std::int32_t count = 0;
  double scale = 1.0;
  bool enabled = true;
  std::string label = "counter";
  std::int32_t mode = 0;  // a code of the "toy Counter Mode" type
  std::int32_t serial = 0;
  XoInterface* partner = nullptr;  // holds a reference
  HostArray data;

  static inline int destroyed = 0;
  ~Counter() {
    ++destroyed;
    if (partner) partner->release();
  }
};

inline Counter& counter_of(XoInterface* instance) {
  return *static_cast<Counter*>(instance->getClassSpecificObject());
}

inline XoDataType* type(std::string_view name) {
  return XoTypeRepository::instance().getType(name);
}

// The enumerated mode type, made on first use and reused after (codes with a gap).
inline XoEnumStringType* mode_type() {
  static XoDataType* slot = XoTypeRepository::instance().getType("toy Counter Mode", 1);
  if (!slot) {
    auto t = std::make_unique<XoEnumStringType>("toy Counter Mode");
    t->addValue("up", 0);
    t->addValue("down", 1);
    t->addValue("hold", 5);
    slot = XoTypeRepository::instance().registerType(std::move(t));
  }
  return static_cast<XoEnumStringType*>(slot);
}

// A read-write property of one field of the counter.
template <class T, T Counter::*Field>
class FieldProp : public XoPropInfoTemplate {
 public:
  FieldProp(std::string name, XoDataType* type) : XoPropInfoTemplate(std::move(name), type) {}
  void* getValue(XoInterface* i) override { return new T(counter_of(i).*Field); }
  void setValue(XoInterface* i, void* v) override { counter_of(i).*Field = *static_cast<T*>(v); }
};

// Read-only: does not override setValue.
class SerialProp : public XoPropInfoTemplate {
 public:
  SerialProp() : XoPropInfoTemplate("Serial", type("int32"), kXoPropReadOnly) {}
  void* getValue(XoInterface* i) override { return new std::int32_t(counter_of(i).serial); }
};

class PartnerProp : public XoPropInfoTemplate {
 public:
  explicit PartnerProp(XoDataType* type) : XoPropInfoTemplate("Partner", type) {}
  void* getValue(XoInterface* i) override {
    XoInterface* p = counter_of(i).partner;
    if (!p) p = i;  // a counter without partner is its own partner
    p->addRef();
    return p;
  }
  void setValue(XoInterface* i, void* v) override {
    auto* p = static_cast<XoInterface*>(v);
    p->addRef();
    if (counter_of(i).partner) counter_of(i).partner->release();
    counter_of(i).partner = p;
  }
};

class DataProp : public XoPropInfoTemplate {
 public:
  DataProp() : XoPropInfoTemplate("Data", type("Norvak array")) {}
  void* getValue(XoInterface* i) override { return new HostArray(counter_of(i).data); }
  void setValue(XoInterface* i, void* v) override {
    counter_of(i).data = *static_cast<HostArray*>(v);
  }
};

// bump(c) adds 1, bump(c, n) adds n; both return the new count as a double.
class BumpMethod : public XoMethodInfo {
 public:
  explicit BumpMethod(XoDataType* self) : XoMethodInfo("bump") {
    addSignature().addArgType(self).addResultType(type("double"));
    addSignature().addArgType(self).addArgType(type("int32")).addResultType(type("double"));
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nin,
                    void** inputs) override {
    Counter& c = counter_of(static_cast<XoInterface*>(inputs[0]));
    c.count += nin == 2 ? *static_cast<std::int32_t*>(inputs[1]) : 1;
    outputs[0] = new double(c.count);
    *nout = 1;
  }
};

// add(c, n) adds an integer to the count and returns the count (int32); add(c, s) appends
// text to the label and returns the label (string).
class AddMethod : public XoMethodInfo {
 public:
  explicit AddMethod(XoDataType* self) : XoMethodInfo("add") {
    add_int_ =
        &addSignature().addArgType(self).addArgType(type("int32")).addResultType(type("int32"));
    addSignature().addArgType(self).addArgType(type("string")).addResultType(type("string"));
  }
  void invokeMethod(XoMethodSignature* matched, int* nout, void** outputs, int,
                    void** inputs) override {
    Counter& c = counter_of(static_cast<XoInterface*>(inputs[0]));
    if (matched == add_int_) {
      c.count += *static_cast<std::int32_t*>(inputs[1]);
      outputs[0] = new std::int32_t(c.count);
    } else {
      c.label += *static_cast<std::string*>(inputs[1]);
      outputs[0] = new std::string(c.label);
    }
    *nout = 1;
  }

 private:
  XoMethodSignature* add_int_;
};

// total(c, x, ...) : the count plus the first element of every further argument, and the
// number of arguments summed; takes any host arrays.
class TotalMethod : public XoMethodInfo {
 public:
  explicit TotalMethod(XoDataType* self) : XoMethodInfo("total") {
    addSignature()
        .addArgType(self)
        .addArgType(type("Norvak array"))
        .setVarArgs(true)
        .addResultType(type("double"))
        .addResultType(type("int32"));
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nin,
                    void** inputs) override {
    double sum = counter_of(static_cast<XoInterface*>(inputs[0])).count;
    for (int i = 1; i < nin; ++i) sum += static_cast<HostArray*>(inputs[i])->real_as_double(0);
    outputs[0] = new double(sum);
    outputs[1] = new std::int32_t(nin - 1);
    *nout = 2;
  }
};

class CounterClass : public XoClass {
 public:
  CounterClass() : XoClass("Counter") {}

  // Adds the class to `package` and fills it; its own class type is the "self" argument type.
  void init(XoPackage* package) {
    package->addClass(this);
    XoDataType* self = getClassType();
    addConstructorSignature();
    addConstructorSignature().addArgType(type("int32"));
    addProperty(std::make_unique<FieldProp<std::int32_t, &Counter::count>>("Count", type("int32")));
    addProperty(std::make_unique<FieldProp<double, &Counter::scale>>("Scale", type("double")));
    addProperty(std::make_unique<FieldProp<bool, &Counter::enabled>>("Enabled", type("bool")));
    addProperty(std::make_unique<FieldProp<std::string, &Counter::label>>("Label", type("string")));
    addProperty(std::make_unique<FieldProp<std::int32_t, &Counter::mode>>("Mode", mode_type()));
    addProperty(std::make_unique<SerialProp>());
    addProperty(std::make_unique<PartnerProp>(self));
    addProperty(std::make_unique<DataProp>());
    addMethod(std::make_unique<BumpMethod>(self));
    addMethod(std::make_unique<AddMethod>(self));
    addMethod(std::make_unique<TotalMethod>(self));
  }

  XoInterface* createClassSpecificObject(XoInterface* instance, void** args, int nargs) override {
    auto c = std::make_unique<Counter>();
    c->serial = ++serials_;
    if (nargs == 1) c->count = *static_cast<std::int32_t*>(args[0]);
    instance->setClassSpecificObject(c.release());
    return instance;
  }
  void destroyObject(XoInterface* instance) override {
    delete static_cast<Counter*>(instance->getClassSpecificObject());
  }

 private:
  int serials_ = 0;
};

// A package "toy" holding a fresh Counter class for the lifetime of a test.
class ToyPackage {
 public:
  ToyPackage() : package_(XoPackageManager::instance().createPackage("toy", true)) {
    counter_.init(package_);
  }
  ~ToyPackage() { XoPackageManager::instance().removePackage(package_); }
  CounterClass& counter() { return counter_; }
  XoPackage* package() { return package_; }

 private:
  XoPackage* package_;
  CounterClass counter_;
};

}  // namespace corbel::toy
