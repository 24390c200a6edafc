// The generic dispatcher: construction, property access, method calls and class listings.
#include "host/dispatcher.h"

#include "host/messages.h"
#include "host/xo_class.h"
#include "host/xo_package.h"
#include "host/xo_values.h"

namespace corbel::dispatcher {
namespace {

using Signatures = std::vector<std::unique_ptr<XoMethodSignature>>;

bool arity_fits(const XoMethodSignature& sig, std::size_t nargs) {
  const std::size_t n = sig.getArgTypes().size();
  return sig.isVarArgs() ? n > 0 && nargs >= n : nargs == n;
}

// The declared type of argument i (the last one repeats under the variable-argument flag).
const XoDataType& arg_type(const XoMethodSignature& sig, std::size_t i) {
  const auto& types = sig.getArgTypes();
  return *types[i < types.size() ? i : types.size() - 1];
}

std::string quoted_values(const XoEnumStringType& type) {
  std::string list;
  for (const auto& v : type.getValues()) {
    if (!list.empty()) list += ", ";
    list += "'" + v.text + "'";
  }
  return list;
}

// Raises the wrong-type error of argument i (0-based) of a method or constructor.
[[noreturn]] void raise_wrong_argument(const XoDataType& type, std::size_t i,
                                       const std::string& method, const std::string& cls) {
  const int n = static_cast<int>(i + 1);
  switch (type.getKind()) {
    case XoTypeKind::Int32:
      raise(Msg::XoArgumentNeedsInt32, n, method.c_str(), cls.c_str());
    case XoTypeKind::Double:
      raise(Msg::XoArgumentNeedsDouble, n, method.c_str(), cls.c_str());
    case XoTypeKind::Bool:
      raise(Msg::XoArgumentNeedsBool, n, method.c_str(), cls.c_str());
    case XoTypeKind::EnumString:
      raise(Msg::XoArgumentNeedsEnum, n, method.c_str(), cls.c_str(),
            quoted_values(static_cast<const XoEnumStringType&>(type)).c_str());
    case XoTypeKind::Class:
      raise(Msg::XoArgumentNeedsObject, n, method.c_str(), cls.c_str(), type.getName().c_str());
    default:
      raise(Msg::XoArgumentNeedsString, n, method.c_str(), cls.c_str());
  }
}

[[noreturn]] void raise_wrong_value(const XoDataType& type, const std::string& property,
                                    const std::string& cls) {
  const char* p = property.c_str();
  const char* c = cls.c_str();
  switch (type.getKind()) {
    case XoTypeKind::Int32:
      raise(Msg::XoPropertyNeedsInt32, p, c);
    case XoTypeKind::Double:
      raise(Msg::XoPropertyNeedsDouble, p, c);
    case XoTypeKind::Bool:
      raise(Msg::XoPropertyNeedsBool, p, c);
    case XoTypeKind::EnumString:
      raise(Msg::XoPropertyNeedsEnum, p, c,
            quoted_values(static_cast<const XoEnumStringType&>(type)).c_str());
    case XoTypeKind::Class:
      raise(Msg::XoPropertyNeedsObject, p, c, type.getName().c_str());
    default:
      raise(Msg::XoPropertyNeedsString, p, c);
  }
}

// The best signature for the arguments (see invoke in the header), or null when none fits.
XoMethodSignature* choose(const Signatures& signatures, std::span<const HostArray> args) {
  XoMethodSignature* best = nullptr;
  int best_score = -1;
  for (const auto& sig : signatures) {
    if (!arity_fits(*sig, args.size())) continue;
    int score = 0;
    for (std::size_t i = 0; i < args.size() && score >= 0; ++i) {
      const XoFit fit = xo_fit(arg_type(*sig, i), args[i]);
      score = fit == kNoFit ? -1 : score + 2 * fit;
    }
    if (score < 0) continue;
    if (!sig->isVarArgs()) ++score;  // a fixed arity wins a tie
    if (score > best_score) {
      best = sig.get();
      best_score = score;
    }
  }
  return best;
}

// Chooses a signature or raises the error that says why none fits.
XoMethodSignature* choose_or_raise(const Signatures& signatures, std::span<const HostArray> args,
                                   const std::string& method, const XoClass& cls,
                                   bool constructor) {
  if (XoMethodSignature* sig = choose(signatures, args)) return sig;
  const std::string class_name = cls.getPackageClassName();
  for (const auto& sig : signatures) {
    if (!arity_fits(*sig, args.size())) continue;
    for (std::size_t i = 0; i < args.size(); ++i) {
      if (xo_fit(arg_type(*sig, i), args[i]) == kNoFit) {
        raise_wrong_argument(arg_type(*sig, i), i, method, class_name);
      }
    }
  }
  const int n = static_cast<int>(args.size());
  if (constructor) raise(Msg::XoNoMatchingConstructor, class_name.c_str(), n);
  raise(Msg::XoNoMatchingSignature, method.c_str(), class_name.c_str(), n);
}

// The arguments converted to the signature's types (every one a HostArray* when there is no
// signature). The values are built before any pointer into them is taken.
struct Converted {
  std::vector<XoValue> values;
  std::vector<void*> pointers;

  Converted(const XoMethodSignature* sig, std::span<const HostArray> args) {
    static XoDataType* const any = XoTypeRepository::instance().getType(kXoHostArrayTypeName);
    values.reserve(args.size());
    for (std::size_t i = 0; i < args.size(); ++i) {
      values.emplace_back(sig ? arg_type(*sig, i) : *any, args[i]);
    }
    for (XoValue& v : values) pointers.push_back(v.pointer());
  }
  void** data() { return pointers.data(); }
  int size() const { return static_cast<int>(pointers.size()); }
};

XoClass& class_of(XoInterface* object) {
  return *object->getClass();
}

XoPropInfoTemplate& find_property(XoInterface* object, std::string_view name) {
  XoPropInfoTemplate* p = class_of(object).findProperty(name);
  if (!p) {
    raise(Msg::XoUnknownProperty, std::string(name).c_str(),
          class_of(object).getPackageClassName().c_str());
  }
  return *p;
}

std::string signature_text(const XoMethodSignature& sig) {
  auto list = [](const std::vector<XoDataType*>& types, bool var_args) {
    std::string s = "(";
    for (std::size_t i = 0; i < types.size(); ++i) {
      if (i) s += ", ";
      s += types[i]->getName();
    }
    if (var_args) s += ", ...";
    return s + ")";
  };
  return list(sig.getArgTypes(), sig.isVarArgs()) + " -> " + list(sig.getResultTypes(), false);
}

void list_class(const XoClass& cls, ClassListing& out) {
  for (const auto& p : cls.getProperties()) {
    if (p->getFlags() & kXoPropHidden) continue;
    PropertyListing entry{p->getName(), p->getType()->getName(), p->isReadOnly(), {}};
    if (p->getType()->getKind() == XoTypeKind::EnumString) {
      for (const auto& v : static_cast<const XoEnumStringType*>(p->getType())->getValues()) {
        entry.values.push_back(v.text);
      }
    }
    out.properties.push_back(std::move(entry));
  }
  for (const auto& m : cls.getMethods()) {
    MethodListing entry{m->getName(), {}};
    for (const auto& sig : m->getSignatures()) entry.signatures.push_back(signature_text(*sig));
    out.methods.push_back(std::move(entry));
  }
}

}  // namespace

XoClass* find_class(std::string_view class_name) {
  XoClass* cls = XoPackageManager::instance().findClass(class_name);
  if (!cls) raise(Msg::XoUnknownClass, std::string(class_name).c_str());
  return cls;
}

HostArray construct(std::string_view class_name, std::span<const HostArray> args) {
  XoClass* cls = find_class(class_name);
  const auto& signatures = cls->getConstructorSignatures();
  const XoMethodSignature* sig =
      signatures.empty() ? nullptr : choose_or_raise(signatures, args, cls->getName(), *cls, true);
  Converted converted(sig, args);

  // The fresh instance goes again if construction fails; destroyObject frees whatever part
  // of the object the class attached before failing.
  struct Pending {
    XoInterface* instance;
    ~Pending() {
      if (instance) instance->release();
    }
  } pending{XoInterface::create(cls)};
  XoInterface* made =
      cls->createClassSpecificObject(pending.instance, converted.data(), converted.size());
  if (!made) raise(Msg::XoConstructionFailed, cls->getPackageClassName().c_str());
  if (made == pending.instance) pending.instance = nullptr;
  Pending result{made};
  HostArray object = HostArray::make_object(made);
  return object;
}

HostArray duplicate(XoInterface* object) {
  XoInterface* copy = class_of(object).duplicateInstance(object);
  if (!copy) raise(Msg::XoConstructionFailed, class_of(object).getPackageClassName().c_str());
  HostArray result = HostArray::make_object(copy);
  copy->release();  // the array holds its own reference
  return result;
}

std::vector<std::size_t> dims(XoInterface* object) {
  return class_of(object).getInstanceDims(object);
}

bool has_method(XoInterface* object, std::string_view method) {
  return class_of(object).findMethod(method) != nullptr;
}

HostArray get_property(XoInterface* object, std::string_view property) {
  XoPropInfoTemplate& p = find_property(object, property);
  void* value = p.getValue(object);
  if (!value) {
    raise(Msg::XoNullValue, p.getName().c_str(), class_of(object).getPackageClassName().c_str());
  }
  struct Release {
    XoPropInfoTemplate& p;
    void* value;
    ~Release() { p.releaseValue(value); }
  } release{p, value};
  return xo_value_to_host(*p.getType(), value);
}

void set_property(XoInterface* object, std::string_view property, const HostArray& value) {
  XoPropInfoTemplate& p = find_property(object, property);
  const std::string class_name = class_of(object).getPackageClassName();
  if (p.isReadOnly()) raise(Msg::XoReadOnlyProperty, p.getName().c_str(), class_name.c_str());
  if (xo_fit(*p.getType(), value) == kNoFit)
    raise_wrong_value(*p.getType(), p.getName(), class_name);
  XoValue converted(*p.getType(), value);
  p.setValue(object, converted.pointer());
}

std::vector<HostArray> invoke(std::string_view method, std::span<const HostArray> args,
                              int nargout) {
  for (const HostArray& a : args) {
    if (a.object()) return invoke(a.object()->getClass(), method, args, nargout);
  }
  raise(Msg::XoNotAnObject, std::string(method).c_str());
}

std::vector<HostArray> invoke(XoClass* cls, std::string_view method,
                              std::span<const HostArray> args, int nargout) {
  XoMethodInfo* m = cls->findMethod(method);
  const std::string class_name = cls->getPackageClassName();
  if (!m) raise(Msg::XoUnknownMethod, std::string(method).c_str(), class_name.c_str());
  XoMethodSignature* sig = choose_or_raise(m->getSignatures(), args, m->getName(), *cls, false);
  Converted converted(sig, args);

  // Results beyond the declared ones travel as host arrays.
  const auto& declared = sig->getResultTypes();
  XoDataType* any = XoTypeRepository::instance().getType(kXoHostArrayTypeName);
  auto result_type = [&](std::size_t i) -> const XoDataType& {
    return i < declared.size() ? *declared[i] : *any;
  };
  const std::size_t room = std::max<std::size_t>(declared.size(), nargout > 0 ? nargout : 0);
  std::vector<void*> outputs(room, nullptr);
  // Every output slot the method filled is freed here, whatever happens below.
  struct Outputs {
    std::vector<void*>& slots;
    const decltype(result_type)& type;
    ~Outputs() {
      for (std::size_t i = 0; i < slots.size(); ++i) xo_delete_value(type(i), slots[i]);
    }
  } owned{outputs, result_type};

  int nout = nargout;
  m->invokeMethod(sig, &nout, outputs.data(), converted.size(), converted.data());
  if (nout < 0 || static_cast<std::size_t>(nout) > room) {
    raise(Msg::XoTooManyResults, m->getName().c_str(), class_name.c_str(), nout,
          static_cast<int>(room));
  }
  std::vector<HostArray> results;
  for (std::size_t i = 0; i < static_cast<std::size_t>(nout); ++i) {
    if (!outputs[i]) raise(Msg::XoNullValue, m->getName().c_str(), class_name.c_str());
    results.push_back(xo_value_to_host(result_type(i), outputs[i]));
  }
  return results;
}

ClassListing describe(std::string_view class_name) {
  return describe(*find_class(class_name));
}

ClassListing describe(const XoClass& cls) {
  ClassListing out;
  out.name = cls.getPackageClassName();
  if (cls.getSuperclass()) out.superclass = cls.getSuperclass()->getPackageClassName();
  for (const auto& sig : cls.getConstructorSignatures()) {
    out.constructors.push_back(signature_text(*sig));
  }
  for (const XoClass* c = &cls; c; c = c->getSuperclass()) list_class(*c, out);
  return out;
}

}  // namespace corbel::dispatcher
