// Names and numbers of calculations, as callers in Python give them.
#pragma once

#include <string>

#include "python/extension/bars.h"

namespace qv::python {

// "adxPeriod" as "adx_period", as names are written in Python.
std::string pythonName(const std::string& name);

// The number of a parameter; throws an exception of Python that names it. `what` is the calculation's name.
double numberOf(PyObject* object, const QvCatalogueEntry& entry, int param, const char* what);

// An int argument; throws an exception that names it.
int intOf(PyObject* object, const char* name);

// "p must be 1 or more, it is 0" of the parameters that a calculation refused.
std::string refusal(const QvCatalogueEntry& entry, const double* params);

}  // namespace qv::python
