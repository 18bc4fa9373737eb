// Options, bonds, point and figure.
#pragma once

#include "python/extension/arrays.h"

namespace qv::python {

void addFinance(py::module_& module);

}  // namespace qv::python
