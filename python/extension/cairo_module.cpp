// The extension _cairo of the Python package: PNG and PDF. Apart from _core, which must load where Cairo is
// not.
#include <pybind11/pybind11.h>

#include "runs/picture.h"

PYBIND11_MODULE(_cairo, module) {
  module.attr("writer") = pybind11::capsule(reinterpret_cast<void*>(&qv::runs::writeCairo));
}
