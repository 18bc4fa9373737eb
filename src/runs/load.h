// Price files of any kind as bar sets: CSV files with a header line, text files with a layout file, and the
// directories of other vendors, whose securities are named DIR/NAME.
#pragma once

#include <string>

#include "qvlib60.hpp"

namespace qv::runs {

// The order of a date's parts in CSV files that do not settle it.
enum class DateOrder { Unknown, DayFirst, MonthFirst, YearFirst };

struct LoadOptions {
  std::string type;                      // CSV, or a type of qvFILEread; empty: told by directory and file
  DateOrder dates = DateOrder::Unknown;  // CSV
  bool adjusted = false;                 // CSV: prices adjusted by the column "Adj Close"
};

// The bars of a file, or of the security NAME of a directory, oldest first. Throws qv::Error, which names the
// file, where nothing can be read.
Bars loadBars(const std::string& file, const LoadOptions& options = {});

}  // namespace qv::runs
