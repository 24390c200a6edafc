// The operator functions of the Corbel value type and their installation.
#include "operators.h"

#include <octave/parse.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "corbel_object.h"
#include "guard.h"
#include "host/dispatcher.h"
#include "host/xo_class.h"
#include "host_values.h"

namespace corbel::octave_host {
namespace {

using Binary = octave_value::binary_op;
using Unary = octave_value::unary_op;

// The method behind a binary operator on two Corbel values; null when there is none.
constexpr const char* method_of(Binary op) {
  switch (op) {
    case octave_value::op_add:
      return "plus";
    case octave_value::op_sub:
      return "minus";
    case octave_value::op_el_mul:
      return "times";
    case octave_value::op_mul:
      return "mtimes";
    case octave_value::op_lt:
      return "lt";
    case octave_value::op_le:
      return "le";
    case octave_value::op_eq:
      return "eq";
    case octave_value::op_ge:
      return "ge";
    case octave_value::op_gt:
      return "gt";
    case octave_value::op_ne:
      return "ne";
    default:
      return nullptr;
  }
}

constexpr bool is_relation(Binary op) {
  return op >= octave_value::op_lt && op <= octave_value::op_ne;
}

// The relation that holds between b and a when op holds between a and b.
constexpr Binary swapped(Binary op) {
  switch (op) {
    case octave_value::op_lt:
      return octave_value::op_gt;
    case octave_value::op_le:
      return octave_value::op_ge;
    case octave_value::op_ge:
      return octave_value::op_le;
    case octave_value::op_gt:
      return octave_value::op_lt;
    default:
      return op;
  }
}

XoInterface* object_in(const octave_base_value& v) {
  if (v.type_id() != octave_corbel_object::static_type_id()) return nullptr;
  return static_cast<const octave_corbel_object&>(v).object();
}

[[noreturn]] void refuse(Binary op, const octave_base_value& a, const octave_base_value& b) {
  octave_raise(Msg::OctaveOperatorNotSupported, octave_value::binary_op_as_string(op).c_str(),
               a.class_name().c_str(), b.class_name().c_str());
}

// Whether the class of `object` has the method; remembered for the last class asked about,
// since one loop usually applies one operator to one class.
template <Binary Op>
bool class_has_method(XoInterface* object) {
  static const XoClass* last_class = nullptr;
  static bool last_answer = false;
  if (object->getClass() != last_class) {
    last_answer = dispatcher::has_method(object, method_of(Op));
    last_class = object->getClass();
  }
  return last_answer;
}

constexpr bool is_division(Binary op) {
  return op == octave_value::op_div || op == octave_value::op_el_div ||
         op == octave_value::op_ldiv || op == octave_value::op_el_ldiv;
}

// The divisions, of Corbel values with each other or with built-in values, are written in the
// M-file layer (__corbel_divide__.m), which chooses the quotient type.
octave_value divide(Binary op, const octave_base_value& a, const octave_base_value& b) {
  octave_value_list args;
  args(0) = octave_value(const_cast<octave_base_value*>(&a), true);
  args(1) = octave_value(const_cast<octave_base_value*>(&b), true);
  args(2) = octave_value(octave_value::binary_op_as_string(op));
  return octave::feval("__corbel_divide__", args, 1)(0);
}

template <Binary Op>
octave_value corbel_binary(const octave_base_value& a, const octave_base_value& b) {
  XoInterface* x = object_in(a);
  XoInterface* y = object_in(b);
  if constexpr (is_division(Op)) {
    return divide(Op, a, b);
  } else if constexpr (method_of(Op) == nullptr) {
    refuse(Op, a, b);
  } else {
    if (!x || !y || x->getClass() != y->getClass() || !class_has_method<Op>(x)) refuse(Op, a, b);
    return guarded([&] {
      const std::array<HostArray, 2> args{HostArray::make_object(x), HostArray::make_object(y)};
      std::vector<HostArray> results = dispatcher::invoke(method_of(Op), args, 1);
      return to_octave(std::move(results.at(0)));
    });
  }
}

constexpr bool is_arithmetic(Binary op) {
  return op == octave_value::op_add || op == octave_value::op_sub ||
         op == octave_value::op_el_mul || op == octave_value::op_mul;
}

// A fi with a built-in operand: the M-file layer (__corbel_mixed__.m) makes the built-in one
// a fi, then applies the operator.
octave_value arithmetic_with_builtin(Binary op, const octave_base_value& a,
                                     const octave_base_value& b) {
  octave_value_list args;
  args(0) = octave_value(const_cast<octave_base_value*>(&a), true);
  args(1) = octave_value(const_cast<octave_base_value*>(&b), true);
  args(2) = octave_value(octave_value::binary_op_as_string(op));
  return octave::feval("__corbel_mixed__", args, 1)(0);
}

template <Binary Op>
octave_value mixed_binary(const octave_base_value& a, const octave_base_value& b) {
  if constexpr (is_division(Op)) return divide(Op, a, b);
  if constexpr (is_arithmetic(Op)) {
    XoInterface* x = object_in(a) ? object_in(a) : object_in(b);
    const octave_base_value& other = object_in(a) ? b : a;
    const bool numeric = other.isnumeric() || other.islogical();
    if (!x || !numeric || !dispatcher::has_method(x, "subscriptedreference")) refuse(Op, a, b);
    return arithmetic_with_builtin(Op, a, b);
  }
  if constexpr (is_relation(Op)) {
    // The Corbel operand goes first, the relation turned round when it was second.
    XoInterface* x = object_in(a);
    const bool first = x != nullptr;
    if (!first) x = object_in(b);
    const char* method = method_of(first ? Op : swapped(Op));
    if (!x || !dispatcher::has_method(x, method)) refuse(Op, a, b);
    return guarded([&] {
      const octave_base_value& other = first ? b : a;
      const std::array<HostArray, 2> args{
          HostArray::make_object(x),
          to_host(octave_value(const_cast<octave_base_value*>(&other), true))};
      return to_octave(std::move(dispatcher::invoke(method, args, 1).at(0)));
    });
  }
  refuse(Op, a, b);
}

// The method behind a unary operator; null when there is none.
constexpr const char* method_of(Unary op) {
  switch (op) {
    case octave_value::op_uminus:
      return "uminus";
    case octave_value::op_transpose:
      return "transpose";
    case octave_value::op_hermitian:
      return "ctranspose";
    default:
      return nullptr;
  }
}

template <Unary Op>
octave_value corbel_unary(const octave_base_value& a) {
  XoInterface* x = object_in(a);
  if constexpr (method_of(Op) != nullptr) {
    if (x && dispatcher::has_method(x, method_of(Op))) {
      return guarded([&] {
        const std::array<HostArray, 1> args{HostArray::make_object(x)};
        return to_octave(std::move(dispatcher::invoke(method_of(Op), args, 1).at(0)));
      });
    }
  }
  octave_raise(Msg::OctaveUnaryOperatorNotSupported, octave_value::unary_op_as_string(Op).c_str(),
               a.class_name().c_str());
}

[[noreturn]] void refuse_concatenation(const octave_base_value& acc, const octave_base_value& elt) {
  const octave_base_value& corbel = object_in(elt) ? elt : acc;
  octave_raise(Msg::OctaveConcatenationNotSupported, corbel.class_name().c_str());
}

bool has_elements(XoInterface* x) {
  return x && dispatcher::has_method(x, "subscriptedreference");
}

// [acc, elt] and [acc; elt]: Octave has made acc (the first operand, or what the earlier ones
// made) the size of the result; elt goes into it at the subscripts `at`. The result takes the
// type and fimath of the first fi: a built-in acc becomes a fi of elt's numerictype and
// fimath, and elt's values are quantized into the result's type.
octave_value concatenate(const octave_base_value& acc, const octave_base_value& elt,
                         const Array<octave_idx_type>& at) {
  XoInterface* x = object_in(acc);
  XoInterface* y = object_in(elt);
  if ((x && !has_elements(x)) || (y && !has_elements(y))) refuse_concatenation(acc, elt);
  return guarded([&] {
    octave_value target;
    if (x) {
      target = octave_value(acc.clone());
    } else {
      const std::array<HostArray, 1> self{HostArray::make_object(y)};
      octave_value_list args;
      args(0) = octave_value(const_cast<octave_base_value*>(&acc), true);
      args(1) = to_octave(std::move(dispatcher::invoke("numerictype", self, 1).at(0)));
      args(2) = to_octave(std::move(dispatcher::invoke("fimath", self, 1).at(0)));
      target = octave::feval("fi", args, 1)(0);
    }
    auto& result =
        static_cast<octave_corbel_object&>(const_cast<octave_base_value&>(target.get_rep()));
    result.place(octave_value(const_cast<octave_base_value*>(&elt), true), at);
    return target;
  });
}

octave_value refuse_assignment(octave_base_value& lhs, const octave_value_list&,
                               const octave_base_value& rhs) {
  octave_raise(Msg::OctaveAssignmentNotSupported, rhs.class_name().c_str(),
               lhs.class_name().c_str());
}

// The built-in value types a Corbel value may meet as an operand: numbers of every class and
// shape, logical values and text (not cells, structs, functions or class objects).
bool is_builtin_value_type(std::string_view name) {
  constexpr std::string_view others[] = {
      "range",     "double_range", "bool",        "string",         "sq_string",
      "magic_int", "magic_uint",   "null_string", "null_sq_string", "lazy_index"};
  if (name.ends_with("scalar") || name.ends_with("matrix")) return true;
  for (std::string_view o : others) {
    if (name == o) return true;
  }
  return false;
}

template <std::size_t... Op>
void install_binary(octave::type_info& ti, int me, int other, std::index_sequence<Op...>) {
  if (other == me) {
    (ti.install_binary_op(static_cast<Binary>(Op), me, me, corbel_binary<static_cast<Binary>(Op)>),
     ...);
  } else {
    (ti.install_binary_op(static_cast<Binary>(Op), me, other,
                          mixed_binary<static_cast<Binary>(Op)>),
     ...);
    (ti.install_binary_op(static_cast<Binary>(Op), other, me,
                          mixed_binary<static_cast<Binary>(Op)>),
     ...);
  }
}

// A binary operator between a Corbel value and a value that is no number: always refused.
template <Binary Op>
octave_value refused_binary(const octave_base_value& a, const octave_base_value& b) {
  refuse(Op, a, b);
}

template <std::size_t... Op>
void install_refusals(octave::type_info& ti, int me, int other, std::index_sequence<Op...>) {
  (ti.install_binary_op(static_cast<Binary>(Op), me, other,
                        refused_binary<static_cast<Binary>(Op)>),
   ...);
  (ti.install_binary_op(static_cast<Binary>(Op), other, me,
                        refused_binary<static_cast<Binary>(Op)>),
   ...);
}

// Containers and functions, which Octave would otherwise refuse without an identifier.
bool is_refused_operand_type(std::string_view name) {
  constexpr std::string_view refused[] = {"cell",    "struct",   "scalar struct", "function handle",
                                          "cs-list", "onCleanup"};
  for (std::string_view r : refused) {
    if (name == r) return true;
  }
  return false;
}

template <std::size_t... Op>
void install_unary(octave::type_info& ti, int me, std::index_sequence<Op...>) {
  (ti.install_unary_op(static_cast<Unary>(Op), me, corbel_unary<static_cast<Unary>(Op)>), ...);
}

// Every binary operator up to the element-wise 'or' (the struct reference after it is not
// an operator a user writes), and every unary operator that leaves its operand unchanged.
using BinaryOps = std::make_index_sequence<octave_value::op_el_or + 1>;
using UnaryOps = std::make_index_sequence<octave_value::op_hermitian + 1>;

}  // namespace

void install_operators(octave::type_info& ti) {
  const int me = octave_corbel_object::static_type_id();
  install_binary(ti, me, me, BinaryOps{});
  install_unary(ti, me, UnaryOps{});
  ti.install_cat_op(me, me, concatenate);

  const string_vector names = ti.installed_type_names();  // index == type id
  for (octave_idx_type t = 0; t < names.numel(); ++t) {
    const int other = static_cast<int>(t);
    if (t != me && is_refused_operand_type(names(t))) install_refusals(ti, me, other, BinaryOps{});
    if (t == me || !is_builtin_value_type(names(t))) continue;
    install_binary(ti, me, other, BinaryOps{});
    ti.install_cat_op(me, other, concatenate);
    ti.install_cat_op(other, me, concatenate);
    ti.install_assign_op(octave_value::op_asn_eq, other, me, refuse_assignment);
  }
}

}  // namespace corbel::octave_host
