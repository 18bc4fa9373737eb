// Sweeps: rows that no number of threads changes, and walks that know nothing of the bars behind them.
#include "runs/sweep.h"
#include "core/bar_series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "support/spx.h"

namespace qvtest {
namespace {

using namespace qv::runs;

SweepSource sourceOf(const std::string& name, const QvBars& bars) {
  return {name, [&bars] {
            qv::Bars copy;
            qvCopyBars(&bars, &copy);
            return copy;
          }};
}

SweepRequest crossings(std::vector<SweepSource> sources) {
  SweepRequest request;
  request.rules = {"sma($fast) crosses above sma($slow)", "sma($fast) crosses below sma($slow)", "", "",
                   "$far * atr(14)"};
  request.sets = {parseSet("far=2,4"), parseSet("fast=5:25:10"), parseSet("$SLOW=60:200:70")};
  request.sources = std::move(sources);
  return request;
}

bool same(const Figures& a, const Figures& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

std::string refusal(const std::function<void()>& call) {
  try {
    call();
  } catch (const qv::Error& e) {
    return e.what();
  }
  return "";
}

TEST(ParameterSets, HaveBothEndsAndComeInOrder) {
  EXPECT_EQ(parseSet("Fast=5:50:15").values, Items({5, 20, 35, 50}));
  EXPECT_EQ(parseSet("x=0.1:0.7:0.1").values, Items({0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7}));
  EXPECT_EQ(parseSet("x=1:4").values, Items({1, 2, 3, 4}));
  EXPECT_EQ(parseSet("x=4:1:-2").values, Items({4, 2}));
  EXPECT_EQ(parseSet("x=-1.5,1e2").values, Items({-1.5, 100}));
  for (const char* text :
       {"x", "=1", "x=", "x=1:", "x=1:2:0", "x=1:2:-1", "x=1:2:3:4", "x=a", "x=1:1e9:1", "x=nan"})
    EXPECT_NE(refusal([&] { parseSet(text); }), "") << text;

  const SweepRequest request = crossings({});
  EXPECT_EQ(checkSweep(request), 18u);
  EXPECT_EQ(request.valuesOf(0), Items({2, 5, 60}));
  EXPECT_EQ(request.valuesOf(1), Items({2, 5, 130}));
  EXPECT_EQ(request.valuesOf(17), Items({4, 25, 200}));
  SweepRequest wrong = request;
  wrong.sets[1].name = "fats";
  EXPECT_EQ(refusal([&] { checkSweep(wrong); }), "$fats: not in the rules, did you mean $fast?");
  wrong.sets[1] = parseSet("fast=0:5");
  EXPECT_EQ(refusal([&] { checkSweep(wrong); }), "long: a number is out of range with fast=0, slow=60");
  wrong.sets.pop_back();
  EXPECT_EQ(refusal([&] { checkSweep(wrong); }), "$slow: has no value, give one with --set slow=...");
}

TEST(Sweep, RowsAreThoseOfSingleRunsWithAnyNumberOfThreads) {
  const Bars& bars = spx();
  const Bars walk(walkBars(900)), other(walkBars(700, 2));
  SweepRequest request = crossings({sourceOf("SPX", bars), sourceOf("one", walk), sourceOf("two", other)});
  request.settings.cost = 0.001;
  request.sources.push_back({"none", []() -> qv::Bars { throw qv::Error("none", QV_FILE_OPEN); }});
  const SweepResult one = sweep(request, {.jobs = 1}), two = sweep(request, {.jobs = 2});
  ASSERT_EQ(one.rows.size(), 54u);
  ASSERT_EQ(two.rows.size(), 54u);
  EXPECT_EQ(one.failed, std::vector<std::string>{"none: File Open"});
  Rules rules(request.rules);
  for (std::size_t k = 0; k < 54; ++k) {
    const SweepRow& row = one.rows[k];
    EXPECT_EQ(row.source, k / 18);
    EXPECT_EQ(row.combination, k % 18);
    EXPECT_TRUE(same(row.figures, two.rows[k].figures)) << k;
    const QvBars& set = k < 18 ? static_cast<const QvBars&>(bars) : k < 36 ? walk : other;
    const Items v = request.valuesOf(row.combination);  // far, fast, slow; the rules name fast first
    rules.set(Items({v[1], v[2], v[0]}));
    rules.forget();
    Backtest test(set, "single", request.settings);
    EXPECT_TRUE(same(row.figures, test.run(rules.over(set)))) << k;
  }
  ASSERT_EQ(one.medians.size(), 18u);
  for (const MedianRow& m : one.medians)
    for (std::size_t k = 0; k < figureList().size(); ++k) {
      Items values;
      for (std::size_t s = 0; s < 3; ++s)
        values.push_back(figureList()[k].of(one.rows[s * 18 + m.combination].figures));
      std::sort(values.begin(), values.end());
      EXPECT_EQ(m.values[k], values[1]);
    }

  request.rank = &findFigure("Drawdown");
  const SweepResult ranked = sweep(request, {.jobs = 2});
  for (std::size_t k = 1; k < ranked.rows.size(); ++k)
    EXPECT_LE(+ranked.rows[k - 1].figures.equity.greatestDrawdown,
              +ranked.rows[k].figures.equity.greatestDrawdown);
  EXPECT_LE(ranked.medians[0].values[5], ranked.medians[17].values[5]);
  EXPECT_EQ(refusal([] { findFigure("shrpe"); }), "shrpe: no such figure, did you mean sharpe?");
}

TEST(Sweep, StopsAtOnceAndKeepsWhatIsDone) {
  std::atomic<bool> stopped{true};
  SweepRequest request = crossings({sourceOf("SPX", spx())});
  EXPECT_TRUE(sweep(request, {.jobs = 2, .stopped = &stopped}).rows.empty());
  EXPECT_FALSE(walkForward((request.rank = &findFigure("sharpe"), request), parseWalk("5y/1y"),
                           {.jobs = 2, .stopped = &stopped})
                   .isComplete);
  stopped = false;
  request.sets[1] = parseSet("fast=5:50");
  request.sets[2] = parseSet("slow=60:200");
  request.rank = nullptr;
  const SweepResult part =
      sweep(request, {.jobs = 2, .stopped = &stopped, .progress = [&](double) { stopped = true; }});
  EXPECT_FALSE(part.isComplete);
  ASSERT_GT(part.rows.size(), 0u);
  EXPECT_LT(part.rows.size(), 12972u);
  EXPECT_GT(part.rows.back().figures.equity.bars, 0);
}

TEST(Walk, TunesOnBarsThatKnowNothingOfTheFuture) {
  const Bars& bars = spx();
  SweepRequest request = crossings({sourceOf("SPX", bars)});
  request.rules[kExit] = "weekly(close) < weekly(sma(10)) or rsi($fast) > 90";
  request.rank = &findFigure("sharpe");
  const Walk walk = parseWalk("5y/1y");
  const WalkResult known = walkForward(request, walk, {.jobs = 1}),
                   again = walkForward(request, walk, {.jobs = 2});
  ASSERT_EQ(known.rows.size(), 16u);
  EXPECT_TRUE(known.isComplete);
  for (std::size_t k = 0; k < known.rows.size(); ++k) {
    const WalkRow &a = known.rows[k], &b = again.rows[k];
    EXPECT_TRUE(a.combination == b.combination && same(a.tuned, b.tuned) && same(a.tested, b.tested)) << k;
    EXPECT_LT(a.tunedOn.to, a.testedOn.from);
    EXPECT_EQ(qvDatePart("Y", a.testedOn.from), 2005 + static_cast<int>(k));
  }

  // The bars behind the sixth window's tuned stretch in another order, with other prices.
  const auto cut = static_cast<int>(
      std::upper_bound(bars.date.data, bars.date.data + bars.barsize, known.rows[5].tunedOn.to) -
      bars.date.data);
  qv::Bars scrambled = sourceOf("SPX", bars).load();
  std::mt19937 random(7);
  for (int i = cut; i < scrambled.barsize; ++i) {
    const int from = cut + static_cast<int>(random() % static_cast<unsigned>(bars.barsize - cut));
    for (int k = 1; k < qv::kSeriesCount - 1; ++k)
      qv::seriesOf(scrambled, k).data[i] = qv::seriesOf(bars, k).data[from] * 3;
  }
  request.sources = {sourceOf("SPX", scrambled)};
  const WalkResult other = walkForward(request, walk, {.jobs = 2});
  for (std::size_t k = 0; k <= 5; ++k) {
    EXPECT_EQ(known.rows[k].combination, other.rows[k].combination);
    EXPECT_TRUE(same(known.rows[k].tuned, other.rows[k].tuned)) << k;
    EXPECT_EQ(same(known.rows[k].tested, other.rows[k].tested), k < 5) << k;
  }

  // The chosen one is the best of its stretch: no combination does better there by itself.
  request.sources = {
      {"SPX", [&] {
         qv::Bars first = sourceOf("SPX", bars).load();
         qvReSizeBars(&first, static_cast<int>(std::lower_bound(bars.date.data, bars.date.data + bars.barsize,
                                                                known.rows[0].testedOn.from) -
                                               bars.date.data));
         return first;
       }}};
  const SweepResult best = sweep(request, {.jobs = 2});
  EXPECT_EQ(best.rows[0].combination, known.rows[0].combination);
  EXPECT_TRUE(same(best.rows[0].figures, known.rows[0].tuned));

  for (const char* text : {"5y", "y/1y", "5y/", "0y/1y", "5x/1y", "5yy/1y", "-5y/1y", "5y/1y/1y"})
    EXPECT_NE(refusal([&] { parseWalk(text); }), "") << text;
  EXPECT_EQ(walkForward(request, parseWalk("30y/1y"), {}).failed.size(), 1u);
  EXPECT_EQ(walkForward(request, parseWalk("9m/400d"), {}).rows.size(), 4u);
}

}  // namespace
}  // namespace qvtest
