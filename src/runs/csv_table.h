// The cells of a CSV file, as libcsv splits them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qv::runs {

struct CsvRow {
  int line;  // in the file, from 1: where the row begins
  std::size_t first, count;
};

class CsvTable {
 public:
  // Splits a text. Throws qv::Error, which names the file, where a quote is not
  // closed, and in a build without libcsv.
  CsvTable(const std::string& file, std::string_view text, char delimiter);

  const std::vector<CsvRow>& rows() const { return rows_; }
  // "" where the row has no such cell.
  std::string_view cell(const CsvRow& row, std::size_t column) const {
    return column < row.count ? cells_[row.first + column] : std::string_view();
  }
  bool canHoldCommas() const { return canHoldCommas_; }  // the cells

 private:
  friend struct CsvSplitting;
  std::unique_ptr<char[]> text_;  // of all cells: together they are no longer than the file
  std::vector<std::string_view> cells_;
  std::vector<CsvRow> rows_;
  bool canHoldCommas_ = true;
};

}  // namespace qv::runs
