// The library for the tool's sources: its C++ header, and calls whose result is no figure to print.
#pragma once

#include <string>

#include "qvlib60.hpp"

namespace qvcli {

// Throws when a library call failed. Some calculations answer a positive number for a period that
// does not fit; that is a failure too.
inline void check(int status, const std::string& what) {
  if (qv::check(status, what) > 0) throw qv::Error(what, "the period does not fit the data", status);
}

}  // namespace qvcli
