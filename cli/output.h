// What subcommands print: rows of cells, as a table for people, or as CSV or JSON for machines. Machines get
// numbers in full, dates as ISO 8601, and nothing (JSON: null) for what is not known.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <variant>
#include <vector>

namespace qvcli {

enum class Form { Table, Csv, Json };

struct OutputOptions {
  bool csv = false, json = false;
  Form form() const { return csv ? Form::Csv : json ? Form::Json : Form::Table; }
};
void addOutputOptions(CLI::App& command, OutputOptions& options);

struct Date {
  double number;
};
struct Unknown {};
using Cell = std::variant<Unknown, std::string, double, Date>;

struct Column {
  std::string title;
  // Digits behind the point in a table; as many as the column's numbers call for where negative.
  int decimals = -1;
};

class Rows {
 public:
  Rows(Form form, std::vector<Column> columns) : form_(form), columns_(std::move(columns)) {}
  void add(std::vector<Cell> cells) { rows_.push_back(std::move(cells)); }
  void print() const;

 private:
  Form form_;
  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
};

// One thing with its properties: a line for each in a table, one row for machines.
struct Field {
  std::string title;
  Cell value;
  int decimals = -1;
};
void printRecord(Form form, const std::vector<Field>& fields);

// "2020-04-17", and with its time of day, if it has one, "2020-04-17T09:35:00". `separator` stands between
// both.
std::string isoDate(double date, char separator = 'T');
// The shortest text that reads back as the number; infinities and not-a-number are empty.
std::string fullNumber(double x);
std::string jsonText(const std::string& text);

}  // namespace qvcli
