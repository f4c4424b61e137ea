#include <pybind11/pybind11.h>

#include "bindings/parts.h"

PYBIND11_MODULE(_orvmesh, module) {
  using namespace orvmesh::python;
  module.doc() = "The compiled half of the package orvmesh: arrays and plain values in and out, no classes.";
  module.attr("version") = ORVMESH_VERSION_TEXT;
  for (const auto add : {addErrors, addReading, addWriting, addTransfer, addCheck, addDumps, addSensors,
                         addChannels, addMapping, addHeat, addFiles})
    add(module);
}
