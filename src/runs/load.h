// Price files of any kind as bar sets: CSV files with a header line, text files with a layout file, and the
// directories of other vendors, whose securities are named DIR/NAME.
#pragma once

#include <string>
#include <vector>

#include "qvlib60.hpp"

namespace qv::runs {

// How dates and numbers are written in a CSV file that does not settle it.
enum class DateOrder { Unknown, DayFirst, MonthFirst, YearFirst };
enum class DecimalSign { Unknown, Point, Comma };

struct LoadOptions {
  std::string type;  // CSV, or a type of qvFILEread; empty: told by directory and file
  DateOrder dates = DateOrder::Unknown;
  DecimalSign decimal = DecimalSign::Unknown;
  bool adjusted = false;  // CSV: prices adjusted by the column "Adj Close"
};

// A row of a file that became no bar.
struct LeftOut {
  int line;  // of a CSV file; in other files the record, from 1
  std::string why;
};

// What was read. Prices that the file has no column for are its closes, volumes and open interest 0, and none
// of these series has a valid item: formulas do not know them. A volume that is missing in a row is
// not-a-number.
struct Loaded {
  Bars bars;               // oldest first
  std::string type;        // "CSV", "TXT", "CT" ...
  std::string layout;      // of a CSV file: what was found, in words
  std::vector<int> lines;  // of a CSV file: where each bar stands
  std::vector<LeftOut> leftOut;
  const char* unit() const { return type == "CSV" ? "line" : "record"; }
};

// The bars of a file, or of the security NAME of a directory. Throws qv::Error, which names the file, where
// nothing can be read or the file is ambiguous.
Loaded load(const std::string& file, const LoadOptions& options = {});
inline Bars loadBars(const std::string& file, const LoadOptions& options = {}) {
  return std::move(load(file, options).bars);
}

}  // namespace qv::runs
