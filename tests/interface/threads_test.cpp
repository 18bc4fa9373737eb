// Threads that work on their own records while another changes the process-wide settings. What they find is
// what one thread alone finds; ThreadSanitizer (scripts/threads.sh) sees what touches memory of two.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include "support/entry_call.h"
#include "support/expect.h"
#include "support/files.h"
#include "support/trading.h"

namespace qvtest {
namespace {

// Runs each piece of work again and again in two threads, while the settings change under them.
void amidSettings(const std::vector<std::function<void()>>& work, int rounds) {
  std::atomic<bool> done{false};
  std::thread settings([&] {
    for (int k = 0; !done; ++k) {
      qvSetDefaultDateFormat(k % 3);
      qvSet2DigitYearCutoff(k % 100);
      qvSetMaxFirstValid(k % 7);
      std::this_thread::yield();
    }
  });
  std::vector<std::thread> threads;
  for (const auto& piece : work)
    for (int twice = 0; twice < 2; ++twice)
      threads.emplace_back([&piece, rounds] {
        for (int k = 0; k < rounds; ++k) piece();
      });
  for (std::thread& t : threads) t.join();
  done = true;
  settings.join();
  qvSetDefaultDateFormat(QV_DATE_YMD);
  qvSet2DigitYearCutoff(20);
  qvSetMaxFirstValid(0);
}

void calculateEverything() {
  for (const QvCatalogueEntry* e : allEntries()) {
    EntryCall call(e, 60);
    call.run();
    qvCatalogueFirstValid(e, nullptr, 0);
    qvCatalogueSettle(e, nullptr, 0.001);
  }
}

void readFiles() {
  const ScratchDir dir;
  const struct {
    const char *type, *directory, *security;
  } files[] = {{"CT", "computrac", "F1.DAT"},
               {"DJ", "dowjones", "SPX0"},
               {"TC", "telechart", "SPX"},
               {"TT", "techtools", "SPX"},
               {"TXT", "text", "SPX.CSV"}};
  for (const auto& f : files) {
    const std::string path = std::string(QV_DATA_DIR "/") + f.directory;
    Bars bars;
    EXPECT_EQ(qvFILEread(f.type, &bars, path.c_str(), f.security, 0, 200), 0) << f.type;
    EXPECT_EQ(bars.barsize, 200);
    EXPECT_GE(qvFILEfindrec(f.type, path.c_str(), f.security, 36600.0, nullptr), 0) << f.type;
    EXPECT_EQ(qvFILElist(f.type, path.c_str(), (dir / "list").c_str(), 0), 0);
  }
}

void simulate() {
  const ScratchDir dir;
  Backtest test(walkBars(120));
  for (int k = 0; test.next() == 1; ++k)
    test.place({k % 5 ? buy("in", 1 + k % 3) : sellShort("down", 2), sell("out", 1, QV_STOP, 95)});
  EXPECT_GT(test.tradeCount, 0);
  EXPECT_EQ(qvProfitRpt(&test, (dir / "report").c_str(), 0), 0);
  EXPECT_EQ(qvTradeRpt1(&test, (dir / "report").c_str(), 1, 1, ","), 0);
  Array equity;
  EXPECT_EQ(qvEquity(&test, 1000, 0.001, &equity), 0);
}

TEST(Threads, WorkOnTheirOwnRecords) {
  amidSettings({calculateEverything, readFiles, simulate}, 2);
}

// An opened formula may be evaluated by several threads at once; a bar set may be read by several.
TEST(Threads, ShareWhatIsOnlyRead) {
  const Bars bars(walkBars(300));
  const qv::Formula formula("rsi(14) < 60 and close > sma(20)");
  const qv::Series alone = formula(bars);
  const auto evaluate = [&] {
    const Items found = itemsOf(formula(bars)), wanted = itemsOf(alone);
    EXPECT_TRUE(std::equal(found.begin(), found.end(), wanted.begin(), wanted.end(), sameBits));
  };
  amidSettings({evaluate}, 20);
}

}  // namespace
}  // namespace qvtest
