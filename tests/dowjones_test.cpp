// Dow Jones directories: lookup, record formats, reader, finder, lister.
#include <gtest/gtest.h>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

constexpr int kMonday = 36528;  // 3 January 2000
constexpr int kDayZero = 7305;

struct Entry {
  std::string symbol;
  char type = 'S', format = '7';
  std::string description = "Acme Industries";
  char period = 'D';
  int records = 6;
  int first = kMonday, last = kMonday + 5;
  std::string cusip = "004764106";
};

std::string mapinfo(const std::vector<Entry>& entries, int count = -1) {
  if (count == -1) count = static_cast<int>(entries.size());
  std::string file = record(71, {{45, little(count, 2)}});
  for (const Entry& e : entries)
    file += record(71, {{0, padded(e.symbol, 8)},
                        {8, {e.type}},
                        {10, {e.format}},
                        {12, little(e.first - kDayZero, 2)},
                        {14, little(e.last - kDayZero, 2)},
                        {20, padded(e.description, 15)},
                        {45, little(e.records, 2)},
                        {47, {e.period}},
                        {61, padded(e.cusip, 9)}});
  return file;
}

// The fields of each format in the order they stand after the date.
const std::string kLayouts[] = {"VHLC", "C", "VC", "HLC", "VHLC", "HLCO", "IHLCO", "VHLCO", "IVHLCO", "IV"};

double valueOf(char field, int day) {
  switch (field) {
    case 'O':
      return day + 0.5;
    case 'H':
      return day + 2;
    case 'L':
      return -day;
    case 'C':
      return day + 1;
    case 'V':
      return 100 * day - 50;
    default:
      return 2'000'000'000 + day;
  }
}

std::string dataFile(char format, int days) {
  std::string file;
  for (int d = 0; d < days; ++d) {
    file += little(kMonday + d - kDayZero, 2);
    for (const char f : kLayouts[format - '0']) {
      const double value = valueOf(f, d);
      file += f == 'V' || f == 'I' ? little(static_cast<std::int64_t>(value), 4) : ieee(value);
    }
  }
  return file;
}

class DowJones : public testing::Test {
 protected:
  const ScratchDir dir;
  const std::string path = dir.path();

  int read(QvBars& bars, const char* name, int start = 0, int count = -1) const {
    return qvDJread(&bars, path.c_str(), name, start, count);
  }
};

TEST_F(DowJones, ReadsTheTenRecordFormats) {
  for (char format = '0'; format <= '9'; ++format) {
    dir.write("Mapinfo.DAT", mapinfo({{"ACME", 'S', format}}));
    dir.write("acme.sqd", dataFile(format, 6));
    Bars bars;
    fillWithOldFile(bars, 10);
    ASSERT_EQ(read(bars, "acme"), 0) << format;
    ASSERT_EQ(bars.barsize, 6);
    const std::string& fields = kLayouts[format - '0'];
    for (int d = 0; d < 6; ++d) {
      std::vector<double> expected{static_cast<double>(kMonday + d)};
      for (const char f : {'O', 'H', 'L', 'C', 'V', 'I'})
        expected.push_back(fields.find(f) == fields.npos ? 0.0 : valueOf(f, d));
      EXPECT_EQ(barOf(bars, d), expected) << format;
    }
    expectConsistent(bars);
  }
  for (const char format : {'/', ':', ' ', '\0', '\xFF'}) {
    dir.write("mapinfo.dat", mapinfo({{"ACME", 'S', format}}));
    Bars bars;
    EXPECT_EQ(read(bars, "acme"), -4) << format;
    EXPECT_EQ(qvDJfindrec(path.c_str(), "acme", kMonday, nullptr), -4);
  }
}

TEST_F(DowJones, StoresDatesAsSixteenBitDays) {
  dir.write("mapinfo.dat", mapinfo({{"A", 'S', '1', "", 'D', 3, kDayZero, kDayZero + 65535}}));
  dir.write("A.SQD", little(0, 2) + ieee(1) + little(32000, 2) + ieee(-1e30) + little(65535, 2) + ieee(0.1));
  Bars bars;
  ASSERT_EQ(read(bars, "A"), 0);
  EXPECT_EQ(itemsOf(bars.date), (std::vector<double>{7305, 39305, 72840}));
  EXPECT_EQ(itemsOf(bars.close), (std::vector<double>{1, -1e30f, 0.1f}));
  EXPECT_EQ(bars.begindate, 7305.0);
  EXPECT_EQ(bars.enddate, 72840.0);
}

TEST_F(DowJones, FindsASecurityByItsNames) {
  dir.write("mapinfo.dat", mapinfo({{"ACME", 'B', '1', "Bond", 'D'},
                                    {"ACME", 'S', '1', "Stock", 'W'},
                                    {"acme", 'S', '1', "stock", 'D'},
                                    {"12345678", 'S', '1', "Fifteen letters"},
                                    {"A1B2", 'S', '1', "x1234567890123y"},
                                    {"LC", 'v', '1', "Cattle"}}));
  const std::pair<const char*, const char*> names[] = {{"acme", "ACME.BQD"},
                                                       {"Acme.", "ACME.BQD"},
                                                       {"ACME.s", "ACME.SQW"},
                                                       {"ACME.SQD", "acme.SQD"},
                                                       {"acme.sxd", "acme.SQD"},
                                                       {"acme. xw", "ACME.SQW"},
                                                       {"acme.S?", "ACME.SQW"},
                                                       {"STOCK", "ACME.SQW"},
                                                       {"stock. QD", "acme.SQD"},
                                                       {"12345678", "12345678.SQD"},
                                                       {"FIFTEEN LETTERS", "12345678.SQD"},
                                                       {"A/B\\", "A1B2.SQD"},
                                                       {"+<>|=;\\/", "12345678.SQD"},
                                                       {"a1b+", nullptr},
                                                       {"A+B+", "A1B2.SQD"},
                                                       {"x+<>|=;\\/+=<>y", nullptr},
                                                       {"X////////////|Y", "A1B2.SQD"},
                                                       {"acme.M", nullptr},
                                                       {"acme.SQM", nullptr},
                                                       {"", nullptr},
                                                       {"12345678 ", nullptr},
                                                       {"LC.V", nullptr}};
  for (const char* file : {"ACME.BQD", "ACME.SQW", "acme.SQD", "12345678.SQD", "A1B2.SQD"})
    dir.write(file, "");
  for (const auto& [name, file] : names) {
    Bars bars;
    ASSERT_EQ(read(bars, name, 0, 0), file ? 0 : -8) << name;
    EXPECT_STREQ(bars.name, file ? file : "") << name;
  }
  // Ten characters and more: 0 follows 9.
  dir.write("mapinfo.dat", mapinfo({{"A", 'S', '1', "123456789012345"}}));
  dir.write("A.SQD", "");
  Bars bars;
  EXPECT_EQ(read(bars, "+++++++++++++++", 0, 0), 0);
}

TEST_F(DowJones, FillsTheBarInformation) {
  const struct {
    char type;
    int dataType;
    char period;
    int frequency;
  } kinds[] = {{'B', 1, 'D', 2}, {'T', 1, 'W', 3}, {'V', 2, 'M', 4}, {'M', 3, 'd', 0}, {'O', 4, 'Q', 0},
               {'S', 5, 'D', 2}, {'W', 6, 'D', 2}, {'X', 6, 'D', 2}, {'Y', 6, 'D', 2}, {'s', 0, 'D', 2}};
  for (const auto& k : kinds) {
    dir.write("mapinfo.dat", mapinfo({{"12345678", k.type, '1', "Fifteen letters", k.period, 7}}));
    dir.write(std::string("12345678.") + k.type + "Q" + k.period, "");
    Bars bars;
    fillWithOldFile(bars, 3);
    ASSERT_EQ(read(bars, "12345678", -1, 0), 0);
    EXPECT_EQ(bars.path, path);
    EXPECT_EQ(bars.name, std::string("12345678.") + k.type + "Q" + k.period);
    EXPECT_STREQ(bars.symbol, "12345678");
    EXPECT_STREQ(bars.description, "Fifteen letters");
    EXPECT_STREQ(bars.cusip, "004764106");
    EXPECT_EQ(std::vector({bars.filetype, bars.frequency, bars.datatype, bars.optiontype, bars.reccnt}),
              std::vector({3, k.frequency, k.dataType, 0, 7}));
    EXPECT_EQ((std::vector{bars.begindate, bars.enddate, bars.deliverydate, bars.strikeprice}),
              (std::vector<double>{kMonday, kMonday + 5, 0, 0}));
  }
}

TEST_F(DowJones, TakesTheRecordRangeAndGoesOnToTheEndOfTheFile) {
  dir.write("mapinfo.dat", mapinfo({{"ACME", 'S', '8'}}));
  dir.write("ACME.SQD", dataFile('8', 6));
  expectRecordRange([this](QvBars* b, int start, int count) { return read(*b, "ACME", start, count); });
  dir.write("ACME.SQD", dataFile('8', 9));  // three records that the directory does not know
  Bars bars, last;
  ASSERT_EQ(read(bars, "ACME", 4, 100), 0);
  EXPECT_EQ(itemsOf(bars.close), (std::vector<double>{5, 6, 7, 8, 9}));
  EXPECT_EQ(bars.reccnt, 6);
  ASSERT_EQ(read(last, "ACME", -1, 2), 0);
  EXPECT_EQ(itemsOf(last.close), (std::vector<double>{5, 6}));
  for (const int records : {0, -1, -32768}) {
    dir.write("mapinfo.dat", mapinfo({{"ACME", 'S', '8', "", 'D', records}}));
    Bars none;
    EXPECT_EQ(read(none, "ACME"), -9);
    EXPECT_EQ(read(none, "ACME", -1, -1), 0);
    EXPECT_EQ(none.barsize + none.reccnt, 0);
  }
}

TEST_F(DowJones, FindsTheRecordOfADateOrTheNextOne) {
  dir.write("mapinfo.dat", mapinfo({{"A", 'S', '1', "", 'D', 4}}));
  std::string file;
  for (const int d : {0, 2, 3, 7, 9}) file += little(kMonday + d - kDayZero, 2) + ieee(d);
  dir.write("A.SQD", file);
  const double m = kMonday;
  const Find find = [this](double date, double* found) {
    return qvDJfindrec(path.c_str(), "A", date, found);
  };
  expectFindings(find, {{m, 0, m},
                        {m + 1, 1, m + 2},
                        {m + 2, 1, m + 2},
                        {m + 2.5, 2, m + 3},
                        {m + 6, 3, m + 7},
                        {m + 7, 3, m + 7},
                        {m - 0.5, -9, 0},
                        {m + 8, -9, 0},  // the directory knows of four
                        {-1e300, -9, 0},
                        {kNaN, -9, 0}});
  dir.write("A.SQD", file.substr(0, 20));
  EXPECT_EQ(find(m + 7, nullptr), -4);
  dir.write("mapinfo.dat", mapinfo({{"A", 'S', '1', "", 'D', -4}}));
  EXPECT_EQ(find(m, nullptr), -9);
}

TEST_F(DowJones, ListsTheDirectory) {
  const std::string list = dir / "list";
  EXPECT_EQ(qvDJlist(path.c_str(), list.c_str(), 0), -2);
  EXPECT_FALSE(std::filesystem::exists(list));
  dir.write("mapinfo.dat", mapinfo({{"ACME"}, {"12345678", 'O', 'x', "Fifteen letters", 'M', -3}}));
  EXPECT_EQ(qvDJlist(path.c_str(), list.c_str(), 0), 0);
  const std::string expected =
      "ACME.SQD     ACME             Acme Industries                                  Daily     2000/01/03 "
      "2000/01/08\n"
      "12345678.OQM 12345678         Fifteen letters                                  Monthly   2000/01/03 "
      "2000/01/08\n";
  EXPECT_EQ(linesOfListing(dir), expected);
  dir.write("mapinfo.dat", mapinfo({{"ACME"}}, 2));
  EXPECT_EQ(qvFILElist("DJ", path.c_str(), list.c_str(), 0), -4);
  EXPECT_EQ(linesOfListing(dir), expected.substr(0, expected.size() / 2));
  EXPECT_EQ(qvDJlist(path.c_str(), path.c_str(), 0), -2);
}

TEST_F(DowJones, AnswersWhatIsMissing) {
  Bars bars;
  EXPECT_EQ(read(bars, "ACME"), -2);
  dir.write("mapinfo.dat", std::string(70, '\0'));
  EXPECT_EQ(read(bars, "ACME"), -4);
  dir.write("mapinfo.dat", mapinfo({{"ACME"}}, 9));
  EXPECT_EQ(read(bars, "ACME"), -2) << "found, but without a data file";
  EXPECT_EQ(read(bars, "OTHER"), -4);
  dir.write("mapinfo.dat", mapinfo({{"ACME"}}));
  EXPECT_EQ(read(bars, "OTHER"), -8);
  std::filesystem::create_directory(dir / "ACME.SQD");
  EXPECT_EQ(read(bars, "ACME"), -2);
  EXPECT_EQ(qvDJread(nullptr, "", "a", 0, 1), -1);
  EXPECT_EQ(qvDJread(&bars, nullptr, "a", 0, 1), -1);
  EXPECT_EQ(qvDJread(&bars, "", nullptr, 0, 1), -1);
  EXPECT_EQ(qvDJfindrec(nullptr, "a", 1, nullptr), -1);
  EXPECT_EQ(qvDJfindrec("", nullptr, 1, nullptr), -1);
  EXPECT_EQ(qvDJlist(nullptr, "STDOUT", 0), -1);
  EXPECT_EQ(qvDJlist("", nullptr, 0), -1);
}

TEST_F(DowJones, SurvivesDamagedFilesAndExhaustedMemory) {
  dir.write("mapinfo.dat", mapinfo({{"OTHER"}, {"ACME", 'S', '7', "Acme", 'D', 3}}));
  dir.write("ACME.SQD", dataFile('7', 3));
  const auto survives = [this] {
    expectSurvives(
        [&](QvBars* b, int start, int count) { return read(*b, "acme", start, count); },
        [&](double date, double* found) { return qvDJfindrec(path.c_str(), "acme", date, found); });
    std::filesystem::remove(dir / "list");
    EXPECT_GE(qvDJlist(path.c_str(), (dir / "list").c_str(), 0), -4);
  };
  for (const char* file : {"mapinfo.dat", "ACME.SQD"}) withDamage(dir, file, survives);
  Bars bars;
  expectAnswersExhaustedMemory("qvDJread", [&] { return read(bars, "acme"); });
  expectAnswersExhaustedMemory("qvDJfindrec",
                               [&] { return qvDJfindrec(path.c_str(), "acme", kMonday, nullptr); });
  expectAnswersExhaustedMemory("qvDJlist", [&] { return qvDJlist(path.c_str(), (dir / "list").c_str(), 0); });
}

}  // namespace
