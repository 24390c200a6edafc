// octave_corbel_object: the one Octave value type of every Corbel class. It holds one
// reference on an instance of the object system; Octave's reference counting shares a value
// between variables, and clone() (which Octave calls before changing a shared value) makes a
// deep copy, so 'b = a; b.WordLength = 8' leaves a as it was.
#pragma once

#include <octave/oct.h>
#include <octave/ov-base.h>
#include <octave/ov-typeinfo.h>

#include <list>
#include <string>

namespace corbel {
class XoInterface;
}

class octave_corbel_object : public octave_base_value {
 public:
  // The prototype Octave keeps in its type table: holds no instance.
  octave_corbel_object() = default;
  // Takes over one reference on `object`.
  explicit octave_corbel_object(corbel::XoInterface* object) : m_obj(object) {}
  ~octave_corbel_object();
  octave_corbel_object(const octave_corbel_object&) = delete;
  octave_corbel_object& operator=(const octave_corbel_object&) = delete;

  // The instance a value holds (borrowed), or null when the value is not a Corbel object.
  static corbel::XoInterface* object_of(const octave_value& v);
  corbel::XoInterface* object() const { return m_obj; }

  octave_base_value* clone() const override;
  // Octave asks for an empty value of the type before assigning into elements of a variable
  // that does not exist yet ('x(2) = a'): an empty fi of this type and fimath; other classes
  // refuse.
  octave_base_value* empty_clone() const override;

  static void register_type(octave::type_info& ti);
  static int static_type_id() { return s_type_id; }
  int type_id() const override { return s_type_id; }
  std::string type_name() const override { return "corbel_object"; }
  // "embedded.fi", "embedded.fimath", ...: class(), isa and method dispatch follow it.
  std::string class_name() const override;

  bool is_defined() const override { return true; }
  dim_vector dims() const override;
  // 'a.Prop = v' asks for the number of elements the dot assigns to: one object.
  octave_idx_type xnumel(const octave_value_list& idx) override {
    return idx.empty() ? 1 : octave_base_value::xnumel(idx);
  }
  bool is_true() const override;
  // Octave's element-wise functions (abs, sqrt, floor, ...) reach a value without a method
  // of that name through map(), and its numeric functions through the conversions to
  // double: both refuse with an identifier, naming the function or conversion.
  octave_value map(unary_mapper_t umap) const override;
  octave_value as_double() const override;
  double double_value(bool = false) const override;
  Matrix matrix_value(bool = false) const override;
  NDArray array_value(bool = false) const override;

  // save and load write a struct of built-in values that the M-file layer makes from the
  // value and makes the value from again (__corbel_saved__, __corbel_restored__).
  bool save_ascii(std::ostream& os) override;
  bool load_ascii(std::istream& is) override;
  bool save_binary(std::ostream& os, bool save_as_floats) override;
  bool load_binary(std::istream& is, bool swap, octave::mach_info::float_format fmt) override;
  bool save_hdf5(octave_hdf5_id loc_id, const char* name, bool save_as_floats) override;
  bool load_hdf5(octave_hdf5_id loc_id, const char* name) override;

  octave_value subsref(const std::string& type, const std::list<octave_value_list>& idx) override;
  octave_value_list subsref(const std::string& type, const std::list<octave_value_list>& idx,
                            int) override {
    return subsref(type, idx);
  }
  octave_value subsasgn(const std::string& type, const std::list<octave_value_list>& idx,
                        const octave_value& rhs) override;
  octave_value resize(const dim_vector&, bool = false) const override;
  // Assigns the elements of `values` into the block of this array that starts at the
  // zero-based subscripts `at` (concatenation).
  void place(const octave_value& values, const Array<octave_idx_type>& at);
  // reshape, squeeze and permute of an array of elements.
  octave_value reshape(const dim_vector& dims) const override;
  octave_value squeeze() const override;
  octave_value permute(const Array<int>& order, bool inverse = false) const override;

  void print(std::ostream& os, bool pr_as_read_syntax = false) override;
  void print_raw(std::ostream& os, bool pr_as_read_syntax = false) const override;
  bool print_name_tag(std::ostream& os, const std::string& name) const override;

 private:
  // The struct save writes for this value, and the value a loaded struct describes.
  octave_value saved_fields() const;
  bool restore(const octave_value& fields);
  octave_value get(const std::string& property) const;
  void set(const std::string& property, const octave_value& value);
  // Whether the instance has elements to index (a fi).
  bool indexable() const;
  // Calls an element method with this instance, positions and (for an assignment) values,
  // and the name an assignment reports its quantizations under (when not "assignment").
  octave_value element_call(const char* method, const NDArray& positions,
                            const octave_value* values, const char* operation = nullptr);
  // a(idx) = rhs and a(idx) = [].
  void assign_elements(const octave_value_list& idx, const octave_value& rhs);
  // Makes the instance this value's own before it is changed in place: the library may
  // hold further references to it (an object stored in another object's property).
  void make_instance_unique();

  corbel::XoInterface* m_obj = nullptr;
  static int s_type_id;
};
