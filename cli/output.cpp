#include "cli/output.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "qvlib60.h"

namespace qvcli {

namespace {

void put(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

bool isKnown(double x) {
  return std::isfinite(x);
}

// Two decimals, as prices have, but for whole numbers none and for small ones more.
int decimalsOf(const std::vector<std::vector<Cell>>& rows, std::size_t column) {
  double largest = 0.0;
  bool whole = true;
  for (const auto& row : rows) {
    const double* x = std::get_if<double>(&row[column]);
    if (!x || !isKnown(*x)) continue;
    largest = std::max(largest, std::fabs(*x));
    whole = whole && *x == std::floor(*x);
  }
  if (whole) return 0;
  return largest >= 1.0 ? 2 : largest >= 0.01 ? 4 : 8;
}

std::string tableText(const Cell& cell, int decimals) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  if (const auto* date = std::get_if<Date>(&cell)) return isoDate(date->number, ' ');
  const auto* x = std::get_if<double>(&cell);
  if (!x || !isKnown(*x)) return "";
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, *x);
  return text;
}

std::string plainText(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  if (const auto* date = std::get_if<Date>(&cell)) return isoDate(date->number);
  if (const auto* x = std::get_if<double>(&cell)) return fullNumber(*x);
  return "";
}

std::string quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) out += c == '"' ? "\"\"" : std::string(1, c);
  return out + '"';
}

std::string jsonValue(const Cell& cell) {
  const std::string text = plainText(cell);
  if (std::holds_alternative<double>(cell)) return text.empty() ? "null" : text;
  return std::holds_alternative<Unknown>(cell) ? "null" : jsonText(text);
}

// Code points, as far as one takes one place in the terminal.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

void printTable(const std::vector<Column>& columns, const std::vector<std::vector<Cell>>& rows) {
  std::vector<std::vector<std::string>> texts(1);
  std::vector<std::size_t> widths;
  std::vector<int> decimals;
  std::vector<bool> right;  // numbers
  for (std::size_t k = 0; k < columns.size(); ++k) {
    texts[0].push_back(columns[k].title);
    widths.push_back(widthOf(columns[k].title));
    decimals.push_back(columns[k].decimals >= 0 ? columns[k].decimals : decimalsOf(rows, k));
    right.push_back(std::any_of(rows.begin(), rows.end(),
                                [k](const auto& row) { return std::holds_alternative<double>(row[k]); }));
  }
  for (const auto& row : rows) {
    texts.emplace_back();
    for (std::size_t k = 0; k < columns.size(); ++k) {
      texts.back().push_back(tableText(row[k], decimals[k]));
      widths[k] = std::max(widths[k], widthOf(texts.back().back()));
    }
  }
  for (const auto& row : texts) {
    std::string line;
    for (std::size_t k = 0; k < columns.size(); ++k) {
      const std::string gap(widths[k] - widthOf(row[k]), ' ');
      line += (k ? "  " : "") + (right[k] ? gap + row[k] : row[k] + gap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    put(line + '\n');
  }
}

}  // namespace

void addOutputOptions(CLI::App& command, OutputOptions& options) {
  CLI::Option* csv = command.add_flag("--csv", options.csv, "Print as CSV, numbers in full");
  command.add_flag("--json", options.json, "Print as JSON, numbers in full")->excludes(csv);
}

std::string isoDate(double date, char separator) {
  int year, month, day, hour, minute, second;
  qvDateToYMD(date, &year, &month, &day, &hour, &minute, &second);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
  if (hour == 0 && minute == 0 && second == 0) return text;
  char time[48];
  std::snprintf(time, sizeof time, "%c%02d:%02d:%02d", separator, hour, minute, second);
  return std::string(text) + time;
}

std::string fullNumber(double x) {
  if (!isKnown(x)) return "";
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, x).ptr};
}

// JSON is only written here, never read: the few lines below are all that a library would be used for.
std::string jsonText(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      out += code;
    } else {
      out += c;
    }
  }
  return out + '"';
}

void Rows::print() const {
  if (form_ == Form::Table) return printTable(columns_, rows_);
  if (form_ == Form::Csv) {
    for (std::size_t k = 0; k < columns_.size(); ++k) put((k ? "," : "") + quoted(columns_[k].title));
    put("\n");
    for (const auto& row : rows_) {
      for (std::size_t k = 0; k < row.size(); ++k) put((k ? "," : "") + quoted(plainText(row[k])));
      put("\n");
    }
    return;
  }
  put("[");
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    put(i ? ",\n {" : "\n {");
    for (std::size_t k = 0; k < rows_[i].size(); ++k)
      put((k ? ", " : "") + jsonText(columns_[k].title) + ": " + jsonValue(rows_[i][k]));
    put("}");
  }
  put("\n]\n");
}

void printRecord(Form form, const std::vector<Field>& fields) {
  if (form != Form::Table) {
    std::vector<Column> columns;
    std::vector<Cell> cells;
    for (const Field& f : fields) {
      columns.push_back({f.title});
      cells.push_back(f.value);
    }
    Rows rows(form, columns);
    rows.add(cells);
    return rows.print();
  }
  std::size_t width = 0;
  for (const Field& f : fields) width = std::max(width, f.title.size());
  for (const Field& f : fields) {
    const int decimals = f.decimals >= 0 ? f.decimals : decimalsOf({{f.value}}, 0);
    const std::string text = tableText(f.value, decimals);
    if (!text.empty()) put(f.title + std::string(width + 2 - f.title.size(), ' ') + text + '\n');
  }
}

}  // namespace qvcli
