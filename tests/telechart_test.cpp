// TeleChart files: reader, finder, lister.
#include <gtest/gtest.h>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

constexpr double kMonday = 36528.0;  // 3 January 2000

std::string bar(double date, double open, double high, double low, double close, double volume) {
  return mbf(vendorDate(date)) + mbf(high) + mbf(low) + mbf(close) + mbf(volume) + mbf(open);
}

std::string header(const std::string& description) {
  return record(48, {{0, padded(description, 22)}});
}

// Days `step` apart, with the closes 1, 2 ...
std::string dataFile(int records, double step = 1.0, const std::string& description = "Acme Industries") {
  std::string file = header(description);
  for (int d = 0; d < records; ++d)
    file += bar(kMonday + std::floor(d * step), d + 0.5, d + 2, -d, d + 1, 100 * d + 3);
  return file;
}

class TeleChart : public testing::Test {
 protected:
  const ScratchDir dir;
  const std::string path = dir.path();

  int read(QvBars& bars, const char* name = "acme", int start = 0, int count = -1) const {
    return qvTCread(&bars, path.c_str(), name, start, count);
  }
};

TEST_F(TeleChart, ReadsBars) {
  dir.write("ACME.NDX", dataFile(4));
  dir.write("other", dataFile(1));
  Bars bars;
  ASSERT_EQ(read(bars), 0);
  ASSERT_EQ(bars.barsize, 4);
  for (int d = 0; d < 4; ++d)
    EXPECT_EQ(barOf(bars, d),
              (std::vector<double>{kMonday + d, d + 0.5, d + 2.0, -1.0 * d, d + 1.0, 100.0 * d + 3, 0}));
  expectConsistent(bars);
  for (const char* name : {"ACME.NDX", " acme.ndx ", "ACME \t"}) {
    Bars again;
    EXPECT_EQ(read(again, name), 0) << name;
  }
  for (const char* name : {"other", "ACME.", "none", "", "."}) {
    Bars none;
    EXPECT_EQ(read(none, name), -2) << name;
  }
}

TEST_F(TeleChart, FillsTheBarInformation) {
  std::filesystem::create_directory(dir / "my.dir");
  dir.write("my.dir/LONGNAMEOFIT.NDX", dataFile(3, 7, std::string(22, 'd')));
  Bars bars;
  fillWithOldFile(bars, 5);
  ASSERT_EQ(qvTCread(&bars, (dir / "my.dir").c_str(), "LongNameOfIt", 1, 0), 0);
  EXPECT_EQ(bars.path, dir / "my.dir");
  EXPECT_STREQ(bars.name, "LongNameOfIt.ND") << "fifteen characters";
  EXPECT_STREQ(bars.symbol, "LongNameOfIt");
  EXPECT_EQ(bars.description, std::string(22, 'd'));
  EXPECT_STREQ(bars.cusip, "");
  EXPECT_EQ(std::vector({bars.filetype, bars.frequency, bars.datatype, bars.optiontype, bars.reccnt}),
            std::vector({5, 3, 0, 0, 3}));
  EXPECT_EQ((std::vector{bars.begindate, bars.enddate, bars.deliverydate, bars.strikeprice}),
            (std::vector<double>{kMonday, kMonday + 14, 0, 0}));
  EXPECT_EQ(bars.barsize, 0);
  dir.write("a.ndx", dataFile(12));
  ASSERT_EQ(read(bars, "a", 10), 0);
  EXPECT_EQ(bars.begindate, kMonday + 10) << "of the first bar read";
  EXPECT_EQ(bars.enddate, kMonday + 11);
  EXPECT_STREQ(bars.name, "a.NDX");
}

TEST_F(TeleChart, TellsTheFrequencyByTheRecordsPerDay) {
  // Records in the 1000 days from the first date to the last.
  for (const auto& [records, frequency] : {std::pair{1001, 1},
                                           {1000, 2},
                                           {661, 2},
                                           {660, 3},
                                           {131, 3},
                                           {130, 4},
                                           {31, 4},
                                           {30, 5},
                                           {10, 5},
                                           {9, 6},
                                           {3, 6},
                                           {2, 0}}) {
    dir.write("a.ndx", dataFile(records, 1000.0 / (records - 1)));
    Bars bars;
    ASSERT_EQ(read(bars, "a", 0, 0), 0);
    ASSERT_EQ(bars.enddate - bars.begindate, 1000.0);
    EXPECT_EQ(bars.frequency, frequency) << records;
  }
  dir.write("a.ndx", dataFile(50, 0));
  Bars bars;
  ASSERT_EQ(read(bars, "a", 0, 0), 0);
  EXPECT_EQ(bars.frequency, 0) << "one day";
  dir.write("a.ndx", dataFile(50, -1));
  ASSERT_EQ(read(bars, "a", 0, 0), 0);
  EXPECT_EQ(bars.frequency, 0) << "backwards";
}

TEST_F(TeleChart, TakesTheRecordRangeAndClearsTheOpenInterest) {
  dir.write("ACME.NDX", dataFile(6));
  const Read bars = [this](QvBars* b, int start, int count) { return read(*b, "acme", start, count); };
  expectRecordRange(bars, false);
  Bars used;
  fillWithOldFile(used, 4);
  ASSERT_EQ(read(used), 0);
  EXPECT_EQ(itemsOf(used.openInterest), std::vector<double>(4, 0.0));
}

TEST_F(TeleChart, ReadsShortFiles) {
  dir.write("a.ndx", dataFile(1));
  Bars bars;
  ASSERT_EQ(read(bars, "a"), 0);
  EXPECT_EQ(bars.reccnt, 1);
  EXPECT_EQ(bars.begindate, kMonday);
  EXPECT_EQ(bars.enddate, kMonday);
  dir.write("a.ndx", dataFile(0));
  EXPECT_EQ(read(bars, "a"), -9);
  ASSERT_EQ(read(bars, "a", -1, -1), 0);
  EXPECT_EQ(bars.reccnt + bars.barsize, 0);
  EXPECT_EQ(bars.enddate, 0.0);
  dir.write("a.ndx", std::string(47, ' '));
  EXPECT_EQ(read(bars, "a"), -4);
  EXPECT_EQ(qvTCfindrec(path.c_str(), "a", kMonday, nullptr), -4);
}

TEST_F(TeleChart, FindsTheRecordOfADateOrTheNextOne) {
  std::string file = header("x");
  for (const int d : {0, 2, 3, 7}) file += bar(kMonday + d, 1, 1, 1, 1, 1);
  dir.write("A.NDX", file + "rest");
  const double m = kMonday;
  expectFindings([this](double date, double* found) { return qvTCfindrec(path.c_str(), "a", date, found); },
                 {{m, 0, m},
                  {m + 1, 1, m + 2},
                  {m + 3, 2, m + 3},
                  {m + 3.5, 3, m + 7},
                  {m + 7, 3, m + 7},
                  {m - 1, -9, 0},
                  {m + 7.5, -9, 0},
                  {1e300, -9, 0},
                  {kNaN, -9, 0}});
  EXPECT_EQ(qvTCfindrec(path.c_str(), "none", m, nullptr), -2);
  EXPECT_EQ(qvFILEfindrec("TC", path.c_str(), "a", m + 3, nullptr), 2);
}

TEST_F(TeleChart, ListsFilesInNameOrder) {
  dir.write("b.ndx", dataFile(8, 1, "Beta"));
  dir.write("A.NDX", dataFile(3, 31));
  dir.write("c.NDX", "too short");
  dir.write("d.ttd", "");
  EXPECT_EQ(qvFILElist("tc", path.c_str(), (dir / "list").c_str(), 0), 0);
  EXPECT_EQ(linesOfListing(dir),
            "A.NDX        A                Acme Industries                                  Monthly   "
            "2000/01/03 2000/03/05\n"
            "b.ndx        b                Beta                                             Intraday  "
            "2000/01/03 2000/01/10\n"
            "c.NDX        c                                                                 Unknown   "
            "Unknown    Unknown\n");
  EXPECT_EQ(qvTClist(path.c_str(), path.c_str(), 0), -2);
  EXPECT_EQ(qvTClist((dir / "none").c_str(), (dir / "list").c_str(), 0), 0);
  EXPECT_EQ(linesOfListing(dir), "");
}

TEST_F(TeleChart, SurvivesDamagedFilesAndBadArguments) {
  dir.write("acme.ndx", dataFile(3));
  withDamage(dir, "acme.ndx", [this] {
    expectSurvives(
        [&](QvBars* b, int start, int count) { return read(*b, "acme", start, count); },
        [&](double date, double* found) { return qvTCfindrec(path.c_str(), "acme", date, found); });
    std::filesystem::remove(dir / "list");
    EXPECT_EQ(qvTClist(path.c_str(), (dir / "list").c_str(), 0), 0);
  });
  Bars bars;
  expectAnswersExhaustedMemory("qvTCread", [&] { return read(bars); });
  expectAnswersExhaustedMemory("qvTClist", [&] { return qvTClist(path.c_str(), (dir / "list").c_str(), 0); });
  std::filesystem::create_directory(dir / "directory.NDX");
  EXPECT_EQ(read(bars, "directory"), -2);
  EXPECT_EQ(read(bars, std::string(5000, 'x').c_str()), -2);
  EXPECT_EQ(qvTCread(nullptr, "", "a", 0, 1), -1);
  EXPECT_EQ(qvTCread(&bars, nullptr, "a", 0, 1), -1);
  EXPECT_EQ(qvTCread(&bars, "", nullptr, 0, 1), -1);
  EXPECT_EQ(qvTCfindrec(nullptr, "a", 1, nullptr), -1);
  EXPECT_EQ(qvTCfindrec("", nullptr, 1, nullptr), -1);
  EXPECT_EQ(qvTClist(nullptr, "STDOUT", 0), -1);
  EXPECT_EQ(qvTClist("", nullptr, 0), -1);
}

}  // namespace
