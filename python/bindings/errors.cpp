#include "bindings/errors.h"

#include <cctype>
#include <string_view>

#include "bindings/parts.h"

namespace py = pybind11;

namespace orvmesh::python {
namespace {

constexpr const char* kErrorDoc =
    "A job that could not be done; the text is one line that says what, where, and what would be right.\n\n"
    "code    sort of failure: \"source\" (a file that was to be read was refused), \"target\" (a file could "
    "not\n        be written; it is as it was), \"nothing-to-do\" (the source has nothing for this job), "
    "\"argument\"\n        (a value or array of the caller)\n"
    "file    path of the file concerned, \"\" where there is none\n"
    "entity  the place in the file or array, as \"elementsPlastic entry 17\" (entries from 1, of a file) or\n"
    "        \"elementsPlastic[16].nodes[2]\" (from 0, of arrays); \"\" where there is none";

// The beginning of the text, where that names a place.
std::string entityOf(std::string_view text) {
  const auto colon = text.find(": ");
  if (colon == std::string_view::npos) return text.starts_with("header field") ? "header" : "";
  const std::string_view place = text.substr(0, colon);
  const bool isPlace = place.find(" entry ") != std::string_view::npos ||
                       place.find('[') != std::string_view::npos ||
                       place.find_first_of(" /") == std::string_view::npos;
  return isPlace ? std::string(place) : "";
}

py::object fileName(const std::string& path) {
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<py::ssize_t>(path.size())));
}

void setError(PyObject* type, const Fault& fault) {
  const py::object file = fileName(fault.file());
  const py::object text = py::reinterpret_steal<py::object>(PyUnicode_DecodeUTF8(
      fault.what(), static_cast<py::ssize_t>(std::string_view(fault.what()).size()), "replace"));
  const py::object line = fault.file().empty() ? text : py::str("{}: {}").format(file, text);
  const py::object error = py::reinterpret_borrow<py::object>(type)(line);
  error.attr("code") = fault.code();
  error.attr("file") = file;
  error.attr("entity") = py::str(entityOf(fault.what()).c_str());
  PyErr_SetObject(type, error.ptr());
}

bool cut(std::string& line, const std::string& path) {
  if (path.empty() || !line.starts_with(path + ": ")) return false;
  line.erase(0, path.size() + 2);
  return true;
}

}  // namespace

Fault faultOf(const std::string& line, const Paths& paths) {
  std::string text = line;
  if (cut(text, paths.target)) return {kTarget, paths.target, text};
  if (cut(text, paths.source)) return {kSource, paths.source, text};
  const auto colon = text.find(": ");
  if (colon == std::string::npos) return {kSource, "", text};
  return {kSource, text.substr(0, colon), text.substr(colon + 2)};
}

std::mutex& oneAtATime() {
  static std::mutex mutex;
  return mutex;
}

void addErrors(py::module_& module) {
  static PyObject* type = nullptr;
  py::dict attributes;
  for (const char* name : {"code", "file", "entity"}) attributes[name] = "";
  type = PyErr_NewExceptionWithDoc("orvmesh.Error", kErrorDoc, PyExc_RuntimeError, attributes.ptr());
  if (type == nullptr) throw py::error_already_set();
  module.add_object("Error", py::handle(type));
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(std::move(thrown));
    } catch (const Fault& fault) {
      setError(type, fault);
    } catch (const Failure& failure) {
      setError(type, faultOf(failure.what(), {}));
    }
  });
}

}  // namespace orvmesh::python
