// Streams of catalogue entries against the calls over whole series.
#include <gtest/gtest.h>

#include <cstring>

#include "core/bar_series.h"
#include "core/guarded_heap.h"
#include "core/memory.h"
#include "stream/support.h"

using namespace qvtest;

namespace {

// An entry's call with random parameters, start and data.
struct RandomCall : EntryCall {
  std::mt19937& random;
  int start;

  RandomCall(const QvCatalogueEntry* entry, std::mt19937& r, int n)
      : EntryCall(entry, n), random(r), start(below(3) ? below(40) - 3 : 0) {
    for (int k = 0; k < e.paramCount; ++k) {
      const QvCatalogueParam& p = e.params[k];
      double& value = params[static_cast<std::size_t>(k)];
      if (p.kind == QV_PARAM_PERIOD)
        value = below(6) ? 1 + below(30) : below(5) ? 50 + below(300) : std::numeric_limits<int>::max();
      if (p.kind == QV_PARAM_INTEGER) value = std::min(p.greatest, p.least + below(12));
      if (p.kind == QV_PARAM_METHOD || p.kind == QV_PARAM_CHOICE) value = below(p.choiceCount);
      if (p.kind == QV_PARAM_DATE && below(2)) value = bars[0].date.data[below(n / 2)];
    }
    if (below(3) == 0)
      for (auto& set : bars)
        for (int k = 1; k < 7; ++k) spoil(qv::seriesOf(set, k));
    if (below(3) == 0)
      for (auto& in : inputs) spoil(in);
    if (below(4) == 0)
      for (auto& in : inputs) round(in);
    if (below(4) == 0)
      for (auto& set : bars)
        for (int k = 1; k < 7; ++k) round(qv::seriesOf(set, k));
  }
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  void spoil(QvArray& a) {
    for (int k = 0; k < 4; ++k) a.data[below(a.size)] = k == 3 ? 0.0 : kNaN;
  }
  void round(QvArray& a) {
    for (int i = 0; i < a.size; ++i) a.data[i] = std::floor(a.data[i]);
  }

  // The second set trades on most days of the first, and on some of its own.
  std::vector<Items> beside;
  void holidays() {
    for (int i = 0; i < bars[1].barsize; ++i)
      bars[1].date.data[i] =
          bars[0].date.data[i] + (i > 3 && i < bars[1].barsize - 2 && below(9) == 0 ? 0.25 : 0.0);
    const QvBars &a = bars[0], &b = bars[1];
    beside.assign(7, Items());
    for (int i = 0, j = 0; i < a.barsize; ++i) {
      while (j + 1 < b.barsize && b.date.data[j] < a.date.data[i]) ++j;
      for (int k = 0; k < 7; ++k) beside[static_cast<std::size_t>(k)].push_back(qv::seriesOf(b, k).data[j]);
    }
  }

  Feed feed() {
    Feed f(static_cast<std::size_t>(e.outputCount), bars.empty() ? inputs[0].size : bars[0].barsize);
    for (std::size_t s = 0; s < bars.size(); ++s)
      for (int k = 0; k < 7; ++k)
        f.values.push_back(s == 1 ? beside[static_cast<std::size_t>(k)].data() : (&bars[s].date)[k].data);
    for (auto& in : inputs) f.values.push_back(in.data);
    return f;
  }
};

// Others with --gtest_shuffle --gtest_random_seed=N.
unsigned seedOf(const std::string& name) {
  return static_cast<unsigned>(std::hash<std::string>{}(name)) +
         static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed());
}

class Streams : public testing::TestWithParam<const QvCatalogueEntry*> {};

TEST_P(Streams, GiveTheBitsOfTheWholeCallHoweverTheBarsCome) {
  const QvCatalogueEntry& e = *GetParam();
  std::mt19937 random(seedOf(e.name));
  for (int trial = 0; trial < 24; ++trial) {
    SCOPED_TRACE(trial);
    RandomCall call(&e, random, 250 + static_cast<int>(random() % 500));
    if (e.barsCount == 2) call.holidays();
    const int status = call.run(call.start);
    QvStream* opened = nullptr;
    const int answer = qvStreamOpen(&e, call.params.data(), call.start, &opened);
    Stream stream(opened);
    if (e.flags & QV_CALC_NO_STREAM) {
      EXPECT_EQ(answer, QV_UNKNOWN);
      continue;
    }
    // No common date to begin with; the change of that strength is 0.0 then.
    if (status == QV_RECORD_NOT_FOUND) continue;
    Array strength;
    if (!std::strcmp(e.name, "qvRSIC") &&
        qvCompStrength(&call.bars[0], &call.bars[1], &strength, call.params[1]) < 0)
      continue;
    ASSERT_EQ(answer, std::min(status, 0));
    if (status < 0) continue;
    ASSERT_EQ(qvStreamOutputCount(opened), e.outputCount);
    Feed feed = call.feed();
    runAtRandom(stream, feed, random);
    if (HasFatalFailure()) return;
    for (int k = 0; k < e.outputCount && status == 0; ++k) {
      const Array& out = call.outputs[static_cast<std::size_t>(k)];
      const int first = qvStreamFirstValid(stream.get(), k);
      if (first == INT32_MAX) continue;
      if (first >= 0 && qvCatalogueFirstValidOf(&e, k, call.params.data(), call.start) >= 0) {
        EXPECT_EQ(first, out.firstValid) << e.outputs[k].name;
      }
      const bool isShort = endsShort(e, out.firstValid, call.start, out.size);
      const int end = out.size - (e.outputs[k].repaints || isShort ? 1 : 0);
      for (int i = std::max(out.firstValid, first); i < end; ++i)
        ASSERT_TRUE(sameBits(feed.outputs[static_cast<std::size_t>(k)][static_cast<std::size_t>(i)], out[i]))
            << e.outputs[k].name << " at " << i << " of " << out.firstValid << ": "
            << feed.outputs[static_cast<std::size_t>(k)][static_cast<std::size_t>(i)] << " is not " << out[i]
            << " params " << testing::PrintToString(call.params) << " start " << call.start;
    }
  }
}

// Each step fails at every allocation in turn, says so, and leaves the stream as it was.
TEST_P(Streams, AreAsTheyWereWhereMemoryRunsOut) {
  const QvCatalogueEntry& e = *GetParam();
  if (e.flags & QV_CALC_NO_STREAM) return;
  for (const bool isLong : {false, true}) {  // windows of a few bars take no memory
    std::mt19937 random(5);
    RandomCall call(&e, random, isLong ? 700 : 300);
    for (int k = 0; k < e.paramCount; ++k)
      call.params[static_cast<std::size_t>(k)] =
          isLong && e.params[k].kind == QV_PARAM_PERIOD ? 210 + k : e.params[k].defaultValue;
    if (e.barsCount == 2) call.holidays();
    Feed feed = call.feed(), smooth = feed;
    const long live = qv::memory::liveBlocks();
    const auto untilDone = [](auto step) {
      for (long k = 1; k < 200; ++k) {
        qv::memory::failAllocation(k);
        const int status = step();
        qv::memory::failAllocation(0);
        if (status >= 0) return;
        ASSERT_EQ(status, QV_MALLOC);
      }
    };
    QvStream* s = nullptr;
    int step = 0;
    untilDone([&] { return qvStreamOpen(&e, call.params.data(), 3, &s); });
    {
      Stream stream(s);
      QvStream* other = nullptr;
      ASSERT_EQ(qvStreamOpen(&e, call.params.data(), 3, &other), 0);
      Stream undisturbed(other);
      for (int i = 0; i < feed.bars;) {
        const int count = std::min(feed.bars - i, i % 7 == 6 ? 90 : 1);
        ASSERT_EQ(qvStreamUpdate(other, feed.from(i).data(), count, smooth.into(i).data()), 0);
        untilDone([&] { return qvStreamPeek(s, feed.from(i).data(), feed.into(i).data()); });
        untilDone([&] { return qvStreamUpdate(s, feed.from(i).data(), count, feed.into(i).data()); });
        if (i % 5 == 0)
          untilDone([&] {
            return qvStreamReplaceLast(s, feed.from(i + count - 1).data(), feed.into(i + count - 1).data());
          });
        if (step++ % 4 == 0) {
          QvStream* next = nullptr;
          untilDone([&] { return qvStreamCopy(s, &next); });
          stream.reset(s = next);
          const auto block = savedOf(s);
          untilDone([&] { return qvStreamLoad(block.data(), static_cast<int>(block.size()), &next); });
          stream.reset(s = next);
          untilDone([&] { return qvStreamSave(s, nullptr, 0); });
        }
        i += count;
      }
      for (std::size_t k = 0; k < feed.outputs.size(); ++k)
        for (std::size_t i = 0; i < feed.outputs[k].size(); ++i)
          ASSERT_TRUE(sameBits(feed.outputs[k][i], smooth.outputs[k][i])) << k << " at " << i;
    }
    EXPECT_EQ(qv::memory::liveBlocks(), live);
  }
}

#ifndef QV_PLAIN_HEAP
// What is taken from the heap while the second half of many bars comes is no more than what the first half
// took.
TEST_P(Streams, TakeMemoryByTheirPeriodsNotByTheBars) {
  const QvCatalogueEntry& e = *GetParam();
  if (e.flags & QV_CALC_NO_STREAM) return;
  std::mt19937 random(1);
  RandomCall call(&e, random, 8000);
  for (int k = 0; k < e.paramCount; ++k) call.params[static_cast<std::size_t>(k)] = e.params[k].defaultValue;
  if (e.barsCount == 2) call.holidays();
  Feed feed = call.feed();
  QvStream* opened = nullptr;
  ASSERT_EQ(qvStreamOpen(&e, call.params.data(), 0, &opened), 0);
  const Stream stream(opened);
  std::size_t most[2] = {};
  for (int i = 0; i < feed.bars; ++i) {
    ASSERT_EQ(qvStreamUpdate(opened, feed.from(i).data(), 1, nullptr), 0);
    std::size_t& half = most[i >= feed.bars / 2];
    half = std::max(half, qv::memory::guarded::liveBytes.load());
  }
  EXPECT_LE(most[1], most[0]);
}
#endif

INSTANTIATE_TEST_SUITE_P(Catalogue, Streams, testing::ValuesIn(allEntries()),
                         [](const auto& entry) { return std::string(entry.param->name); });

}  // namespace
