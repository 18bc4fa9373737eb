// The program's parts: what was asked for, the cells that were measured, and the tables over them.
#pragma once

#include <limits>
#include <set>
#include <string>
#include <vector>

#include "rows.h"

namespace qvpeers {

struct Options {
  std::string library, scratch = ".", tsv, markdown;
  std::vector<std::string> rows, shapes = kShapes;
  std::vector<int> bars{1'000'000, 5000}, periods{14, 200}, costPeriods{14, 200, 2000};
  int rounds = 15, costBars = 100'000;
  double budget = 3, cap = 5;  // seconds: for the rounds of one cell; for one call
  double control = 0;          // ns per item, when given
  bool table = true, costs = true, extra = true, quick = false, list = false;
};
extern Options options;

struct Cell {
  const Row* row;
  int period, n;  // the period is 0 where the row has none
  std::string shape;
  double library, taLib, tulip;  // ns per bar
  double ratio;                  // the better peer / library
  double median;                 // of the rounds' ratios
  int rounds, ranBars;
  bool disturbed;
};

// What the report lists besides the figures.
struct Findings {
  std::set<std::string> missing, failed;
};
extern Findings findings;

std::vector<std::string> split(const std::string& list);
bool chosen(const std::string& name, const std::string& functions);  // by --rows
bool present(const std::string& functions);                          // else they are listed as missing
// Remembers what runs, for the message of a crash.
void running(const std::string& what);

// One call: does the row work at all?
bool works(const Row& row, Data& d, int period);

std::vector<Cell> measureTable(const std::vector<Row>& rows);
void measureOrders();
void measureTextFile();
void measureCosts(const std::vector<Row>& rows);
void printSummary(const std::vector<Row>& rows, const std::vector<Cell>& cells);
void writeTsv(const std::vector<Cell>& cells);
void writeMarkdown(const std::vector<Cell>& cells);

}  // namespace qvpeers
