// Arrays of Python: series to read and series to fill, without a copy wherever the memory is as the library
// wants it.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <string>

#include "qvlib60.hpp"

namespace qv::python {

namespace py = pybind11;

// What the package's Python side does for the extension; set once, when the package is imported.
struct Package {
  PyObject* doubles = nullptr;      // (values, name): an array of doubles
  PyObject* indexOf = nullptr;      // (values, like): the index that results take
  PyObject* wrapped = nullptr;      // (array, index, name): with that index
  PyObject* resultType = nullptr;   // (calculation): the named tuple of its outputs
  PyObject* dateNumber = nullptr;   // (date): its number
  PyObject* bars = nullptr;         // the class Bars
  PyObject* barsOfFrame = nullptr;  // (object): the Bars of a data frame, None for anything else
};
extern Package package;
void connect(py::module_& module);

// An array of one dimension whose items are doubles of this machine, side by side.
bool isPlain(PyObject* object);

// Where the first item stands that is a number; the size where none does.
int firstNumber(const double* items, int size);

// Items below n become not-a-number.
void eraseBelow(QvArray& series, int n);

// A series of somebody's data, borrowed while `keeper` lives. It is not to be written.
struct Input {
  QvArray series{};
  py::object keeper;  // null: the caller's argument itself
};

// The series of any argument: numbers of any kind in one dimension. Items that are not numbers at the
// beginning have no value yet: the first valid index stands behind them. Throws an exception of Python that
// names the argument.
Input inputOf(PyObject* object, const char* name);

// A new array, not cleared.
py::object newArray(int size);

// The series of an array that a caller gives to be filled, of exactly that size. Throws as above.
QvArray outputOf(PyObject* object, const char* name, int size);

// A series over an array that newArray made.
QvArray seriesOf(PyObject* plain);

bool overlap(const QvArray& a, const QvArray& b);

// The exceptions of Python that stand for a status below 0.
[[noreturn]] void fail(const std::string& what, int status);

}  // namespace qv::python
