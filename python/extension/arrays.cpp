#include "python/extension/arrays.h"

#include <cmath>
#include <functional>
#include <limits>
#include <new>

namespace qv::python {

namespace {

using Numpy = py::detail::npy_api;

constexpr int kLongest = 0x40000000;

PyObject* doubleType() {
  static PyObject* const type = Numpy::get().PyArray_DescrFromType_(Numpy::NPY_DOUBLE_);
  return type;
}

const py::detail::PyArray_Proxy* proxyOf(PyObject* array) {
  return py::detail::array_proxy(array);
}

int sizeOf(PyObject* array, const char* name) {
  const Py_ssize_t size = proxyOf(array)->dimensions[0];
  if (size > kLongest) throw py::value_error(std::string(name) + ": more than 1,073,741,824 items");
  return static_cast<int>(size);
}

}  // namespace

Package package;

void connect(py::module_& module) {
  doubleType();
  module.def("connect", [](py::object doubles, py::object indexOf, py::object wrapped, py::object resultType,
                           py::object dateNumber, py::object bars, py::object barsOfFrame) {
    if (package.bars) return;
    package = {doubles.release().ptr(),    indexOf.release().ptr(),    wrapped.release().ptr(),
               resultType.release().ptr(), dateNumber.release().ptr(), bars.release().ptr(),
               barsOfFrame.release().ptr()};
  });
}

bool isPlain(PyObject* object) {
  if (Py_TYPE(object) != Numpy::get().PyArray_Type_) return false;
  const py::detail::PyArray_Proxy* a = proxyOf(object);
  constexpr int kNeeded = Numpy::NPY_ARRAY_C_CONTIGUOUS_ | Numpy::NPY_ARRAY_ALIGNED_;
  if (a->nd != 1 || (a->flags & kNeeded) != kNeeded) return false;
  // Arrays that were pickled have a type of their own that means the same.
  return a->descr == doubleType() || Numpy::get().PyArray_EquivTypes_(a->descr, doubleType());
}

int firstNumber(const double* items, int size) {
  int first = 0;
  while (first < size && std::isnan(items[first])) ++first;
  return first;
}

void eraseBelow(QvArray& series, int n) {
  std::fill_n(series.data, std::clamp(n, 0, series.size), std::numeric_limits<double>::quiet_NaN());
}

QvArray seriesOf(PyObject* plain) {
  const int size = sizeOf(plain, "array");
  return {reinterpret_cast<double*>(proxyOf(plain)->data), size, size, 0};
}

Input inputOf(PyObject* object, const char* name) {
  Input in;
  if (!isPlain(object)) {
    in.keeper = py::handle(package.doubles)(py::handle(object), name);
    if (!isPlain(in.keeper.ptr()))
      throw py::type_error(std::string(name) + ": numbers in one dimension are wanted");
    object = in.keeper.ptr();
  }
  const int size = sizeOf(object, name);
  double* items = reinterpret_cast<double*>(proxyOf(object)->data);
  in.series = {items, size, size, firstNumber(items, size)};
  return in;
}

py::object newArray(int size) {
  const Py_intptr_t shape[] = {size};
  PyObject* type = doubleType();
  Py_INCREF(type);  // taken over by the array
  auto array = py::reinterpret_steal<py::object>(Numpy::get().PyArray_NewFromDescr_(
      Numpy::get().PyArray_Type_, type, 1, shape, nullptr, nullptr, 0, nullptr));
  if (!array) throw py::error_already_set();
  return array;
}

QvArray outputOf(PyObject* object, const char* name, int size) {
  if (!isPlain(object) || !(proxyOf(object)->flags & Numpy::NPY_ARRAY_WRITEABLE_))
    throw py::type_error(std::string(name) +
                         ": a numpy array of float64 in one dimension is wanted, contiguous and writeable");
  const int room = sizeOf(object, name);
  if (room != size)
    throw py::value_error(std::string(name) + ": " + std::to_string(size) + " items are wanted, it has " +
                          std::to_string(room));
  return seriesOf(object);
}

bool overlap(const QvArray& a, const QvArray& b) {
  const std::less<const double*> before;
  return a.size > 0 && b.size > 0 && before(a.data, b.data + b.size) && before(b.data, a.data + a.size);
}

void fail(const std::string& what, int status) {
  if (status == QV_MALLOC) throw std::bad_alloc();
  throw Error(what, status);
}

}  // namespace qv::python
