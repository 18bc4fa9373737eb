// Errors of the library as exceptions of Python.
#pragma once

#include <pybind11/pybind11.h>

#include <new>

#include "qvlib60.hpp"

namespace qv::python {

namespace py = pybind11;

// Sets the exception that stands for an error: OSError for files that are not there or not to be written,
// MemoryError, else ValueError.
inline void setError(const Error& e) {
  switch (e.code()) {
    case QV_MALLOC:
      PyErr_NoMemory();
      return;
    case QV_FILE_OPEN:
    case QV_FILE_NOT_FOUND:
      PyErr_SetString(PyExc_FileNotFoundError, e.what());
      return;
    case QV_FILE_EXISTS:
      PyErr_SetString(PyExc_FileExistsError, e.what());
      return;
    case QV_FILE_WRITE:
    case QV_FILE_SEEK:
      PyErr_SetString(PyExc_OSError, e.what());
      return;
    default:
      PyErr_SetString(PyExc_ValueError, e.what());
  }
}

// What a function of Python answers: that of `work`, or null with an exception set.
// What the handlers call sets the exception and throws none.
template <typename Work>
PyObject* guarded(Work work) noexcept {  // NOLINT(bugprone-exception-escape)
  try {
    return work();
  } catch (py::error_already_set& e) {
    e.restore();
  } catch (const py::builtin_exception& e) {
    e.set_error();
  } catch (const Error& e) {
    setError(e);
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& e) {
    PyErr_SetString(PyExc_RuntimeError, e.what());
  }
  return nullptr;
}

}  // namespace qv::python
