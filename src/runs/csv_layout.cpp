#include "runs/csv_layout.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "core/characters.h"

namespace qv::runs {

namespace {

// How data sites head a column, without signs and blanks. The first of a field that is there is taken.
struct Heading {
  CsvField field;
  const char* text;
};
constexpr Heading kHeadings[] = {
    {kDate, "date"},
    {kDate, "datetime"},
    {kDate, "timestamp"},
    {kDate, "tradedate"},
    {kDate, "tradingdate"},
    {kDate, "tradingday"},
    {kDate, "day"},
    {kDate, "gmttime"},
    {kDate, "localtime"},
    {kDate, "datetimeutc"},
    {kDate, "opentime"},
    {kDate, "exchangedate"},
    {kDate, "datum"},
    {kTime, "time"},
    {kTime, "timeofday"},
    {kTime, "tradetime"},
    {kOpen, "open"},
    {kOpen, "openprice"},
    {kOpen, "openingprice"},
    {kOpen, "opening"},
    {kOpen, "o"},
    {kHigh, "high"},
    {kHigh, "highprice"},
    {kHigh, "h"},
    {kHigh, "highest"},
    {kHigh, "max"},
    {kLow, "low"},
    {kLow, "lowprice"},
    {kLow, "lowest"},
    {kLow, "min"},
    {kLow, "l"},
    {kClose, "close"},
    {kClose, "closelast"},
    {kClose, "closeprice"},
    {kClose, "closingprice"},
    {kClose, "closing"},
    {kClose, "last"},
    {kClose, "lastprice"},
    {kClose, "price"},
    {kClose, "settle"},
    {kClose, "settlement"},
    {kClose, "c"},
    {kClose, "nav"},
    {kVolume, "volume"},
    {kVolume, "vol"},
    {kVolume, "totalvolume"},
    {kVolume, "sharevolume"},
    {kVolume, "v"},
    {kVolume, "tickvol"},
    {kVolume, "tickvolume"},
    {kOpenInterest, "openinterest"},
    {kOpenInterest, "openint"},
    {kOpenInterest, "oi"},
    {kAdjustedClose, "adjclose"},
    {kAdjustedClose, "adjustedclose"},
    {kAdjustedClose, "adjcloseprice"},
    {kAdjustedClose, "closeadj"},
    {kEpoch, "unix"},
    {kEpoch, "unixtime"},
    {kEpoch, "unixtimestamp"},
    {kEpoch, "epoch"},
};

// Letters in lower case, without a number in front ("1. open") and a currency behind ("Open ($)", "Open
// (USD)").
std::string wordOf(std::string_view cell) {
  std::string word;
  for (const char c : cell) {
    if (c == '(' && !word.empty()) break;
    if (isLetter(c)) word += lowerCase(c);
  }
  return word;
}

// The first heading of the table that is in the row; none where it is there twice.
CsvLayout layoutOf(const CsvTable& table, const CsvRow& row, std::string& twice) {
  CsvLayout layout;
  std::vector<std::string> words;
  for (std::size_t k = 0; k < row.count; ++k) words.push_back(wordOf(table.cell(row, k)));
  for (const Heading& h : kHeadings) {
    if (layout.has(h.field)) continue;
    for (std::size_t k = 0; k < row.count; ++k) {
      if (words[k] != h.text) continue;
      if (layout.has(h.field)) twice = std::string(table.cell(row, k));
      layout.column[h.field] = k;
      layout.heading[h.field] = std::string(table.cell(row, k));
    }
  }
  // "Volume BTC", where nothing is headed by the word alone.
  for (std::size_t k = 0; k < row.count && !layout.has(kVolume); ++k) {
    if (!words[k].starts_with("volume")) continue;
    layout.column[kVolume] = k;
    layout.heading[kVolume] = std::string(table.cell(row, k));
  }
  // A column of times alone holds dates and times; a table that was written with its index has no word over
  // it.
  if (!layout.has(kDate) && layout.has(kTime)) {
    std::swap(layout.column[kDate], layout.column[kTime]);
    std::swap(layout.heading[kDate], layout.heading[kTime]);
  }
  if (!layout.has(kDate) && layout.has(kEpoch)) {
    std::swap(layout.column[kDate], layout.column[kEpoch]);
    std::swap(layout.heading[kDate], layout.heading[kEpoch]);
  }
  if (!layout.has(kDate) && row.count > 1 && table.cell(row, 0).empty()) layout.column[kDate] = 0;
  layout.headerLine = row.line;
  return layout;
}

std::optional<CsvLayout> searchHeader(const std::string& file, std::string_view text, std::string& twice) {
  constexpr int kLines = 10;
  std::size_t end = 0;
  for (int i = 0; i < kLines && end < text.size(); ++i)
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  const std::string_view top = text.substr(0, end);
  std::optional<CsvLayout> best;
  std::ptrdiff_t most = 0;
  for (const char delimiter : {',', ';', '\t', '|'}) {
    if (top.find(delimiter) == std::string_view::npos) continue;
    const CsvTable table(file, top, delimiter);
    for (const CsvRow& row : table.rows()) {
      std::string again;
      CsvLayout layout = layoutOf(table, row, again);
      if (!layout.has(kDate) || !layout.has(kClose)) continue;
      const auto found = std::count_if(layout.column.begin(), layout.column.end(),
                                       [](std::size_t k) { return k != kNoColumn; });
      if (found <= most) continue;
      most = found;
      layout.delimiter = delimiter;
      best = layout;
      twice = again;
    }
  }
  return best;
}

std::string at(int line) {
  return "line " + std::to_string(line) + ": ";
}

}  // namespace

CsvLayout findHeader(const std::string& file, std::string_view text) {
  std::string twice;
  const std::optional<CsvLayout> layout = searchHeader(file, text, twice);
  if (!layout)
    throw Error(file,
                "no header line with a date and a close (headings as Date, Open, High, Low, Close, Volume)",
                QV_FILE_READ);
  if (!twice.empty())
    throw Error(file, at(layout->headerLine) + "two columns are headed " + twice, QV_FILE_READ);
  return *layout;
}

void settleDates(const std::string& file, const CsvTable& table, DateOrder wanted, CsvLayout& layout) {
  constexpr DateOrder kOrders[] = {DateOrder::DayFirst, DateOrder::MonthFirst, DateOrder::YearFirst};
  constexpr const char* kNames[] = {"dmy", "mdy", "ymd"};
  if (wanted != DateOrder::Unknown) {
    layout.dates = wanted;
    return;
  }
  bool open[] = {true, true, true};
  int settling[] = {0, 0, 0};  // the line that ruled the order out
  bool any = false;
  std::string_view example;
  DateParts parts;
  for (const CsvRow& row : table.rows()) {
    const std::string_view cell = table.cell(row, layout.column[kDate]);
    if (row.line <= layout.headerLine || !readDate(cell, parts) || parts.settled) continue;
    bool fit[3];
    for (int k = 0; k < 3; ++k) fit[k] = fits(parts, kOrders[k]);
    if (!fit[0] && !fit[1] && !fit[2]) continue;
    any = true;
    example = cell;
    for (int k = 0; k < 3; ++k) {
      if (open[k] && !fit[k]) settling[k] = row.line;
      open[k] = open[k] && fit[k];
    }
  }
  if (!any) return;
  const auto left = std::count(std::begin(open), std::end(open), true);
  if (left == 1) {
    layout.dates = kOrders[std::find(std::begin(open), std::end(open), true) - open];
    return;
  }
  std::string choices;
  for (int k = 0; k < 3; ++k)
    if (open[k]) choices += (choices.empty() ? "" : " or ") + std::string(kNames[k]);
  if (left > 1)
    throw Error(file,
                "the order of dates as " + std::string(example) + " is ambiguous: give --dates " + choices,
                QV_FILE_READ);
  throw Error(file,
              "no order fits all dates (line " + std::to_string(std::max({settling[0], settling[1]})) +
                  " contradicts those before): give --dates dmy, mdy or ymd",
              QV_FILE_READ);
}

void settleDecimals(const std::string& file, const CsvTable& table, DecimalSign wanted, CsvLayout& layout) {
  if (wanted != DecimalSign::Unknown) {
    layout.decimalComma = wanted == DecimalSign::Comma;
    return;
  }
  int line[5] = {};  // where a sign was seen first
  std::string_view seen[5];
  for (const CsvRow& row : table.rows()) {
    if (row.line <= layout.headerLine) continue;
    if (line[static_cast<std::size_t>(Sign::Point)] && !table.canHoldCommas()) break;  // settled
    for (const CsvField field : {kOpen, kHigh, kLow, kClose, kVolume, kOpenInterest, kAdjustedClose}) {
      const std::string_view cell = table.cell(row, layout.column[field]);
      const auto sign = static_cast<std::size_t>(decimalSignOf(cell));
      if (line[sign]) continue;
      line[sign] = row.line;
      seen[sign] = cell;
    }
  }
  const auto first = [&](Sign s) { return line[static_cast<std::size_t>(s)]; };
  const auto text = [&](Sign s) { return std::string(seen[static_cast<std::size_t>(s)]); };
  if (first(Sign::Point) && first(Sign::Comma))
    throw Error(file,
                "numbers with a decimal point and with a decimal comma: " + text(Sign::Point) + " (line " +
                    std::to_string(first(Sign::Point)) + "), " + text(Sign::Comma) + " (line " +
                    std::to_string(first(Sign::Comma)) + "): give --decimal point or comma",
                QV_FILE_READ);
  layout.decimalComma = first(Sign::Comma) != 0;
  if (first(Sign::Point) || first(Sign::Comma)) return;
  const bool point = first(Sign::EitherPoint), comma = first(Sign::EitherComma);
  // Points alone are decimal points, commas beside semicolons decimal commas; the other way round, or both,
  // nobody can tell thousands from decimals.
  if ((point && comma) || (comma && layout.delimiter != ';') || (point && layout.delimiter == ';'))
    throw Error(file,
                "whether " + text(comma ? Sign::EitherComma : Sign::EitherPoint) +
                    " are thousands is ambiguous: give --decimal point or comma",
                QV_FILE_READ);
  layout.decimalComma = comma;
}

std::string describe(const CsvLayout& layout) {
  constexpr const char* kFields[] = {"date",  "time",   "open",          "high",           "low",
                                     "close", "volume", "open interest", "adjusted close", "epoch"};
  std::string text = "cells between ";
  text += layout.delimiter == '\t'  ? "tabs"
          : layout.delimiter == ';' ? "semicolons"
          : layout.delimiter == '|' ? "bars"
                                    : "commas";
  text += layout.dates == DateOrder::DayFirst     ? ", dates dmy"
          : layout.dates == DateOrder::MonthFirst ? ", dates mdy"
                                                  : ", dates ymd";
  text += layout.decimalComma ? ", decimal comma" : ", decimal point";
  for (int k = 0; k < kFieldCount; ++k)
    if (layout.column[k] != kNoColumn)
      text += ", " + std::string(kFields[k]) + " in column " + std::to_string(layout.column[k] + 1) + " (" +
              layout.heading[k] + ")";
  return text;
}

}  // namespace qv::runs
