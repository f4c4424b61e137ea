#pragma once

#include <pybind11/pybind11.h>

namespace orvmesh::python {

// Each adds one part of the interface to the module.
void addErrors(pybind11::module_& module);
void addReading(pybind11::module_& module);
void addWriting(pybind11::module_& module);
void addTransfer(pybind11::module_& module);
void addCheck(pybind11::module_& module);
void addDumps(pybind11::module_& module);
void addSensors(pybind11::module_& module);
void addChannels(pybind11::module_& module);
void addMapping(pybind11::module_& module);
void addHeat(pybind11::module_& module);
void addFiles(pybind11::module_& module);

}  // namespace orvmesh::python
