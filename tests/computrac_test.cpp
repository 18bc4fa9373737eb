// CompuTrac directories: lookup, field orders, reader, finder, single fields, lister.
#include <gtest/gtest.h>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

using Doubles = std::vector<double>;

constexpr double kMonday = 36528.0;  // 3 January 2000

struct Entry {
  int number;
  std::string symbol, name;
  char period = 'D';
  int fields = 7;  // per record in master, flags in xmaster
  double first = kMonday, last = kMonday + 5;
};

std::string master(const std::vector<Entry>& entries, int count = -1) {
  if (count == -1) count = static_cast<int>(entries.size());
  std::string file = record(53, {{0, little(count, 2)}});
  for (const Entry& e : entries)
    file += record(53, {{0, little(e.number, 1)},
                        {4, little(e.fields, 1)},
                        {7, padded(e.name, 16)},
                        {25, mbf(vendorDate(e.first))},
                        {29, mbf(vendorDate(e.last))},
                        {33, {e.period}},
                        {36, padded(e.symbol, 16)}});
  return file;
}

std::string xmaster(const std::vector<Entry>& entries) {
  std::string file = record(150, {{10, little(static_cast<int>(entries.size()), 2)}});
  for (const Entry& e : entries)
    file += record(150, {{1, padded(e.symbol, 15)},
                         {16, padded(e.name, 45)},
                         {62, {e.period}},
                         {65, little(e.number, 2)},
                         {70, little(e.fields, 1)},
                         {108, little(static_cast<int>(vendorDate(e.first)) + 19000000, 4)},
                         {116, little(static_cast<int>(vendorDate(e.last)) + 19000000, 4)}});
  return file;
}

// One letter per field: Date Time Open High Low Close Volume open Interest.
double valueOf(char field, int day, int time = 93015) {
  switch (field) {
    case 'D':
      return vendorDate(kMonday + day);
    case 'T':
      return time;
    case 'O':
      return day + 0.5;
    case 'H':
      return day + 2;
    case 'L':
      return -day;
    case 'C':
      return day + 1;
    case 'V':
      return 100 * day + 100;
    default:
      return day + 0.125;
  }
}
constexpr double kHalfPastNine = (9 * 3600 + 30 * 60 + 15) / 86400.0;

// The bar that a record of these fields holds, in the order of the series.
Doubles expectedBar(const std::string& fields, int day) {
  const auto value = [&](char f) { return fields.find(f) == fields.npos ? 0.0 : valueOf(f, day); };
  const double date = fields.find('D') == fields.npos ? 0.0 : kMonday + day;
  return {date + (fields.find('T') == fields.npos ? 0.0 : kHalfPastNine),
          value('O'),
          value('H'),
          value('L'),
          value('C'),
          value('V'),
          value('I')};
}

// Letters that are no field take a place in the record.
std::string dataFile(const std::string& fields, int days, int lastRecord = INT_MAX) {
  std::string file = record(fields.size() * 4, {{2, little(std::min(lastRecord, days + 1), 2)}});
  for (int d = 0; d < days; ++d)
    for (const char f : fields) file += mbf(valueOf(f, d));
  return file;
}

class CompuTrac : public testing::Test {
 protected:
  const ScratchDir dir;
  const std::string path = dir.path();

  int read(QvBars& bars, const char* name, int start = 0, int count = -1) const {
    return qvCTread(&bars, path.c_str(), name, start, count);
  }
  void expectBars(const char* name, const std::string& fields, int days) const {
    SCOPED_TRACE(std::string(name) + " as " + fields);
    Bars bars;
    ASSERT_EQ(read(bars, name), 0);
    EXPECT_EQ(bars.barsize, days);
    for (int d = 0; d < days; ++d) EXPECT_EQ(barOf(bars, d), expectedBar(fields, d));
    expectConsistent(bars);
  }
};

// ---- Field orders ---------------------------------------------------------------------------------

TEST_F(CompuTrac, ReadsTheUsualFieldsOfAPeriod) {
  const struct {
    char period;
    int fields;
    const char* letters;
  } usual[] = {{'I', 4, "DTCV"},     {'I', 5, "DTCVI"},    {'I', 6, "DTHLCV"}, {'I', 7, "DTOHLCV"},
               {'I', 8, "DTOHLCVI"}, {'D', 5, "DHLCV"},    {'W', 5, "DHLCV"},  {'D', 6, "DOHLCV"},
               {'M', 7, "DOHLCVI"},  {'\0', 7, "DOHLCVI"}, {'i', 5, "DHLCV"}};
  for (const auto& u : usual) {
    dir.write("MASTER", master({{9, "ACME", "Acme", u.period, u.fields}}));
    dir.write("f9.dat", dataFile(u.letters, 3));
    expectBars("ACME", u.letters, 3);
  }
  for (const auto& [period, fields] : {std::pair{'I', 3}, {'I', 9}, {'D', 4}, {'D', 8}, {'D', 0}}) {
    dir.write("MASTER", master({{9, "ACME", "Acme", period, fields}}));
    Bars bars;
    EXPECT_EQ(read(bars, "ACME"), 0) << "records without a known field";
    EXPECT_EQ(bars.barsize, 0);
    EXPECT_EQ(bars.reccnt, 3);
    dir.write("f9.dat", dataFile("DHLCV", 3, -1));
    EXPECT_EQ(read(bars, "ACME"), -9) << "and of no known number";
    dir.write("f9.dat", dataFile("DHLCV", 3));
  }
}

TEST_F(CompuTrac, ReadsTheFlaggedFieldsOfXmaster) {
  std::vector<Entry> entries;
  std::vector<std::string> letters(256);
  for (int flags = 1; flags < 256; ++flags) {
    entries.push_back({flags + 1000, "S" + std::to_string(flags), "", 'I', flags});
    for (const auto& [bit, letter] :
         {std::pair{4, 'D'}, {7, 'T'}, {5, 'O'}, {0, 'H'}, {1, 'L'}, {2, 'C'}, {3, 'V'}, {6, 'I'}})
      if (flags & 1 << bit) letters[static_cast<std::size_t>(flags)] += letter;
  }
  dir.write("XMaster", xmaster(entries));
  for (const Entry& e : entries) {
    const std::string& fields = letters[static_cast<std::size_t>(e.fields)];
    dir.write("F" + std::to_string(e.number) + ".mwd", dataFile(fields, 2));
    expectBars(e.symbol.c_str(), fields, 2);
  }
}

TEST_F(CompuTrac, ReadsTheFieldsOfTheOrderFile) {
  dir.write("MASTER", master({{12, "ACME", "Acme", 'D', 7}}));
  const auto expectOrder = [&](const std::string& order, const std::string& stored,
                               const std::string& fields) {
    SCOPED_TRACE(order.substr(0, 60));
    dir.write("f12.dop", order);
    dir.write("F12.DAT", dataFile(stored, 2));
    Bars bars;
    ASSERT_EQ(read(bars, "ACME"), 0);
    ASSERT_EQ(bars.barsize, 2);
    EXPECT_EQ(barOf(bars, 1), expectedBar(fields, 1));
  };
  expectOrder("\"DATE\",10,0\r\n\"CLOSE\",10,4\r\n\"VOL\",10,0\r\n\"Open\"\r\n\x1A", "DCVO", "DCVO");
  expectOrder("oi\nTime\n\n\r\n\x1A\nlow\nhigh\ndate", "ITLHD", "ITLHD");
  // Unknown names and pieces of long lines take positions, but the record is as long as the number of
  // known ones: what would lie beyond its end is absent.
  expectOrder("DATE\x1A\r\n\"CLOSE\n,\nLOW\"\n", "DCV", "DC");
  expectOrder("DATE,\"\"," + std::string(71, '0') + "OPEN,\nCLOSE" + std::string("\0x", 2), "DOC", "DOC");
  expectOrder("DATE\nCLOSE\nVOL\nVOL\n", "DCV", "DC");
  std::string thousand = "DATE\nCLOSE\n";
  for (int k = 0; k < 1000; ++k) thousand += "x\n";
  expectOrder(thousand + "HIGH\n", "DCV", "DC");
  expectOrder("DATE\nCLOSE\n" + std::string(1 << 20, 'x') + "\nHIGH\n", "DCV", "DC");
  expectOrder("DATE\n CLOSE\n", "D", "D");
  dir.write("f12.dop", "");
  Bars bars;
  EXPECT_EQ(read(bars, "ACME"), 0);
  EXPECT_EQ(bars.barsize, 0) << "an order file without names";
  std::filesystem::remove(dir / "f12.dop");
  std::filesystem::create_directory(dir / "F12.DOP");
  dir.write("F12.DAT", dataFile("DOHLCVI", 2));
  expectBars("ACME", "DOHLCVI", 2);
}

// ---- Lookup ---------------------------------------------------------------------------------------

TEST_F(CompuTrac, FindsASecurityByEachOfItsNames) {
  std::vector<Entry> listed{{1, "AB C", "Alpha Beta"},
                            {2, "SPX", "Index <DIR>"},
                            {3, "SPX", "Index W", 'W'},
                            {4, "F5.DAT", "odd"},
                            {5, "X Y Z", "ab c"},
                            {200, "LAST", "No@D"},
                            {7, "0123456789ABCDEF", "ALL SIXTEEN CHRS"}};
  std::string file = master(listed);
  file.replace(53 * 2 + 18, 5, "<DIR>");
  dir.write("master", file);
  dir.write("XMASTER", xmaster({{-3, "SPX", "of xmaster"}, {300, "A LONG SYMBOL 5", std::string(45, 'n')}}));
  const std::pair<const char*, const char*> names[] = {
      {"f1.dat", "F1.DAT"},
      {"ab c", "F1.DAT"},
      {"AB", "F1.DAT"},
      {"AB C@D", "F1.DAT"},
      {"alpha beta", "F1.DAT"},
      {"SPX", "F3.DAT"},  // the entry before is a directory
      {"spx@w", "F3.DAT"},
      {"SPX@D", "F-3.MWD"},
      {"F5.DAT", "F4.DAT"},  // its symbol: the first entry that fits
      {"x", "F5.DAT"},
      {"x y", "F5.DAT"},
      {"x y z", "F5.DAT"},
      {"F200.DAT", "F200.DAT"},
      {"no@d", "F200.DAT"},
      {"0123456789abcdef", "F7.DAT"},
      {"all sixteen chrs", "F7.DAT"},
      {"F-3.mwd", "F-3.MWD"},
      {"of xmaster", "F-3.MWD"},
      {"A LONG SYMBOL 5", "F300.MWD"},
      {"a long symbol 5@D", "F300.MWD"},
      {"nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "F300.MWD"},
  };
  for (const char* data :
       {"F1.DAT", "F3.DAT", "F4.DAT", "F5.DAT", "F200.DAT", "F7.DAT", "F-3.MWD", "F300.MWD"})
    dir.write(data, dataFile("DOHLCVI", 1));
  for (const auto& [name, data] : names) {
    Bars bars;
    ASSERT_EQ(read(bars, name, 0, 0), 0) << name;
    EXPECT_STREQ(bars.name, data) << name;
  }
  for (const char* name :
       {"F2.DAT", "X Y@D", "x y w", "A", "a long", "spx@", "", "F300.DAT", "SPX ", "Index"}) {
    Bars bars;
    EXPECT_EQ(read(bars, name), -8) << name;
    EXPECT_EQ(bars.date.data, nullptr);
  }
  Bars bars;
  std::filesystem::remove(dir / "F1.DAT");
  EXPECT_EQ(read(bars, "AB C"), -2);
  dir.write("F1.DAT", std::string(3, '\0'));
  EXPECT_EQ(read(bars, "AB C"), -4);
  EXPECT_EQ(qvCTfindrec(path.c_str(), "AB C", kMonday, nullptr), -4);
}

TEST_F(CompuTrac, AnswersADamagedMasterUnlessXmasterHasTheSecurity) {
  Bars bars;
  EXPECT_EQ(read(bars, "ACME"), -8) << "neither file";
  dir.write("master", std::string(52, '\0'));
  EXPECT_EQ(read(bars, "ACME"), -4);
  dir.write("F1.MWD", dataFile("DC", 1));
  dir.write("xmaster", xmaster({{1, "ACME", "", 'D', 0x14}}));
  EXPECT_EQ(read(bars, "ACME"), 0);
  EXPECT_EQ(read(bars, "OTHER"), -4);
  dir.write("xmaster", std::string(149, '\0'));
  dir.write("master", master({{1, "ACME", "Acme"}}, 9));
  EXPECT_EQ(read(bars, "OTHER"), -4);
  dir.write("xmaster", "");
  std::filesystem::remove(dir / "xmaster");
  EXPECT_EQ(read(bars, "OTHER"), -8) << "fewer entries than the header says";
  for (const int count : {0, -2, -32768}) {
    dir.write("master", master({{1, "ACME", "Acme"}}, count));
    EXPECT_EQ(read(bars, "ACME"), -8) << count;
  }
}

TEST_F(CompuTrac, FillsTheBarInformation) {
  dir.write("master", master({{255, "ACME", "Acme Industries", 'Q', 5, 40000.0, 2.0}}));
  dir.write("F255.DAT", dataFile("DHLCV", 4));
  dir.write("xmaster", xmaster({{1, "LONGER", std::string(45, 'n'), 'Y', 0x14, kMonday, 54788}}));
  dir.write("F1.MWD", dataFile("DC", 2));
  Bars bars;
  fillWithOldFile(bars, 3);
  ASSERT_EQ(qvCTread(&bars, (" " + path + "\t").c_str(), "acme", 1, 0), 0);
  EXPECT_EQ(bars.path, path);
  EXPECT_STREQ(bars.name, "F255.DAT");
  EXPECT_STREQ(bars.symbol, "ACME");
  EXPECT_STREQ(bars.description, "Acme Industries");
  EXPECT_STREQ(bars.cusip, "");
  EXPECT_EQ(bars.begindate, 40000.0);
  EXPECT_EQ(bars.enddate, 36526.0) << "a year below the cutoff is of this century";
  EXPECT_EQ(bars.reccnt, 4);
  EXPECT_EQ(bars.barsize, 0);
  EXPECT_EQ(std::vector({bars.filetype, bars.frequency, bars.datatype, bars.optiontype}),
            std::vector({2, 5, 0, 0}));
  EXPECT_EQ(bars.deliverydate, 0.0);
  EXPECT_EQ(bars.strikeprice, 0.0);
  ASSERT_EQ(read(bars, "longer"), 0);
  EXPECT_STREQ(bars.name, "F1.MWD");
  EXPECT_STREQ(bars.symbol, "LONGER");
  EXPECT_EQ(bars.description, std::string(45, 'n'));
  EXPECT_EQ(bars.frequency, 6);
  EXPECT_EQ(bars.begindate, kMonday);
  EXPECT_EQ(bars.enddate, 54788.0);
}

// ---- Reading and finding --------------------------------------------------------------------------

TEST_F(CompuTrac, TakesTheRecordRange) {
  dir.write("master", master({{1, "ACME", "Acme"}}));
  dir.write("F1.DAT", dataFile("DOHLCVI", 6));
  const Read bars = [this](QvBars* b, int start, int count) { return read(*b, "ACME", start, count); };
  expectRecordRange(bars);
  // Negative: by the size of the file.
  dir.write("F1.DAT", dataFile("DOHLCVI", 6, -1));
  expectRecordRange(bars);
}

TEST_F(CompuTrac, TakesNoMoreThanTheHeaderSays) {
  dir.write("master", master({{1, "ACME", "Acme"}}));
  for (const auto& [last, records, read_] :
       {std::tuple{4, 3, 3}, {2, 1, 1}, {100, 99, 6}, {32767, 32766, 6}}) {
    std::string file = dataFile("DOHLCVI", 6);
    dir.write("F1.DAT", file.replace(2, 2, little(last, 2)));
    Bars bars;
    ASSERT_EQ(read(bars, "ACME"), 0);
    EXPECT_EQ(bars.reccnt, records);
    EXPECT_EQ(itemsOf(bars.close).size(), static_cast<std::size_t>(read_));
    expectConsistent(bars);
  }
  for (const int last : {0, 1}) {
    dir.write("F1.DAT", dataFile("DOHLCVI", 6, last));
    Bars bars;
    EXPECT_EQ(read(bars, "ACME"), -9);
    EXPECT_EQ(read(bars, "ACME", -1, 4), 0);
    EXPECT_EQ(bars.barsize, 0);
    EXPECT_EQ(bars.reccnt, 0);
  }
  // Measured by size, records of two fields: (24 + 8) / 8 is the last, one more than there is.
  dir.write("master", "");
  dir.write("xmaster", xmaster({{1, "ACME", "", 'D', 0x14}}));
  dir.write("F1.MWD", dataFile("DC", 2, -1));
  Bars bars;
  ASSERT_EQ(read(bars, "ACME"), 0);
  EXPECT_EQ(bars.reccnt, 3);
  EXPECT_EQ(bars.barsize, 2);
}

TEST_F(CompuTrac, FindsTheRecordOfADateOrTheNextOne) {
  dir.write("xmaster", xmaster({{1, "DAILY", "", 'D', 0x14}, {2, "TICKS", "", 'I', 0x94}}));
  std::string days = record(8, {{2, little(5, 2)}}), ticks = record(12, {{2, little(7, 2)}});
  for (const int d : {0, 2, 3, 7}) days += mbf(vendorDate(kMonday + d)) + mbf(d);
  dir.write("F1.MWD", days);
  for (const int d : {0, 2})
    for (const int time : {93000, 120000, 161530}) ticks += mbf(vendorDate(kMonday + d)) + mbf(time) + mbf(d);
  dir.write("F2.MWD", ticks);
  const auto find = [this](const char* name) {
    return [this, name](double date, double* found) { return qvCTfindrec(path.c_str(), name, date, found); };
  };
  const double m = kMonday;
  expectFindings(find("DAILY"), {{m, 0, m},
                                 {m + 1, 1, m + 2},
                                 {m + 2, 1, m + 2},
                                 {m + 3.75, 2, m + 3},  // only the day counts
                                 {m + 4, 3, m + 7},
                                 {m + 7, 3, m + 7},
                                 {m - 1, -9, 0},
                                 {m + 8, -9, 0},
                                 {0, -9, 0},
                                 {-1e300, -9, 0},
                                 {1e300, -9, 0},
                                 {kNaN, -9, 0}});
  const double morning = 9.5 / 24, noon = 0.5, close = (16 * 3600 + 15 * 60 + 30) / 86400.0;
  expectFindings(find("TICKS"), {{m + morning, 0, m + morning},
                                 {m + noon - 0.01, 1, m + noon},
                                 {m + noon, 1, m + noon},
                                 {m + close, 2, m + close},
                                 {m + 0.9, 3, m + 2 + morning},
                                 {m + 1, 3, m + 2 + morning},
                                 {m + 2 + close, 5, m + 2 + close},
                                 {m, -9, 0},
                                 {m + 2.8, -9, 0}});
  dir.write("F1.MWD", days.substr(0, 30));  // its header promises four records
  EXPECT_EQ(qvCTfindrec(path.c_str(), "DAILY", m + 7, nullptr), -4);
  EXPECT_EQ(qvCTfindrec(path.c_str(), "NONE", m, nullptr), -8);
}

TEST_F(CompuTrac, ReadsOneField) {
  dir.write("master", master({{1, "ACME", "Acme", 'I', 8}, {2, "FEW", "Few", 'D', 5}}));
  dir.write("F1.DAT", dataFile("DTOHLCVI", 6));
  dir.write("F2.DAT", dataFile("DHLCV", 6));
  const char* names[] = {"dt", "OP", "Hi", "lo", "cl", "vol", "oi"};
  for (std::size_t k = 0; k < 7; ++k)
    for (const auto& [name, letters] : {std::pair{"ACME", "DTOHLCVI"}, {"FEW", "DHLCV"}}) {
      Array a;
      a.firstValid = 3;
      ASSERT_EQ(qvCTreadarray(&a, path.c_str(), name, names[k], 4, 9), 0);
      EXPECT_EQ(a.items(), (Doubles{expectedBar(letters, 4)[k], expectedBar(letters, 5)[k]}));
      EXPECT_EQ(a.capacity, 9);
      EXPECT_EQ(a.firstValid, 0);
    }
  Array a;
  for (const char* field : {"ti", "date", "", "d"})
    EXPECT_EQ(qvCTreadarray(&a, path.c_str(), "ACME", field, 0, -1), -1) << field;
  EXPECT_EQ(qvCTreadarray(&a, path.c_str(), "none", "cl", 0, -1), -8);
  EXPECT_EQ(qvCTreadarray(&a, path.c_str(), "ACME", "cl", 6, -1), -9);
  EXPECT_EQ(a.data, nullptr);
  Array::fill(a, 4, 777);
  ASSERT_EQ(qvCTreadarray(&a, path.c_str(), "ACME", "cl", -1, -1), 0);
  EXPECT_EQ(a.items(), (Doubles{3, 4, 5, 6})) << "the last of the room there is";
  ASSERT_EQ(qvCTreadarray(&a, path.c_str(), "ACME", "cl", 0, 0), 0);
  EXPECT_EQ(a.size, 0);
}

TEST_F(CompuTrac, ListsMasterThenXmaster) {
  const std::string list = dir / "list";
  const auto listed = [&](int status) {
    EXPECT_EQ(qvCTlist(path.c_str(), list.c_str(), 0), status);
    return linesOfListing(dir);
  };
  EXPECT_EQ(listed(0), "") << "no directory file";
  std::string file = master({{9, "0123456789ABCDEF", "Sixteen of these"}, {1, "x", "y"}, {2, "X", "Y", '?'}});
  file.replace(53 * 2 + 18, 5, "<DIR>");
  dir.write("master", file);
  dir.write("xmaster", xmaster({{300, "EX", "Ex", 'W', 1, kMonday, 44000}}));
  const std::string expected =
      "F9.DAT       0123456789ABCDEF Sixteen of these                                 Daily     2000/01/03 "
      "2000/01/08\n"
      "F2.DAT       X                Y                                                Unknown   2000/01/03 "
      "2000/01/08\n"
      "F300.MWD     EX               Ex                                               Weekly    2000/01/03 "
      "2020/06/18\n";
  EXPECT_EQ(listed(0), expected);
  dir.write("xmaster", "too short");
  EXPECT_EQ(listed(-4), expected.substr(0, expected.size() - expected.size() / 3));
  EXPECT_EQ(qvCTlist(path.c_str(), path.c_str(), 0), -2);
  EXPECT_EQ(qvFILElist("ct", path.c_str(), list.c_str(), 1), -4);
}

TEST_F(CompuTrac, ComesThroughTheFront) {
  dir.write("master", master({{1, "ACME", "Acme"}}));
  dir.write("F1.DAT", dataFile("DOHLCVI", 6));
  Bars bars;
  ASSERT_EQ(qvFILEread("CT", &bars, path.c_str(), "acme@d", 2, -1), 0);
  EXPECT_EQ(barOf(bars, 0), expectedBar("DOHLCVI", 2));
  EXPECT_EQ(qvFILEfindrec("2", path.c_str(), "acme", kMonday + 2, nullptr), 2);
}

// ---- Bad input ------------------------------------------------------------------------------------

TEST_F(CompuTrac, SurvivesDamagedFiles) {
  dir.write("master", master({{1, "ACME", "Acme", 'I', 8}, {2, "B", "Beta"}}));
  dir.write("F1.DAT", dataFile("DTOHLCVI", 3));
  dir.write("F1.DOP", "\"DATE\"\r\nTIME\r\nOPEN\r\nHIGH\r\nLOW\r\nCLOSE\r\nVOL\r\nOI\r\n");
  dir.write("xmaster", xmaster({{1, "EX", "Ex", 'I', 0xFF}}));
  dir.write("F1.MWD", dataFile("DTOHLCVI", 3, -1));
  const auto survives = [this](const char* name) {
    expectSurvives([&](QvBars* b, int start, int count) { return read(*b, name, start, count); },
                   [&](double date, double* found) { return qvCTfindrec(path.c_str(), name, date, found); });
    Array a;
    EXPECT_GE(qvCTreadarray(&a, path.c_str(), name, "dt", 0, -1), -9);
    std::filesystem::remove(dir / "list");
    EXPECT_GE(qvCTlist(path.c_str(), (dir / "list").c_str(), 0), -4);
  };
  for (const char* file : {"master", "F1.DAT", "F1.DOP"}) withDamage(dir, file, [&] { survives("ACME"); });
  for (const char* file : {"xmaster", "F1.MWD"}) withDamage(dir, file, [&] { survives("EX"); });
}

TEST_F(CompuTrac, RefusesWhatIsNoFileAndNullArguments) {
  dir.write("master", master({{1, "ACME", "Acme"}}));
  std::filesystem::create_directory(dir / "F1.DAT");
  Bars bars;
  Array a;
  EXPECT_EQ(read(bars, "ACME"), -2);
  std::filesystem::create_directory(dir / "directory");
  std::filesystem::create_directory(dir / "directory/MASTER");
  EXPECT_EQ(qvCTread(&bars, (dir / "directory").c_str(), "ACME", 0, -1), -8);
  EXPECT_EQ(qvCTread(&bars, (path + "/" + std::string(300, 'x')).c_str(), "ACME", 0, -1), -8);
  EXPECT_EQ(qvCTread(nullptr, "", "a", 0, 1), -1);
  EXPECT_EQ(qvCTread(&bars, nullptr, "a", 0, 1), -1);
  EXPECT_EQ(qvCTread(&bars, "", nullptr, 0, 1), -1);
  EXPECT_EQ(qvCTfindrec(nullptr, "a", 1, nullptr), -1);
  EXPECT_EQ(qvCTfindrec("", nullptr, 1, nullptr), -1);
  EXPECT_EQ(qvCTlist(nullptr, "STDOUT", 0), -1);
  EXPECT_EQ(qvCTlist("", nullptr, 0), -1);
  EXPECT_EQ(qvCTreadarray(nullptr, "", "a", "cl", 0, 1), -1);
  EXPECT_EQ(qvCTreadarray(&a, nullptr, "a", "cl", 0, 1), -1);
  EXPECT_EQ(qvCTreadarray(&a, "", nullptr, "cl", 0, 1), -1);
  EXPECT_EQ(qvCTreadarray(&a, "", "a", nullptr, 0, 1), -1);
}

TEST_F(CompuTrac, AnswersExhaustedMemory) {
  dir.write("master", master({{1, "ACME", "Acme"}}));
  dir.write("F1.DOP", "DATE\nCLOSE\n");
  dir.write("F1.DAT", dataFile("DC", 6));
  dir.write("xmaster", xmaster({{1, "EX", "", 'D', 0x14}}));
  dir.write("F1.MWD", dataFile("DC", 6));
  for (const char* name : {"ACME", "EX"}) {
    Bars bars;
    Array a;
    expectAnswersExhaustedMemory("qvCTread", [&] { return read(bars, name); });
    expectAnswersExhaustedMemory("qvCTreadarray",
                                 [&] { return qvCTreadarray(&a, path.c_str(), name, "cl", 0, -1); });
    expectAnswersExhaustedMemory("qvCTfindrec",
                                 [&] { return qvCTfindrec(path.c_str(), name, kMonday, nullptr); });
  }
  expectAnswersExhaustedMemory("qvCTlist", [&] { return qvCTlist(path.c_str(), (dir / "list").c_str(), 0); });
}

}  // namespace
