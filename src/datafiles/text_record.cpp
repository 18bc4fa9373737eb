#include "datafiles/text_record.h"

#include <algorithm>

#include "datafiles/line_reader.h"
#include "datafiles/texts.h"
#include "dates/calendar.h"
#include "qvlib60/dates.h"

namespace qv::datafiles {

namespace {

// A column as the date and time parsers take it.
struct ColumnText {
  char text[kDataLine + 1];
  explicit ColumnText(std::string_view column) noexcept { text[column.copy(text, kDataLine)] = '\0'; }
};

double dateOf(std::string_view column, int format) noexcept {
  return column.empty() ? 0.0 : qvDateStrToDate(ColumnText(column).text, format);
}
double timeOf(std::string_view column) noexcept {
  return column.empty() ? 0.0 : qvTimeStrToTime(ColumnText(column).text);
}

}  // namespace

TextRecord::TextRecord(const QvTxtInfo& layout) noexcept
    : layout_(layout),
      timeColumn_(layout.timeColumn == layout.dateColumn ? 0 : layout.timeColumn),
      columns_(textOf(layout_.delimiters)) {}

void TextRecord::splitDate(std::string_view line) noexcept {
  columns_.split(trimmedFront(line), layout_.dateColumn);
}

void TextRecord::splitDateTime(std::string_view line) noexcept {
  columns_.split(trimmedFront(line), std::max(layout_.dateColumn, timeColumn_));
}

bool TextRecord::splitBar(std::string_view line) noexcept {
  if (isBlank(line)) return false;
  columns_.split(trimmedFront(line), std::max({layout_.dateColumn, timeColumn_, layout_.openColumn,
                                               layout_.highColumn, layout_.lowColumn, layout_.closeColumn,
                                               layout_.volumeColumn, layout_.openInterestColumn}));
  return true;
}

double TextRecord::date() const noexcept {
  return dateOf(columns_[layout_.dateColumn], layout_.dateFormat);
}

double TextRecord::dateTime() const noexcept {
  return dates::withTime(date(), timeOf(columns_[timeColumn_]));
}

Bar TextRecord::bar() const noexcept {
  return {dateTime(),
          decimalValue(columns_[layout_.openColumn]),
          decimalValue(columns_[layout_.highColumn]),
          decimalValue(columns_[layout_.lowColumn]),
          decimalValue(columns_[layout_.closeColumn]),
          decimalValue(columns_[layout_.volumeColumn]),
          decimalValue(columns_[layout_.openInterestColumn])};
}

}  // namespace qv::datafiles
