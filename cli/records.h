// Library records that free themselves, and library errors as exceptions of the tool.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "qvlib60.h"

namespace qvcli {

struct Series : QvArray {
  Series() : QvArray{} {}
  ~Series() { qvFreeArray(this); }
  Series(const Series&) = delete;
  Series& operator=(const Series&) = delete;
};

struct BarSet : QvBars {
  BarSet() : QvBars{} {}
  ~BarSet() { qvFreeBars(this); }
  BarSet(const BarSet&) = delete;
  BarSet& operator=(const BarSet&) = delete;
};

// "WHAT: the library's text of the code".
inline std::string errorText(int code, const std::string& what) {
  char text[32];
  qvErrDesc(code, text);
  return what + ": " + text;
}

// Throws when a library call failed. Some calculations answer a positive number for a period that
// does not fit; that is a failure too.
inline void check(int status, const std::string& what) {
  if (status < 0) throw std::runtime_error(errorText(status, what));
  if (status > 0) throw std::runtime_error(what + ": the period does not fit the data");
}

}  // namespace qvcli
