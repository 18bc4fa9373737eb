// What is where in a CSV file, told by its header line, and how its dates and numbers are written, told by
// all of its data.
#pragma once

#include <array>
#include <string>

#include "runs/csv_table.h"
#include "runs/csv_values.h"

namespace qv::runs {

// The columns that are known; kVolume and later ones may be missing.
enum CsvField {
  kDate,
  kTime,
  kOpen,
  kHigh,
  kLow,
  kClose,
  kVolume,
  kOpenInterest,
  kAdjustedClose,
  kEpoch,  // seconds since 1970, where there is no date
  kFieldCount
};
constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

struct CsvLayout {
  char delimiter = ',';
  int headerLine = 0;  // of the file, from 1
  std::array<std::size_t, kFieldCount> column;
  std::array<std::string, kFieldCount> heading;
  DateOrder dates = DateOrder::YearFirst;
  bool decimalComma = false;

  CsvLayout() { column.fill(kNoColumn); }
  bool has(CsvField field) const { return column[field] != kNoColumn; }
};

// Finds the header line among the first lines. Throws qv::Error, which names the file, where there is none.
CsvLayout findHeader(const std::string& file, std::string_view text);

// Finds out how dates and numbers are written. Throws where that can't be told.
void settleDates(const std::string& file, const CsvTable& table, DateOrder wanted, CsvLayout& layout);
void settleDecimals(const std::string& file, const CsvTable& table, DecimalSign wanted, CsvLayout& layout);

// "comma between cells, dates in Date as year-month-day, ..."
std::string describe(const CsvLayout& layout);

}  // namespace qv::runs
