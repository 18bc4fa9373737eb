// The CSV reader on files as data sites write them, cell for cell, and on what it must refuse.
#include "runs/csv.h"

#include <gtest/gtest.h>

#include <cmath>

#include "runs/csv_values.h"

#ifdef QV_WITH_LIBCSV
namespace {

using namespace qv::runs;

struct Bar {
  int year, month, day, hour, minute;
  double open, high, low, close, volume;
};

void expectBars(const Loaded& loaded, const std::vector<Bar>& expected) {
  const QvBars& b = loaded.bars;
  ASSERT_EQ(b.barsize, static_cast<int>(expected.size()));
  for (int i = 0; i < b.barsize; ++i) {
    const Bar& e = expected[static_cast<std::size_t>(i)];
    SCOPED_TRACE(i);
    EXPECT_EQ(b.date.data[i], qvYMDtoDate(e.year, e.month, e.day, e.hour, e.minute, 0));
    EXPECT_EQ(b.open.data[i], e.open);
    EXPECT_EQ(b.high.data[i], e.high);
    EXPECT_EQ(b.low.data[i], e.low);
    EXPECT_EQ(b.close.data[i], e.close);
    EXPECT_EQ(b.volume.data[i], e.volume);
  }
}

std::string errorOf(const std::string& text, const LoadOptions& options = {}) {
  try {
    readCsv("a.csv", text, options);
  } catch (const qv::Error& e) {
    return e.what();
  }
  return "";
}

struct Site {
  const char* name;
  const char* text;
  std::vector<Bar> bars;  // oldest first
};

const Site kSites[] = {
    {"adjusted closes, null for a holiday",
     "Date,Open,High,Low,Close,Adj Close,Volume\n"
     "2020-01-02,74.059998,75.150002,73.797501,75.087502,73.059425,135480400\n"
     "2020-01-03,null,null,null,null,null,null\n"
     "2020-01-06,73.447502,74.989998,73.187500,74.949997,72.925629,118387200\n",
     {{2020, 1, 2, 0, 0, 74.059998, 75.150002, 73.797501, 75.087502, 135480400},
      {2020, 1, 6, 0, 0, 73.447502, 74.989998, 73.1875, 74.949997, 118387200}}},
    {"close/last with dollars, newest first, blanks",
     "Date,Close/Last,Volume,Open,High,Low\r\n"
     "01/14/2020, $312.68, 40653460, $316.70, $317.57, $312.17\r\n"
     "01/13/2020, $316.96, 30383030, $311.64, $317.07, $311.15\r\n",
     {{2020, 1, 13, 0, 0, 311.64, 317.07, 311.15, 316.96, 30383030},
      {2020, 1, 14, 0, 0, 316.70, 317.57, 312.17, 312.68, 40653460}}},
    {"everything quoted, suffixes, named months",
     "\xEF\xBB\xBF\"Date\",\"Price\",\"Open\",\"High\",\"Low\",\"Vol.\",\"Change %\"\n"
     "\"Jan 14, 2020\",\"3,283.15\",\"3,285.35\",\"3,294.25\",\"3,277.19\",\"1.5K\",\"-0.15%\"\n"
     "\"Jan 13, 2020\",\"3,288.13\",\"3,271.13\",\"3,288.13\",\"3,268.43\",\"2.25M\",\"0.70%\"\n",
     {{2020, 1, 13, 0, 0, 3271.13, 3288.13, 3268.43, 3288.13, 2250000},
      {2020, 1, 14, 0, 0, 3285.35, 3294.25, 3277.19, 3283.15, 1500}}},
    {"semicolons, decimal commas, points between thousands",
     "Datum;Open;High;Low;Close;Volume\n"
     "13.01.2020;13.480,12;13.502,33;13.423,09;13.451,52;1.234.567\n"
     "14.01.2020;13.440,5;13.475,01;13.397,75;13.456,49;987.654\n",
     {{2020, 1, 13, 0, 0, 13480.12, 13502.33, 13423.09, 13451.52, 1234567},
      {2020, 1, 14, 0, 0, 13440.5, 13475.01, 13397.75, 13456.49, 987654}}},
    {"timestamps of bars in the day",
     "timestamp,open,high,low,close,volume\n"
     "2020-01-14 15:55:00,100.1,100.3,100,100.2,1200\n"
     "2020-01-14 15:50:00,100.0,100.2,99.9,100.1,1100\n",
     {{2020, 1, 14, 15, 50, 100.0, 100.2, 99.9, 100.1, 1100},
      {2020, 1, 14, 15, 55, 100.1, 100.3, 100, 100.2, 1200}}},
    {"Datetime with a zone, another order of columns, empty cells",
     "Datetime,Close,High,Low,Open,Volume\n"
     "2020-01-14T09:30:00-05:00,100.1,100.3,99.5,100,0\n"
     "2020-01-14T09:35:00-05:00,,,,,\n"
     "2020-01-14T09:40:00-05:00,100.4,100.5,100,100.1,50\n",
     {{2020, 1, 14, 9, 30, 100, 100.3, 99.5, 100.1, 0}, {2020, 1, 14, 9, 40, 100.1, 100.5, 100, 100.4, 50}}},
    {"tabs, angle brackets, date and time apart",
     "<DATE>\t<TIME>\t<OPEN>\t<HIGH>\t<LOW>\t<CLOSE>\t<TICKVOL>\n"
     "2020.01.14\t09:30:00\t1.11345\t1.11350\t1.11340\t1.11348\t120\n"
     "2020.01.14\t09:31:00\t1.11348\t1.11351\t1.11346\t1.11346\t98\n",
     {{2020, 1, 14, 9, 30, 1.11345, 1.1135, 1.1134, 1.11348, 120},
      {2020, 1, 14, 9, 31, 1.11348, 1.11351, 1.11346, 1.11346, 98}}},
    {"a line of advertising above, epochs beside dates",
     "https://www.example.com\n"
     "unix,date,symbol,open,high,low,close,Volume BTC,Volume USD\n"
     "1579046400,2020-01-15 00:00:00,BTC/USD,8819.5,8900,8600.25,8700,12.5,108750\n"
     "1578960000,2020-01-14 00:00:00,BTC/USD,8100,8890,8100,8819.5,20.25,175000\n",
     {{2020, 1, 14, 0, 0, 8100, 8890, 8100, 8819.5, 20.25},
      {2020, 1, 15, 0, 0, 8819.5, 8900, 8600.25, 8700, 12.5}}},
};

TEST(Csv, ReadsTheFilesOfDataSitesCellForCell) {
  for (const Site& site : kSites) {
    SCOPED_TRACE(site.name);
    expectBars(readCsv("a.csv", site.text, {}), site.bars);
  }
}

TEST(Csv, CountsRowsThatItLeavesOutWithTheirLine) {
  const Loaded loaded = readCsv("a.csv",
                                "Date,Open,High,Low,Close,Volume\n"
                                "2020-01-02,1,2,1,2,10\n"
                                "\n"
                                "2020-01-03,1,2,1,n/a,10\n"
                                "2020-13-04,1,2,1,2,10\n"
                                "2020-01-06,1,2,one,2,10\n"
                                "2020-01-07,1,2,1,2,1,000\n"
                                "2020-01-08,1,2,1\n"
                                "2020-01-09,2,3,2,3,,\n",
                                {});
  EXPECT_EQ(loaded.bars.barsize, 2);
  EXPECT_EQ(loaded.lines, (std::vector<int>{2, 9}));
  std::string left;
  for (const LeftOut& row : loaded.leftOut) left += std::to_string(row.line) + " " + row.why + "\n";
  EXPECT_EQ(left,
            "4 Close is missing\n"
            "5 Date is no date: 2020-13-04\n"
            "6 Low is no number: one\n"
            "7 7 cells under 6 headings\n"
            "8 Close is missing\n");
  EXPECT_TRUE(std::isnan(loaded.bars.volume.data[1])) << "a volume that is missing is not 0";
}

TEST(Csv, SeriesWithoutAColumnAreNotKnown) {
  const Loaded loaded = readCsv("a.csv", "day|nav\n2020-01-02|1.25\n2020-01-03|1.5\n", {});
  EXPECT_EQ(loaded.bars.close.firstValid, 0);
  EXPECT_EQ(loaded.bars.high.firstValid, 2);
  EXPECT_EQ(loaded.bars.high.data[1], 1.5) << "the close stands in for who reads it all the same";
  EXPECT_EQ(loaded.bars.volume.firstValid, 2);
  const qv::Series atr = qv::Formula("atr(1)")(loaded.bars);
  EXPECT_GE(atr.firstValid, atr.size);
}

TEST(Csv, AdjustsAllPricesByTheAdjustedClose) {
  LoadOptions adjusted;
  adjusted.adjusted = true;
  const std::string text = "Date,Open,High,Low,Close,Adj Close\n2020-01-02,100,120,80,110,55\n";
  expectBars(readCsv("a.csv", text, adjusted), {{2020, 1, 2, 0, 0, 50, 60, 40, 55, 0}});
  expectBars(readCsv("a.csv", text, {}), {{2020, 1, 2, 0, 0, 100, 120, 80, 110, 0}});
  EXPECT_EQ(errorOf("Date,Close\n2020-01-02,1\n", adjusted),
            "a.csv: no column Adj Close, which --adjusted needs");
}

TEST(Csv, RefusesWhatIsAmbiguousUnlessItIsTold) {
  const std::string dates = "Date,Close\n03/04/2020,1.5\n05/04/2020,1.6\n";
  EXPECT_EQ(errorOf(dates), "a.csv: the order of dates as 05/04/2020 is ambiguous: give --dates dmy or mdy");
  LoadOptions told;
  told.dates = DateOrder::DayFirst;
  expectBars(readCsv("a.csv", dates, told),
             {{2020, 4, 3, 0, 0, 1.5, 1.5, 1.5, 1.5, 0}, {2020, 4, 5, 0, 0, 1.6, 1.6, 1.6, 1.6, 0}});
  EXPECT_EQ(errorOf("Date,Close\n13/04/2020,1.5\n05/14/2020,1.6\n"),
            "a.csv: no order fits all dates (line 3 contradicts those before): give --dates dmy, mdy or ymd");
  // Two digits for the year: only numbers above 12 help.
  EXPECT_EQ(errorOf("Date,Close\n12/31/24,1.5\n"), "");
  EXPECT_EQ(errorOf("Date,Close\n11/10/09,1.5\n"),
            "a.csv: the order of dates as 11/10/09 is ambiguous: give --dates dmy or mdy or ymd");

  const std::string thousands = "Date,Close\n2020-01-02,\"1,234\"\n";
  EXPECT_EQ(errorOf(thousands),
            "a.csv: whether 1,234 are thousands is ambiguous: give --decimal point or comma");
  told.decimal = DecimalSign::Comma;
  EXPECT_EQ(readCsv("a.csv", thousands, told).bars.close.data[0], 1.234);
  told.decimal = DecimalSign::Point;
  EXPECT_EQ(readCsv("a.csv", thousands, told).bars.close.data[0], 1234.0);
  EXPECT_EQ(readCsv("a.csv", "Date;Close\n2020-01-02;1,234\n", {}).bars.close.data[0], 1.234);
  EXPECT_EQ(
      errorOf("Date;Close\n2020-01-02;1,25\n2020-01-03;1.25\n"),
      "a.csv: numbers with a decimal point and with a decimal comma: 1.25 (line 3), 1,25 (line 2): give "
      "--decimal point or comma");
}

TEST(Csv, RefusesWhatItCannotRead) {
  EXPECT_EQ(errorOf(""), "a.csv: the file is empty");
  EXPECT_EQ(errorOf("\xEF\xBB\xBF\r\n \n"), "a.csv: the file is empty");
  EXPECT_EQ(errorOf("Date,Close\n"), "a.csv: no rows below the header line");
  EXPECT_EQ(errorOf("Date,Close\nx,1\n"), "a.csv: no row can be read: line 2: Date is no date: x");
  EXPECT_EQ(errorOf("1,2\n3,4\n").substr(0, 52), "a.csv: no header line with a date and a close (headi");
  EXPECT_EQ(errorOf("Date,Close,Close\n2020-01-02,1,2\n"), "a.csv: line 1: two columns are headed Close");
  EXPECT_EQ(errorOf("Date,Close\n2020-01-02,1\n2020-01-03,\"2\n2020-01-06,3\n"),
            "a.csv: line 3: a quote is not closed");
  EXPECT_EQ(errorOf(std::string("D\0a\0", 4)), "a.csv: no text in UTF-8 or ASCII");
}

TEST(Csv, Numbers) {
  const auto number = [](const char* text, bool comma = false) {
    double x = 0.0;
    return readNumber(text, comma, x) ? x : -999.0;
  };
  EXPECT_EQ(number("1,234,567.5"), 1234567.5);
  EXPECT_EQ(number("1.234.567,5", true), 1234567.5);
  EXPECT_EQ(number("-$1.50"), -1.5);
  EXPECT_EQ(number("\xE2\x82\xAC 12"), 12.0);
  EXPECT_EQ(number("1.5b"), 1.5e9);
  EXPECT_EQ(number("9.318E+08"), 931800000.0);
  for (const char* text :
       {"12,5", "1,2345", "1,234,5", ",5,", "1.2.3", "12 %", "1e999", "e5", "$", "K", "0x10", "inf"})
    EXPECT_EQ(number(text), -999.0) << text;
}

TEST(Csv, Dates) {
  const auto date = [](const char* text, DateOrder order = DateOrder::YearFirst) {
    DateParts parts;
    return readDate(text, parts) ? dateOf(parts, order) : -1.0;
  };
  const double day = qvYMDtoDate(2020, 1, 3, 0, 0, 0), afternoon = qvYMDtoDate(2020, 1, 3, 13, 5, 0);
  for (const char* text : {"2020-01-03", "2020/1/3", "20200103", "3 Jan 2020", "03-Jan-20", "January 3, 2020",
                           "Fri, Jan 3, 2020", "2020-01-03 00:00:00+00:00"})
    EXPECT_EQ(date(text), day) << text;
  for (const char* text : {"2020-01-03 13:05", "2020-01-03T13:05:00Z", "20200103 130500",
                           "2020-01-03 1:05 PM", "2020-01-03T13:05:00.000-05:00", "2020-01-03 13:05:00 UTC"})
    EXPECT_EQ(date(text), afternoon) << text;
  EXPECT_EQ(date("3.1.2020", DateOrder::DayFirst), day);
  EXPECT_EQ(date("1/3/2020", DateOrder::MonthFirst), day);
  for (const char* text :
       {"2020-01", "2020-01-03x", "2020-1-3-4", "1.3/2020", "Foo 3, 2020", "2020-01-03 25:00", "3"})
    EXPECT_EQ(date(text), -1.0) << text;
  EXPECT_EQ(date("2020-02-30"), 0.0);
}

}  // namespace
#endif
