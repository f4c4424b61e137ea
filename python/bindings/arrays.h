#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl/filesystem.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "bindings/errors.h"

namespace orvmesh::python {

namespace py = pybind11;
using Path = std::filesystem::path;
using Shape = std::vector<py::ssize_t>;

inline py::ssize_t lengthOf(std::size_t size) { return static_cast<py::ssize_t>(size); }

// One axis; two when an entry has several values.
inline Shape shapeOf(std::size_t values, int width) {
  if (width == 1) return {lengthOf(values)};
  return {lengthOf(values) / width, width};
}

// A read-only array over memory that `owner` keeps alive.
template <class T>
py::array view(std::span<const T> values, const Shape& shape, py::handle owner) {
  py::array array(py::dtype::of<T>(), shape, values.data(), owner);
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return array;
}

// A Python object that owns a C++ one, as the owner of arrays.
template <class T>
py::capsule owning(std::unique_ptr<T> object) {
  const py::capsule owner(object.get(),
                          [](void* owned) { std::default_delete<T>()(static_cast<T*>(owned)); });
  static_cast<void>(object.release());
  return owner;
}

// An array that takes the vector over.
template <class T>
py::array adopt(std::vector<T>&& values, int width = 1) {
  auto kept = std::make_unique<std::vector<T>>(std::move(values));
  const std::span<const T> content(*kept);
  return {py::dtype::of<T>(), shapeOf(content.size(), width), content.data(), owning(std::move(kept))};
}

template <class T>
using Input = py::array_t<T, py::array::c_style>;

// The values of an N x 3 array.
inline std::span<const double> pointsOf(const Input<double>& points, const char* name) {
  if (points.ndim() != 2 || points.shape(1) != 3)
    throw Fault(kArgument, "", std::string(name) + ": its shape must be (N, 3)");
  if (points.shape(0) >= 0x7FFFFFFF)
    throw Fault(kArgument, "", std::string(name) + ": more points than 2147483646");
  return {points.data(), static_cast<std::size_t>(points.size())};
}

}  // namespace orvmesh::python
