// The Corbel value type: copies, class names, dimensions, properties and display.
#include "corbel_object.h"

#include <octave/interpreter.h>
#include <octave/ov-struct.h>
#include <octave/parse.h>
#include <octave/pr-output.h>

#include <array>
#include <iterator>

#include "class_names.h"
#include "guard.h"
#include "host/dispatcher.h"
#include "host/xo_class.h"
#include "host_values.h"
#include "indexing.h"
#include "octave_host.h"

using namespace corbel;
using namespace corbel::octave_host;

int octave_corbel_object::s_type_id = -1;

namespace {

// The Octave class name of a value holding no instance (the type's prototype).
constexpr const char* kNoInstanceName = "corbel_object";

std::string octave_name_of(const XoInterface* object) {
  return object ? octave_class_name(object->getClass()->getName()) : kNoInstanceName;
}

}  // namespace

octave_corbel_object::~octave_corbel_object() {
  if (!m_obj) return;
  try {
    m_obj->release();
  } catch (...) {
    // A destructor cannot report; the library's own destroy routines do not throw.
  }
}

XoInterface* octave_corbel_object::object_of(const octave_value& v) {
  if (v.type_id() != s_type_id || s_type_id < 0) return nullptr;
  return static_cast<const octave_corbel_object&>(v.get_rep()).m_obj;
}

void octave_corbel_object::register_type(octave::type_info& ti) {
  s_type_id =
      ti.register_type("corbel_object", "embedded", octave_value(new octave_corbel_object()));
}

octave_base_value* octave_corbel_object::clone() const {
  if (!m_obj) return new octave_corbel_object();
  return guarded([&] {
    HostArray copy = dispatcher::duplicate(m_obj);
    return new octave_corbel_object(copy.detach_object());
  });
}

octave_base_value* octave_corbel_object::empty_clone() const {
  if (!m_obj || !indexable()) octave_raise(Msg::OctaveIndexingNotSupported, class_name().c_str());
  // An empty array of this type and fimath, which the assignment then grows.
  return guarded([&] {
    const octave_value empty = const_cast<octave_corbel_object*>(this)->element_call(
        "subscriptedreference", NDArray(dim_vector(0, 0)), nullptr);
    XoInterface* object = object_of(empty);
    object->addRef();
    return new octave_corbel_object(object);
  });
}

std::string octave_corbel_object::class_name() const {
  return octave_name_of(m_obj);
}

dim_vector octave_corbel_object::dims() const {
  if (!m_obj) return dim_vector(0, 0);
  return guarded([&] { return to_dim_vector(dispatcher::dims(m_obj)); });
}

bool octave_corbel_object::is_true() const {
  octave_raise(Msg::OctaveNotACondition, class_name().c_str());
}

octave_value octave_corbel_object::map(unary_mapper_t umap) const {
  octave_raise(Msg::OctaveNotNumeric, get_umap_name(umap), class_name().c_str());
}

octave_value octave_corbel_object::as_double() const {
  octave_raise(Msg::OctaveNotNumeric, "double", class_name().c_str());
}

double octave_corbel_object::double_value(bool) const {
  octave_raise(Msg::OctaveNotNumeric, "Conversion to double", class_name().c_str());
}

Matrix octave_corbel_object::matrix_value(bool) const {
  octave_raise(Msg::OctaveNotNumeric, "Conversion to a double matrix", class_name().c_str());
}

NDArray octave_corbel_object::array_value(bool) const {
  octave_raise(Msg::OctaveNotNumeric, "Conversion to a double array", class_name().c_str());
}

octave_value octave_corbel_object::get(const std::string& property) const {
  return to_octave(dispatcher::get_property(m_obj, property));
}

void octave_corbel_object::set(const std::string& property, const octave_value& value) {
  make_instance_unique();
  dispatcher::set_property(m_obj, property, to_host(value));
}

void octave_corbel_object::make_instance_unique() {
  if (m_obj->getRefCount() == 1) return;
  HostArray copy = dispatcher::duplicate(m_obj);
  m_obj->release();
  m_obj = copy.detach_object();
}

bool octave_corbel_object::indexable() const {
  return dispatcher::has_method(m_obj, "subscriptedreference");
}

octave_value octave_corbel_object::element_call(const char* method, const NDArray& positions,
                                                const octave_value* values, const char* operation) {
  std::vector<HostArray> args{HostArray::make_object(m_obj), to_host(octave_value(positions))};
  if (values) args.push_back(to_host(*values));
  if (operation) args.push_back(HostArray::make_text(operation));
  std::vector<HostArray> results = dispatcher::invoke(method, args, values ? 0 : 1);
  return results.empty() ? octave_value() : to_octave(std::move(results.front()));
}

octave_value octave_corbel_object::subsref(const std::string& type,
                                           const std::list<octave_value_list>& idx) {
  const std::string cls = class_name();
  octave_value value = guarded([&] {
    if (!m_obj) raise(Msg::OctaveNeedsObject, "subsref");
    if (type[0] == '(' && indexable()) {
      const dim_vector dv = dims();
      const octave_idx_type at = scalar_position(dv, idx.front());
      NDArray positions = at > 0 ? NDArray(dim_vector(1, 1), static_cast<double>(at))
                                 : index_positions(dv, idx.front());
      return element_call("subscriptedreference", positions, nullptr);
    }
    if (type[0] == '(') raise(Msg::OctaveIndexingNotSupported, cls.c_str());
    if (type[0] == '{') raise(Msg::OctaveBraceIndexing, cls.c_str());
    return get(idx.front()(0).xstring_value("a property name must be text"));
  });
  return value.next_subsref(type, idx);
}

octave_value octave_corbel_object::subsasgn(const std::string& type,
                                            const std::list<octave_value_list>& idx,
                                            const octave_value& rhs) {
  const std::string cls = class_name();
  guarded([&] {
    if (!m_obj) raise(Msg::OctaveNeedsObject, "subsasgn");
    if (type[0] == '(' && type.size() == 1 && indexable()) {
      assign_elements(idx.front(), rhs);
      return;
    }
    if (type[0] == '(') raise(Msg::OctaveIndexingNotSupported, cls.c_str());
    if (type[0] == '{') raise(Msg::OctaveBraceIndexing, cls.c_str());
    const std::string name = idx.front()(0).xstring_value("a property name must be text");
    if (type.size() == 1) {
      set(name, rhs);
      return;
    }
    // 'a.P(2) = v', 'a.P.Q = v': change a copy of the property's value, then store it back.
    octave_value part = get(name);
    const std::list<octave_value_list> rest(std::next(idx.begin()), idx.end());
    part = part.subsasgn(type.substr(1), rest, rhs);
    set(name, part);
  });
  return octave_value(this, true);
}

void octave_corbel_object::assign_elements(const octave_value_list& idx, const octave_value& rhs) {
  const dim_vector dv = dims();
  // One element in range, one value: in place.
  const octave_idx_type at = scalar_position(dv, idx);
  if (at > 0 && !rhs.isnull() && rhs.numel() == 1) {
    make_instance_unique();
    element_call("subsasgn", NDArray(dim_vector(1, 1), static_cast<double>(at)), &rhs);
    return;
  }
  // Otherwise a new array laid out as Octave lays out doubles, growth and deletion included.
  const dim_vector rhs_dims = rhs.dims();
  const NDArray layout = assignment_layout(dv, idx, rhs.isnull() ? nullptr : &rhs_dims);
  std::vector<HostArray> args{HostArray::make_object(m_obj), to_host(octave_value(layout))};
  if (!rhs.isnull()) args.push_back(to_host(rhs));
  std::vector<HostArray> results = dispatcher::invoke("subscriptedgrowassignment", args, 1);
  XoInterface* made = results.empty() ? nullptr : results.front().detach_object();
  if (!made) raise(Msg::OctaveResultClass, "subscriptedgrowassignment");
  m_obj->release();
  m_obj = made;
}

octave_value octave_corbel_object::reshape(const dim_vector& dims) const {
  if (!m_obj || !indexable()) octave_raise(Msg::OctaveNotNumeric, "reshape", class_name().c_str());
  return guarded([&] {
    RowVector sizes(dims.ndims());
    for (int i = 0; i < dims.ndims(); ++i) sizes(i) = static_cast<double>(dims(i));
    const std::array<HostArray, 2> args{HostArray::make_object(m_obj),
                                        to_host(octave_value(sizes))};
    return to_octave(std::move(dispatcher::invoke("fi_reshape", args, 1).at(0)));
  });
}

octave_value octave_corbel_object::squeeze() const {
  if (!m_obj || !indexable()) return octave_base_value::squeeze();
  return guarded([&] {
    const std::array<HostArray, 1> args{HostArray::make_object(m_obj)};
    return to_octave(std::move(dispatcher::invoke("squeeze", args, 1).at(0)));
  });
}

octave_value octave_corbel_object::permute(const Array<int>& order, bool inverse) const {
  if (!m_obj || !indexable()) return octave_base_value::permute(order, inverse);
  return guarded([&] {
    const NDArray positions = permuted_positions(dims(), order, inverse);
    return const_cast<octave_corbel_object*>(this)->element_call("subscriptedreference", positions,
                                                                 nullptr);
  });
}

octave_value octave_corbel_object::resize(const dim_vector& dv, bool) const {
  // Octave resizes the first element of '[a, b]' before it concatenates: the elements keep
  // their subscripts, and the new ones are zeros.
  if (!m_obj || !indexable())
    octave_raise(Msg::OctaveConcatenationNotSupported, class_name().c_str());
  return guarded([&] {
    const std::array<HostArray, 2> args{HostArray::make_object(m_obj),
                                        to_host(octave_value(resized_layout(dims(), dv)))};
    return to_octave(std::move(dispatcher::invoke("subscriptedgrowassignment", args, 1).at(0)));
  });
}

void octave_corbel_object::place(const octave_value& values, const Array<octave_idx_type>& at) {
  make_instance_unique();
  element_call("subsasgn", placed_positions(dims(), values.dims(), at), &values, "concatenation");
}

void octave_corbel_object::print(std::ostream& os, bool pr_as_read_syntax) {
  print_raw(os, pr_as_read_syntax);
  newline(os);
}

void octave_corbel_object::print_raw(std::ostream& os, bool) const {
  if (!m_obj) return;
  // A fi shown on Octave's console follows the display preferences (fipref), which the
  // M-file layer applies; elsewhere, and without that layer, the class displays itself.
  if (indexable() && &os == &octave_stdout &&
      octave::interpreter::the_interpreter()
          ->get_symbol_table()
          .find_function("__corbel_show__")
          .is_defined()) {
    octave::feval("__corbel_show__", octave_value(const_cast<octave_corbel_object*>(this), true));
    return;
  }
  guarded([&] {
    if (dispatcher::has_method(m_obj, "disp")) {
      OutputTo redirect(os);
      dispatcher::invoke("disp", std::vector<HostArray>{HostArray::make_object(m_obj)}, 0);
      return;
    }
    // A class without its own display shows its properties as a struct would.
    octave_scalar_map fields;
    for (const auto& p : dispatcher::describe(*m_obj->getClass()).properties) {
      try {
        fields.assign(p.name, get(p.name));
      } catch (const HostError&) {
        // A property that cannot be read now is left out of the display.
      }
    }
    octave_value(fields).print_raw(os);
  });
}

bool octave_corbel_object::print_name_tag(std::ostream& os, const std::string& name) const {
  indent(os);
  os << name << " =";
  newline(os);
  if (!Vcompact_format) newline(os);
  return true;
}

// ---- save and load --------------------------------------------------------------------

octave_value octave_corbel_object::saved_fields() const {
  if (!m_obj) octave_raise(Msg::OctaveSaveNotSupported, kNoInstanceName);
  return octave::feval("__corbel_saved__",
                       octave_value(const_cast<octave_corbel_object*>(this), true), 1)(0);
}

bool octave_corbel_object::restore(const octave_value& fields) {
  const octave_value value = octave::feval("__corbel_restored__", fields, 1)(0);
  XoInterface* restored = object_of(value);
  if (!restored) return false;
  // The loaded value is a fresh one from the type's prototype: it holds no instance yet.
  restored->addRef();
  if (m_obj) m_obj->release();
  m_obj = restored;
  return true;
}

bool octave_corbel_object::save_ascii(std::ostream& os) {
  return saved_fields().save_ascii(os);
}

bool octave_corbel_object::load_ascii(std::istream& is) {
  octave_value fields(new octave_scalar_struct());
  return fields.load_ascii(is) && restore(fields);
}

bool octave_corbel_object::save_binary(std::ostream& os, bool save_as_floats) {
  return saved_fields().save_binary(os, save_as_floats);
}

bool octave_corbel_object::load_binary(std::istream& is, bool swap,
                                       octave::mach_info::float_format fmt) {
  octave_value fields(new octave_scalar_struct());
  return fields.load_binary(is, swap, fmt) && restore(fields);
}

bool octave_corbel_object::save_hdf5(octave_hdf5_id loc_id, const char* name, bool save_as_floats) {
  return saved_fields().save_hdf5(loc_id, name, save_as_floats);
}

bool octave_corbel_object::load_hdf5(octave_hdf5_id loc_id, const char* name) {
  octave_value fields(new octave_scalar_struct());
  return fields.load_hdf5(loc_id, name) && restore(fields);
}
