// What the catalogue tells of its calculations, as data.
#pragma once

#include <pybind11/pybind11.h>

namespace qv::python {

void addCatalogue(pybind11::module_& module);

}  // namespace qv::python
