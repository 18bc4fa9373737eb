// TechTools files: price formats, reader, finder, lister.
#include <gtest/gtest.h>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

constexpr int kMonday = 36528;  // 3 January 2000

std::string bar(int date, int open, int high, int low, int close, int volume, int openInterest) {
  return little(date, 2) + little(open, 2) + little(high, 2) + little(low, 2) + little(close, 2) +
         little(volume, 3) + little(openInterest, 3);
}

std::string header(int code) {
  return record(16, {{0, little(code, 2)}});
}

std::string dataFile(int records, int step = 1) {
  std::string file = header(0);
  for (int d = 0; d < records; ++d)
    file += bar(kMonday + d * step, 10 + d, 20 + d, 30 + d, 1 + d, 1000 * d, 0xFFFFFF - d);
  return file;
}

class TechTools : public testing::Test {
 protected:
  const ScratchDir dir;
  const std::string path = dir.path();

  int read(QvBars& bars, const char* name = "acme", int start = 0, int count = -1) const {
    return qvTTread(&bars, path.c_str(), name, start, count);
  }
  double price(int code, int stored, const std::string& name = "A.TTD") const {
    dir.write(name, header(code) + bar(1, stored, stored, stored, stored, 0, 0));
    Bars bars;
    EXPECT_EQ(read(bars, name.c_str()), 0);
    const auto values = barOf(bars, 0);
    for (int k = 2; k <= 4; ++k) EXPECT_EQ(values[static_cast<std::size_t>(k)], values[1]);
    return values[1];
  }
};

TEST_F(TechTools, ReadsBars) {
  dir.write("ACME.TTD", header(0) + bar(kMonday, 1, 2, 3, 65535, 0x030201, 0x0A0B0C) +
                            bar(65535, 5, 6, 7, 8, 0xFFFFFF, 0));
  Bars bars;
  ASSERT_EQ(read(bars), 0);
  ASSERT_EQ(bars.barsize, 2);
  EXPECT_EQ(barOf(bars, 0), (std::vector<double>{kMonday, 1, 2, 3, 65535, 197121, 658188}));
  EXPECT_EQ(barOf(bars, 1), (std::vector<double>{65535, 5, 6, 7, 8, 16777215, 0}));
  expectConsistent(bars);
  for (const char* name : {"none", "ACME.", ""}) EXPECT_EQ(read(bars, name), -2) << name;
}

TEST_F(TechTools, DecodesEveryPriceFormat) {
  const struct {
    int code, stored;
    double price;
  } cases[] = {{0, 12345, 12345},
               {1, 12345, 1234.5},
               {2, 12345, 123.45},
               {3, 12345, 12.345},
               {4, 12345, 1.2345},
               {5, 12345, 0.12345},
               {10, 65535, 655350},
               {-11, 101, 50.5},
               {-12, 101, 25.25},
               {-13, 101, 12.625},
               {-14, 101, 6.3125},
               {-15, 101, 3.15625},
               {-16, 101, 1.578125},
               {-17, 64, 0.5},
               {-18, 64, 0.25},
               {-19, 64, 0.125},
               {-22, 3, 3 * 0.05},
               {-24, 3, 3 * 0.025},
               {-25, 3, 3 * 0.02},
               {-32, 250, 1.25},
               {-34, 250, 0.625},
               {-35, 250, 0.5},
               {-1, 1231, 123.5},
               {-2, 1233, 123.75},
               {-3, 1234, 123.5},
               {-4, 12312, 123.75},
               {-5, 12308, 123.25},
               {-6, 12316, 123.25},
               {-7, 12064, 12.5},
               {-8, 12064, 12.25},
               {-9, 12256, 12.5},
               {-3, 9, 9 / 8.0},
               {-9, 65535, 65 + 535 / 512.0},
               {0, 0, 0},
               {-5, 0, 0}};
  for (const auto& c : cases) EXPECT_EQ(price(c.code, c.stored), c.price) << c.code;
  for (const int code : {6, 7, 8, 9, 11, -10, -20, -21, -23, -26, -31, -33, -36, 32767, -32768})
    EXPECT_EQ(price(code, 12345), 0.0) << code;
}

TEST_F(TechTools, AddsTheHalfTickOfSomeMarkets) {
  constexpr double kHalfTick = 0.004999999888241291;
  for (const char* name : {"LC_Z.TTD", "fc_.ttd", "Lh_9", "PB_X.ttd"}) {
    const std::string file = name == std::string("Lh_9") ? "Lh_9.TTD" : name;
    EXPECT_EQ(price(2, 12342, file), 123.42 + kHalfTick) << name;
    EXPECT_EQ(price(2, 12340, file), 123.4);
    EXPECT_EQ(price(2, 12345, file), 123.45);
    EXPECT_EQ(price(2, 0, file), 0.0);
    EXPECT_EQ(price(3, 12342, file), 12.342) << "only hundredths";
  }
  for (const char* name : {"LC.TTD", "LCX_.TTD", "XLC_.TTD", "L.TTD"})
    EXPECT_EQ(price(2, 12342, name), 123.42) << name;
}

TEST_F(TechTools, FillsTheBarInformation) {
  dir.write("Acme.ttd", dataFile(5, 7));
  Bars bars;
  fillWithOldFile(bars, 9);
  ASSERT_EQ(read(bars, " acme ", 2), 0);
  EXPECT_EQ(bars.path, path);
  EXPECT_STREQ(bars.name, "acme.TTD");
  EXPECT_STREQ(bars.symbol, "acme");
  EXPECT_STREQ(bars.description, "acme");
  EXPECT_STREQ(bars.cusip, "");
  EXPECT_EQ(std::vector({bars.filetype, bars.frequency, bars.datatype, bars.optiontype, bars.reccnt}),
            std::vector({6, 3, 0, 0, 5}));
  EXPECT_EQ((std::vector{bars.begindate, bars.enddate, bars.deliverydate, bars.strikeprice}),
            (std::vector<double>{kMonday, kMonday + 28, 0, 0}))
      << "of the file, not of the bars read";
  dir.write("acme.TTD", dataFile(1));
  ASSERT_EQ(read(bars), 0);
  EXPECT_EQ(bars.frequency, 0);
}

TEST_F(TechTools, TakesTheRecordRange) {
  dir.write("ACME.TTD", dataFile(6));
  const Read bars = [this](QvBars* b, int start, int count) { return read(*b, "acme", start, count); };
  expectRecordRange(bars);
  dir.write("ACME.TTD", dataFile(6) + "a broken record");
  expectRecordRange(bars);
}

TEST_F(TechTools, ReadsShortFiles) {
  Bars bars;
  dir.write("acme.ttd", "x");
  EXPECT_EQ(read(bars), -4);
  EXPECT_EQ(qvTTfindrec(path.c_str(), "acme", kMonday, nullptr), -4);
  for (const std::size_t size : {std::size_t{2}, std::size_t{16}, std::size_t{31}}) {
    dir.write("acme.ttd", dataFile(1).substr(0, size));
    EXPECT_EQ(read(bars), -9) << size;
    EXPECT_EQ(qvTTfindrec(path.c_str(), "acme", kMonday, nullptr), -9);
    ASSERT_EQ(read(bars, "acme", -1, -1), 0);
    EXPECT_EQ(bars.reccnt + bars.barsize, 0);
  }
}

TEST_F(TechTools, FindsTheRecordOfADateOrTheNextOne) {
  std::string file = header(-3);
  for (const int d : {0, 2, 3, 7}) file += bar(kMonday + d, 1, 1, 1, 1, 1, 1);
  dir.write("A.TTD", file);
  const double m = kMonday;
  expectFindings([this](double date, double* found) { return qvTTfindrec(path.c_str(), "a", date, found); },
                 {{m, 0, m},
                  {m + 1, 1, m + 2},
                  {m + 3, 2, m + 3},
                  {m + 3.5, 3, m + 7},
                  {m + 7, 3, m + 7},
                  {m - 1, -9, 0},
                  {m + 7.5, -9, 0},
                  {-1e300, -9, 0},
                  {kNaN, -9, 0}});
  EXPECT_EQ(qvTTfindrec(path.c_str(), "none", m, nullptr), -2);
  EXPECT_EQ(qvFILEfindrec("6", path.c_str(), "a", m + 3, nullptr), 2);
}

TEST_F(TechTools, ListsFilesInNameOrder) {
  dir.write("b.ttd", dataFile(8));
  dir.write("A.TTD", dataFile(3, 31));
  dir.write("c.TTD", dataFile(0));
  dir.write("d.ndx", "");
  EXPECT_EQ(qvFILElist("tt", path.c_str(), (dir / "list").c_str(), 0), 0);
  EXPECT_EQ(linesOfListing(dir),
            "A.TTD        A                A                                                Monthly   "
            "2000/01/03 2000/03/05\n"
            "b.ttd        b                b                                                Intraday  "
            "2000/01/03 2000/01/10\n"
            "c.TTD        c                c                                                Unknown   "
            "Unknown    Unknown\n");
}

TEST_F(TechTools, SurvivesDamagedFilesAndBadArguments) {
  dir.write("acme.ttd", dataFile(3));
  withDamage(dir, "acme.ttd", [this] {
    expectSurvives(
        [&](QvBars* b, int start, int count) { return read(*b, "acme", start, count); },
        [&](double date, double* found) { return qvTTfindrec(path.c_str(), "acme", date, found); });
    std::filesystem::remove(dir / "list");
    EXPECT_EQ(qvTTlist(path.c_str(), (dir / "list").c_str(), 0), 0);
  });
  Bars bars;
  expectAnswersExhaustedMemory("qvTTread", [&] { return read(bars); });
  expectAnswersExhaustedMemory("qvTTlist", [&] { return qvTTlist(path.c_str(), (dir / "list").c_str(), 0); });
  std::filesystem::create_directory(dir / "directory.TTD");
  EXPECT_EQ(read(bars, "directory"), -2);
  EXPECT_EQ(qvTTread(nullptr, "", "a", 0, 1), -1);
  EXPECT_EQ(qvTTread(&bars, nullptr, "a", 0, 1), -1);
  EXPECT_EQ(qvTTread(&bars, "", nullptr, 0, 1), -1);
  EXPECT_EQ(qvTTfindrec(nullptr, "a", 1, nullptr), -1);
  EXPECT_EQ(qvTTfindrec("", nullptr, 1, nullptr), -1);
  EXPECT_EQ(qvTTlist(nullptr, "STDOUT", 0), -1);
  EXPECT_EQ(qvTTlist("", nullptr, 0), -1);
}

}  // namespace
