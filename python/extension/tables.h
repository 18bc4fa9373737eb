// Columns of tables: each becomes one of a data frame.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "python/extension/arrays.h"

namespace qv::python {

// An array of numbers, with a number of each row.
template <typename Rows, typename Of>
py::object numbers(const Rows& rows, Of of) {
  py::array_t<double> column(static_cast<py::ssize_t>(std::size(rows)));
  double* to = column.mutable_data();
  for (const auto& row : rows) *to++ = static_cast<double>(of(row));
  return column;
}
template <typename Rows, typename Of>
py::object integers(const Rows& rows, Of of) {
  py::array_t<std::int64_t> column(static_cast<py::ssize_t>(std::size(rows)));
  std::int64_t* to = column.mutable_data();
  for (const auto& row : rows) *to++ = of(row);
  return column;
}
template <typename Rows, typename Of>
py::object texts(const Rows& rows, Of of) {
  py::list column;
  for (const auto& row : rows) column.append(py::str(std::string(of(row))));
  return column;
}

}  // namespace qv::python
