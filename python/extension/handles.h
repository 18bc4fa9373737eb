// Classes of the extension that only the extension makes objects of.
#pragma once

#include <pybind11/pybind11.h>

#include <memory>

namespace qv::python {

namespace py = pybind11;

// Python can neither make an object of such a class, with T.__new__ either, nor derive from it: whoever holds
// one holds a whole one.
template <typename T>
class Handle : public py::class_<T> {
 public:
  Handle(py::module_& module, const char* name, const char* doc)
      : py::class_<T>(module, name, doc, py::is_final()) {
    auto* const made = reinterpret_cast<PyTypeObject*>(this->ptr());
    made->tp_new = nullptr;
    PyType_Modified(made);
  }
};

template <typename T, typename... Arguments>
py::object make(Arguments&&... arguments) {
  return py::cast(std::make_unique<T>(std::forward<Arguments>(arguments)...));
}

}  // namespace qv::python
