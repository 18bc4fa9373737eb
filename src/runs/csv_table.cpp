#include "runs/csv_table.h"

#include <algorithm>
#include <cstring>

#include "qvlib60.hpp"

#ifdef QV_WITH_LIBCSV
#include <csv.h>
#endif

namespace qv::runs {

#ifdef QV_WITH_LIBCSV

// What libcsv's callbacks work on.
struct CsvSplitting {
  CsvTable& table;
  std::size_t used = 0, start = 0;  // of the text: so far, and up to the row
  std::size_t first = 0;            // of the row's cells
  int line = 1;                     // where the row begins
  bool overLines = false;           // a cell of the last row went over several lines

  static void cell(void* text, std::size_t length, void* data) {
    auto& s = *static_cast<CsvSplitting*>(data);
    char* const to = s.table.text_.get() + s.used;
    if (length > 0) std::memcpy(to, text, length);
    s.used += length;
    s.table.cells_.emplace_back(to, length);
  }
  static void row(int end, void* data) {
    auto& s = *static_cast<CsvSplitting*>(data);
    const std::size_t count = s.table.cells_.size() - s.first;
    if (count > 0) s.table.rows_.push_back({s.line, s.first, count});
    const std::string_view text(s.table.text_.get() + s.start, s.used - s.start);
    s.overLines = text.find('\n') != std::string_view::npos;
    const auto lines = s.overLines ? std::count(text.begin(), text.end(), '\n') : 0;
    s.line += static_cast<int>(lines) + (end == '\n');
    s.start = s.used;
    s.first = s.table.cells_.size();
  }
};

CsvTable::CsvTable(const std::string& file, std::string_view text, char delimiter)
    : text_(new char[text.size() + 1]) {
  cells_.reserve(text.size() / 6 + 16);
  canHoldCommas_ = delimiter != ',' || text.find('"') != std::string_view::npos;
  CsvSplitting splitting{*this};
  csv_parser parser;
  // Every end of a line is reported, so that rows know their line.
  if (csv_init(&parser, CSV_REPALL_NL) != 0) throw Error(file, "libcsv does not start", QV_MALLOC);
  csv_set_delim(&parser, static_cast<unsigned char>(delimiter));
  const std::unique_ptr<csv_parser, decltype(&csv_free)> freed(&parser, csv_free);
  const bool split = csv_parse(&parser, text.data(), text.size(), CsvSplitting::cell, CsvSplitting::row,
                               &splitting) == text.size();
  splitting.overLines = false;
  if (!split || csv_fini(&parser, CsvSplitting::cell, CsvSplitting::row, &splitting) != 0)
    throw Error(file, csv_strerror(csv_error(&parser)), QV_MALLOC);
  // A quote that is not closed takes in all lines up to the file's end.
  if (splitting.overLines)
    throw Error(file, "line " + std::to_string(rows_.back().line) + ": a quote is not closed", QV_FILE_READ);
}

#else

CsvTable::CsvTable(const std::string& file, std::string_view, char) {
  throw Error(file, "this build reads no CSV files: libcsv (libcsv-dev) was missing when it was made",
              QV_FILE_OPEN);
}

#endif

}  // namespace qv::runs
