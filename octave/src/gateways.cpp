// The Octave functions of corbel.oct. Users call the constructors and methods of the M-file
// layer; those call these gateways. Each one runs inside guarded(), so no failure of the
// library can leave Octave.
#include <octave/interpreter.h>
#include <octave/oct.h>

#include <sstream>
#include <string>
#include <vector>

#include "binding/corbel_entry.h"
#include "class_names.h"
#include "corbel_object.h"
#include "guard.h"
#include "host/dispatcher.h"
#include "host/xo_class.h"
#include "host_values.h"
#include "octave_host.h"
#include "operators.h"

using namespace corbel;
using namespace corbel::octave_host;

namespace {

// Registers the value type and its operators, makes this the active host and creates the
// classes, once per Octave session. mlock keeps corbel.oct loaded while values of its type
// exist: unloading it under a live value would leave Octave calling freed code.
void register_once(octave::interpreter& interp) {
  if (octave_corbel_object::static_type_id() >= 0) return;
  guarded([&] {
    set_host_services(&the_octave_host());
    static bool classes_made = false;
    if (!classes_made) {
      NVInitialize_corbel();
      classes_made = true;
    }
  });
  octave::type_info& ti = interp.get_type_info();
  octave_corbel_object::register_type(ti);
  install_operators(ti);
  interp.mlock();
}

std::string name_argument(const octave_value_list& args, const char* gateway, const char* what) {
  if (args.length() < 1 || !args(0).is_string() || args(0).rows() > 1) {
    octave_raise(Msg::OctaveNeedsName, gateway, what);
  }
  return args(0).string_value();
}

// The class an introspection gateway describes: that of a Corbel value, or a class name.
dispatcher::ClassListing listing_of(const octave_value_list& args, const char* gateway) {
  if (args.length() == 1) {
    if (XoInterface* object = octave_corbel_object::object_of(args(0))) {
      return guarded([&] { return dispatcher::describe(*object->getClass()); });
    }
    if (args(0).is_string() && args(0).rows() <= 1) {
      return guarded([&] { return dispatcher::describe(core_class_name(args(0).string_value())); });
    }
  }
  octave_raise(Msg::OctaveNeedsObject, gateway);
}

// Invokes `method` with args(first ...) and gives its results.
octave_value_list call_method(const std::string& method, const octave_value_list& args, int first,
                              int nargout) {
  return guarded([&] {
    const std::vector<HostArray> in = to_host(args, first);
    if (method == "disp" && nargout > 0) {
      // 'str = disp (a)': the text disp would print.
      std::ostringstream text;
      {
        OutputTo redirect(text);
        dispatcher::invoke(method, in, 0);
      }
      return ovl(text.str());
    }
    return to_octave(dispatcher::invoke(method, in, nargout));
  });
}

Cell column_of(const std::vector<std::string>& names) {
  Cell out(dim_vector(static_cast<octave_idx_type>(names.size()), 1));
  for (std::size_t i = 0; i < names.size(); ++i) out(static_cast<octave_idx_type>(i)) = names[i];
  return out;
}

}  // namespace

DEFMETHOD_DLD(__corbel_register__, interp, , ,
              "-*- texinfo -*-\n@deftypefn {} {} __corbel_register__ ()\n"
              "Register the Corbel value type and classes (once per session).\n@end deftypefn") {
  register_once(interp);
  return ovl();
}

DEFMETHOD_DLD(__corbel_new__, interp, args, ,
              "-*- texinfo -*-\n@deftypefn {} {@var{obj} =} __corbel_new__ (@var{class}, @dots{})\n"
              "Construct an instance of a Corbel class (\"fi\", \"fimath\", "
              "\"embedded.numerictype\", ...) from the remaining arguments.\n@end deftypefn") {
  register_once(interp);
  const std::string cls = name_argument(args, "__corbel_new__", "class");
  return guarded([&] {
    const std::vector<HostArray> in = to_host(args, 1);
    return ovl(to_octave(dispatcher::construct(core_class_name(cls), in)));
  });
}

DEFMETHOD_DLD(__corbel_call__, interp, args, nargout,
              "-*- texinfo -*-\n@deftypefn {} {[@dots{}] =} __corbel_call__ (@var{method}, "
              "@dots{})\nCall a method of the class of the first Corbel object among the "
              "arguments.\n@end deftypefn") {
  register_once(interp);
  const std::string method = name_argument(args, "__corbel_call__", "method");
  return call_method(method, args, 1, nargout);
}

DEFMETHOD_DLD(__corbel_method__, interp, args, ,
              "-*- texinfo -*-\n@deftypefn {} {@var{results} =} __corbel_method__ (@var{method}, "
              "@var{nargout}, @dots{})\nAs __corbel_call__, with the number of results asked "
              "for given as an argument and the results returned in one cell array: the form "
              "the generated method files use, which Octave runs faster than a list "
              "assignment.\n@end deftypefn") {
  register_once(interp);
  const std::string method = name_argument(args, "__corbel_method__", "method");
  const int nargout =
      args.length() > 1 ? args(1).xint_value("__corbel_method__: NARGOUT must be an integer") : 0;
  const octave_value_list results = call_method(method, args, 2, nargout);
  return ovl(Cell(results));
}

DEFMETHOD_DLD(__corbel_live__, interp, , ,
              "-*- texinfo -*-\n@deftypefn {} {@var{n} =} __corbel_live__ ()\n"
              "The number of Corbel instances alive in this session.\n@end deftypefn") {
  register_once(interp);
  return ovl(static_cast<double>(XoInterface::getLiveCount()));
}

DEFMETHOD_DLD(__corbel_properties__, interp, args, ,
              "-*- texinfo -*-\n@deftypefn {} {@var{names} =} __corbel_properties__ "
              "(@var{obj_or_class})\nThe property names of a Corbel value or class, in order, "
              "as a column cell array.\n@end deftypefn") {
  register_once(interp);
  const dispatcher::ClassListing listing = listing_of(args, "__corbel_properties__");
  std::vector<std::string> names;
  for (const auto& p : listing.properties) names.push_back(p.name);
  return ovl(column_of(names));
}

DEFMETHOD_DLD(__corbel_methods__, interp, args, ,
              "-*- texinfo -*-\n@deftypefn {} {@var{names} =} __corbel_methods__ "
              "(@var{obj_or_class})\nThe method names of a Corbel value or class, in order, "
              "as a column cell array.\n@end deftypefn") {
  register_once(interp);
  const dispatcher::ClassListing listing = listing_of(args, "__corbel_methods__");
  std::vector<std::string> names;
  for (const auto& m : listing.methods) names.push_back(m.name);
  return ovl(column_of(names));
}

DEFMETHOD_DLD(__corbel_error__, interp, args, ,
              "-*- texinfo -*-\n@deftypefn {} {} __corbel_error__ (@var{name}, @var{text})\n"
              "Raise the message catalogue's error @var{name}, with an optional text argument: "
              "the way the M-file layer raises its errors.\n@end deftypefn") {
  register_once(interp);
  const std::string name = name_argument(args, "__corbel_error__", "message");
  const std::optional<Msg> m = message_named(name);
  if (!m) octave_raise(Msg::OctaveUnknownMessage, name.c_str());
  const std::string text = args.length() > 1 && args(1).is_string() ? args(1).string_value() : "";
  octave_raise(*m, text.c_str());
}
