#include "runs/csv.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/bar_series.h"
#include "runs/csv_layout.h"

namespace qv::runs {

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

// Reads row after row into a bar set that has room for all of them.
class RowReader {
 public:
  RowReader(const CsvTable& table, const CsvLayout& layout, const LoadOptions& options, Loaded& to)
      : table_(table), layout_(layout), adjusted_(options.adjusted), to_(to) {}

  void read(const CsvRow& row) {
    why_.clear();
    double date = 0.0;
    if (row.count > columns_ && !trailingAreEmpty(row))
      why_ = std::to_string(row.count) + " cells under " + std::to_string(columns_) + " headings";
    else if (readDateOf(row, date))
      readPrices(row, date);
    if (!why_.empty()) to_.leftOut.push_back({row.line, why_});
  }
  void header(const CsvRow& row) { columns_ = row.count; }

 private:
  bool trailingAreEmpty(const CsvRow& row) const {
    for (std::size_t k = columns_; k < row.count; ++k)
      if (!table_.cell(row, k).empty()) return false;
    return true;
  }

  bool fail(CsvField field, std::string_view cell, const char* wrong) {
    const std::string& name = layout_.heading[field];
    const std::string what = name.empty() ? "the first column" : name;
    constexpr std::size_t kShown = 40;
    why_ = isMissing(cell) ? what + " is missing"
                           : what + " is " + wrong + ": " + std::string(cell.substr(0, kShown));
    return false;
  }

  bool readDateOf(const CsvRow& row, double& date) {
    const std::string_view cell = table_.cell(row, layout_.column[kDate]);
    DateParts parts;
    if (readDate(cell, parts)) {
      if (layout_.has(kTime) && !parts.hasTime) {
        const std::string_view time = table_.cell(row, layout_.column[kTime]);
        if (!isMissing(time) && !readTime(time, parts.time)) return fail(kTime, time, "no time");
      }
      date = dateOf(parts, layout_.dates);
    } else if (!readEpoch(cell, date)) {
      date = 0.0;
    }
    return date != 0.0 || fail(kDate, cell, "no date");
  }

  bool readCell(const CsvRow& row, CsvField field, double& value) {
    const std::string_view cell = table_.cell(row, layout_.column[field]);
    return readNumber(cell, layout_.decimalComma, value) || fail(field, cell, "no number");
  }

  void readPrices(const CsvRow& row, double date) {
    double price[4];  // open .. close
    if (!readCell(row, kClose, price[3])) return;
    for (int k = 0; k < 3; ++k) {
      const auto field = static_cast<CsvField>(kOpen + k);
      price[k] = price[3];
      if (layout_.has(field) && !readCell(row, field, price[k])) return;
    }
    if (adjusted_) {
      double close;
      if (!readCell(row, kAdjustedClose, close)) return;
      const double factor = price[3] != 0.0 ? close / price[3] : 1.0;
      for (int k = 0; k < 3; ++k) price[k] *= factor;
      price[3] = close;
    }
    double volume[2] = {0.0, 0.0};
    for (int k = 0; k < 2; ++k) {
      const auto field = static_cast<CsvField>(kVolume + k);
      const std::string_view cell = table_.cell(row, layout_.column[field]);
      if (!layout_.has(field)) continue;
      if (readNumber(cell, layout_.decimalComma, volume[k])) continue;
      if (!isMissing(cell)) {
        fail(field, cell, "no number");
        return;
      }
      volume[k] = kMissing;
    }
    Bars& b = to_.bars;
    const int i = b.barsize++;
    b.date.data[i] = date;
    for (int k = 0; k < 4; ++k) seriesOf(b, 1 + k).data[i] = price[k];
    b.volume.data[i] = volume[0];
    b.openInterest.data[i] = volume[1];
    to_.lines.push_back(row.line);
  }

  const CsvTable& table_;
  const CsvLayout& layout_;
  const bool adjusted_;
  Loaded& to_;
  std::size_t columns_ = 0;
  std::string why_;
};

// Whether most steps go back in time.
bool isNewestFirst(const Bars& b) {
  int back = 0, forth = 0;
  for (int i = 1; i < b.barsize; ++i) {
    back += b.date.data[i] < b.date.data[i - 1];
    forth += b.date.data[i] > b.date.data[i - 1];
  }
  return back > forth;
}

void reverse(Loaded& to) {
  for (int k = 0; k < 7; ++k) {
    QvArray& a = (&to.bars.date)[k];
    std::reverse(a.data, a.data + to.bars.barsize);
  }
  std::reverse(to.lines.begin(), to.lines.end());
}

// From where on a series holds values. One without a column, or with nothing in it, has none at all.
void markUnknown(QvArray& series, int n, bool hasColumn, bool isPrice) {
  int first = 0;
  while (first < n && std::isnan(series.data[first])) ++first;
  if (!hasColumn || first == n) {
    if (!isPrice) std::fill(series.data, series.data + n, 0.0);
    first = n;
  }
  std::fill(series.data, series.data + (isPrice ? 0 : std::min(first, n)), 0.0);
  series.firstValid = first;
}

}  // namespace

Loaded readCsv(const std::string& file, std::string_view text, const LoadOptions& options) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos)
    throw Error(file, "the file is empty", QV_FILE_READ);
  if (text.size() > 1u << 30) throw Error(file, "larger than 1 GB", QV_MALLOC);
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
      text.substr(0, 4096).find('\0') != std::string_view::npos)
    throw Error(file, "no text in UTF-8 or ASCII", QV_FILE_READ);

  CsvLayout layout = findHeader(file, text);
  if (options.adjusted && !layout.has(kAdjustedClose))
    throw Error(file, "no column Adj Close, which --adjusted needs", QV_FILE_READ);
  const CsvTable table(file, text, layout.delimiter);
  settleDates(file, table, options.dates, layout);
  settleDecimals(file, table, options.decimal, layout);

  Loaded to;
  to.type = "CSV";
  const int rows = Series::lengthOf(table.rows().size());
  to.bars = Bars(rows);
  to.bars.barsize = 0;
  to.lines.reserve(table.rows().size());
  RowReader reader(table, layout, options, to);
  for (const CsvRow& row : table.rows()) {
    if (row.line == layout.headerLine) reader.header(row);
    if (row.line > layout.headerLine) reader.read(row);
  }
  Bars& bars = to.bars;
  if (bars.barsize == 0) {
    if (to.leftOut.empty()) throw Error(file, "no rows below the header line", QV_FILE_READ);
    throw Error(file,
                "no row can be read: line " + std::to_string(to.leftOut[0].line) + ": " + to.leftOut[0].why,
                QV_FILE_READ);
  }
  const bool newestFirst = isNewestFirst(bars);
  if (newestFirst) reverse(to);
  const int n = bars.barsize;
  check(qvReSizeBars(&bars, n), file);
  for (int k = 0; k < 3; ++k)
    markUnknown(seriesOf(bars, 1 + k), n, layout.has(static_cast<CsvField>(kOpen + k)), true);
  markUnknown(bars.volume, n, layout.has(kVolume), false);
  markUnknown(bars.openInterest, n, layout.has(kOpenInterest), false);
  bars.reccnt = rows;
  to.layout = describe(layout) + (newestFirst ? ", newest first" : ", oldest first");
  return to;
}

}  // namespace qv::runs
