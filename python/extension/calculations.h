// The catalogue's calculations as functions of Python.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "python/extension/bars.h"

namespace qv::python {

// "adxPeriod" as "adx_period", as names are written in Python.
std::string pythonName(const std::string& name);

// The number of a parameter; throws an exception of Python that names it. `what` is the calculation's name.
double numberOf(PyObject* object, const QvCatalogueEntry& entry, int param, const char* what);

// An int argument; throws an exception that names it.
int intOf(PyObject* object, const char* name);

void addCalculations(py::module_& module);

}  // namespace qv::python
