// Screens, checks and what they stand on.
#include "runs/screen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "runs/check.h"
#include "runs/csv.h"
#include "runs/write.h"

namespace {

using namespace qv::runs;
namespace fs = std::filesystem;

// A directory of its own that goes with the test.
struct Folder {
  fs::path path;
  Folder()
      : path(fs::temp_directory_path() /
             ("qv_runs_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)))) {
    fs::create_directory(path);
  }
  ~Folder() { fs::remove_all(path); }
  void put(const std::string& name, const std::string& text) const { std::ofstream(path / name) << text; }
};

// For builds that read CSV files.
[[maybe_unused]] std::string rising(int bars) {
  std::string text = "Date,Close\n";
  for (int i = 0; i < bars; ++i)
    text += "2020-01-" + std::to_string(10 + i) + "," + std::to_string(100 + i) + ".5\n";
  return text;
}

TEST(Screen, OperandsAreWhatTheRuleCompares) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(operandsOf("rsi(14) < 30 and close > sma(200)"), (Names{"rsi(14)", "close", "sma(200)"}));
  EXPECT_EQ(operandsOf("(rsi(14)<30 or not sma(5) crosses above SMA(9)) and RSI(14) > 1e2"),
            (Names{"rsi(14)", "sma(5)", "SMA(9)"}));
  EXPECT_EQ(operandsOf("(high - low) / close > if(close > open, 1, 2)[1]"),
            (Names{"(high - low) / close", "if(close > open, 1, 2)[1]"}));
  EXPECT_EQ(operandsOf("candle(\"not a < b\") and macd.signal = 0"),
            (Names{"candle(\"not a < b\")", "macd.signal"}));
}

#ifdef QV_WITH_LIBCSV
TEST(Screen, GoodAndBrokenFilesWithAnyNumberOfThreads) {
  const Folder folder;
  folder.put("a.csv", rising(8));
  folder.put("b.csv", rising(2));
  folder.put("c.csv", "");
  folder.put("d.csv", "nothing here\n");
  folder.put("e.csv", rising(9));
  folder.put("f.csv", rising(4) + "2020-01-14,50\n");
  ScreenOptions options;
  options.where = "close > sma(3)";
  for (const int jobs : {1, 2, 7}) {
    options.jobs = jobs;
    const Screened found = screen(sourcesOf(folder.path.string()), options);
    EXPECT_EQ(found.barsNeeded, 3);
    EXPECT_EQ(found.read, 4);
    EXPECT_EQ(found.tooShort, 1);
    ASSERT_EQ(found.matches.size(), 2u);
    EXPECT_EQ(found.matches[0].symbol, "a");
    EXPECT_EQ(found.matches[1].symbol, "e");
    EXPECT_EQ(found.matches[1].close, 108.5);
    EXPECT_EQ(found.matches[1].values, std::vector<double>{107.5});
    ASSERT_EQ(found.unreadable.size(), 2u);
    EXPECT_EQ(found.unreadable[0], (folder.path / "c.csv").string() + ": the file is empty");
  }
  options.asOf = qvYMDtoDate(2020, 1, 13, 0, 0, 0);
  const Screened before = screen(sourcesOf(folder.path.string()), options);
  ASSERT_EQ(before.matches.size(), 3u) << "f had not fallen yet";
  EXPECT_EQ(before.matches[2].date, options.asOf);
  options.where = "volume > 0";
  EXPECT_EQ(screen(sourcesOf(folder.path.string()), options).unknown, 4);
}

TEST(Check, FindsEachKindOnce) {
  std::string text = "Date,Open,High,Low,Close\n";
  for (int day = 10; day < 20; ++day) text += "2020-01-" + std::to_string(day) + ",10,12,9,11\n";
  text +=
      "2020-01-20,10,9,12,11\n"    // high below low, and so both prices outside
      "2020-01-21,10,12,9,13\n"    // close above the high
      "2020-01-21,8,12,9,11\n"     // the day again, open below the low
      "2020-01-18,10,12,9,11\n"    // back
      "2020-01-24,10,12,0,11\n"    // six days on, and a price of 0
      "2020-01-25,10,120,9,110\n"  // ten times the close
      "2020-01-26,x,12,9,11\n";
  std::string found;
  for (const Finding& f : findingsIn(readCsv("a.csv", text, {}))) found += f.place + ": " + f.what + "\n";
  EXPECT_EQ(found,
            "line 18: left out: Open is no number: x\n"
            "line 12: high 9 below low 12\n"
            "line 12: close 11 below low 12\n"
            "line 12: close 11 above high 9\n"
            "line 12: open 10 below low 12\n"
            "line 12: open 10 above high 9\n"
            "line 13: close 13 above high 12\n"
            "line 14: open 8 below low 9\n"
            "line 14: date twice\n"
            "line 15: date before that of the bar above it\n"
            "line 16: price of 0\n"
            "line 16: gap of 6 days\n"
            "line 17: close moves from 11 to 110\n");
}

TEST(Check, NightsAreNoGapsBetweenBarsInTheDay) {
  std::string text = "Datetime,Close\n";
  for (int day = 10; day < 14; ++day)
    for (int minute = 10; minute < 40; minute += 5)
      if (day != 12 || minute == 10 || minute == 35)
        text += "2020-01-" + std::to_string(day) + " 09:" + std::to_string(minute) + ",5.25\n";
  const std::vector<Finding> found = findingsIn(readCsv("a.csv", text, {}));
  ASSERT_EQ(found.size(), 0u) << "25 minutes are five times the usual five, and no more";
}

TEST(Write, WhatIsWrittenReadsBack) {
  const Folder folder;
  const std::string file = (folder.path / "out.csv").string();
  const Loaded first = readCsv("a.csv",
                               "Date,Open,High,Low,Close,Volume\n"
                               "2020-01-02 09:30,1.1,1.30000001,0.1,1.2,10\n"
                               "2020-01-03 09:35:10,1.2,1.3,1.1,1.25,N/A\n",
                               {});
  writeText(file, first.bars);
  for (const char* type : {"txt", "csv"}) {
    LoadOptions how;
    how.type = type;
    const Loaded again = load(file, how);
    ASSERT_EQ(again.bars.barsize, 2);
    for (int k = 0; k < 5; ++k)
      for (int i = 0; i < 2; ++i)
        EXPECT_DOUBLE_EQ((&again.bars.date)[k].data[i], (&first.bars.date)[k].data[i]) << type << k << i;
    EXPECT_EQ(again.bars.volume.data[0], 10.0);
  }
  EXPECT_THROW(writeText(file, first.bars), qv::Error) << "exists";
  EXPECT_THROW(writeText((folder.path / "day.csv").string(), readCsv("a.csv", rising(2), {}).bars), qv::Error)
      << "another layout";
}
#endif

}  // namespace
