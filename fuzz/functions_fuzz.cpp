// What is no calculation of the catalogue: records, array utilities, bar compression, formations, candles and
// their patterns, statistics of a stretch, options, bonds, interest. One template calls them all: it makes an
// argument for each type, out of a few bar sets, series, texts and numbers that the calls of one input share.
#include <array>
#include <deque>
#include <tuple>
#include <type_traits>

#include "input.h"

namespace qvfuzz {
namespace {

class Pool {
 public:
  explicit Pool(Input& input) : in(input), kept_(1) {
    for (BarSet& b : bars_) {
      if (in.flip()) continue;
      b.fill(in, in.choose(0, 40));
      b.disturb(in);
    }
    emptyWithoutDates();
    for (Series& a : series_) {
      if (in.seldom(4)) continue;
      const int n = in.choose(0, 40);
      a.allocate(n);
      fill(in, a, n);
      if (in.seldom(4)) a.firstValid = firstValid(in, n);
      if (in.seldom(4)) a.size = in.choose(-1, n);
    }
    if (in.flip() && bars_[0].close.data) {
      if (in.flip())
        qvCandleConstruct(&bars_[0], &candles_);
      else
        qvCandleConstructTrailing(&bars_[0], &candles_, in.choose(-1, 30));
    }
  }
  ~Pool() { qvCandleFree(&candles_); }

  template <typename T>
  T make() {
    if constexpr (std::is_same_v<T, int>)
      return in.integer();
    else if constexpr (std::is_same_v<T, double>)
      return in.number();
    else if constexpr (std::is_same_v<T, const char*>)
      return text();
    else if constexpr (std::is_same_v<T, const QvArray*>)
      return anySeries();
    else if constexpr (std::is_same_v<T, QvArray*>)
      return written(anySeries());
    else if constexpr (std::is_same_v<T, const QvBars*>)
      return anyBars();
    else if constexpr (std::is_same_v<T, QvBars*>)
      return written(anyBars());
    else if constexpr (std::is_same_v<T, const QvCandles*>)
      return fits() ? &candles_ : nullptr;
    else if constexpr (std::is_same_v<T, double*>)
      return in.seldom(8) ? nullptr : &doubles_[next_++ % doubles_.size()];
    else if constexpr (std::is_same_v<T, int*>)
      return in.seldom(8) ? nullptr : &ints_[next_++ % ints_.size()];
    else if constexpr (std::is_pointer_v<T>)
      return record<std::remove_const_t<std::remove_pointer_t<T>>>();
    else
      return static_cast<T>(in.integer());
  }

  template <typename Result, typename... Arguments>
  void call(Result(QVCALL* function)(Arguments...) noexcept) {
    writtenBars_ = nullptr;
    writtenSeries_.clear();
    const std::tuple<Arguments...> arguments{make<Arguments>()...};
    Snapshot others;
    for (BarSet& b : bars_)
      for (int s = 0; s < qv::kSeriesCount; ++s)
        if (&b != writtenBars_ && !isWritten(qv::seriesOf(b, s))) others.add(qv::seriesOf(b, s));
    for (Series& a : series_)
      if (!isWritten(a)) others.add(a);
    std::apply(function, arguments);
    others.require();
    for (BarSet& b : bars_)
      for (int s = 0; s < qv::kSeriesCount; ++s) qvfuzz::require(qv::seriesOf(b, s));
    for (Series& a : series_) qvfuzz::require(a);
    emptyWithoutDates();
  }

  Input& in;

 private:
  // A set without dates counts as empty, and is allocated anew.
  void emptyWithoutDates() {
    for (BarSet& b : bars_)
      if (!b.date.data) qvFreeBars(&b);
  }
  // A candle set belongs to the bars that it was made of.
  bool fits() { return in.choose(0, 15) != 0; }
  const QvArray* anySeries() {
    const int which = in.choose(0, 15);
    if (which < 5) return &series_[static_cast<std::size_t>(which)];
    if (which == 15) return nullptr;
    return &qv::seriesOf(bars_[static_cast<std::size_t>(which % 2)], which % 7);
  }
  const QvBars* anyBars() {
    const int which = in.choose(0, 7);
    return which == 7 ? nullptr : &bars_[which > 4];
  }
  QvArray* written(const QvArray* a) {
    writtenSeries_.push_back(a);
    return const_cast<QvArray*>(a);
  }
  QvBars* written(const QvBars* b) {
    // Two outputs at once: of the later one nothing is required.
    if (b) {
      for (int s = 0; s < qv::kSeriesCount; ++s) writtenSeries_.push_back(&qv::seriesOf(*b, s));
      writtenBars_ = b;
    }
    return const_cast<QvBars*>(b);
  }
  bool isWritten(const QvArray& a) const {
    for (const QvArray* w : writtenSeries_)
      if (w == &a) return true;
    return false;
  }
  const char* text() {
    static constexpr const char* kWords[] = {
        "InsideBar", "qvOutsideBar", "HaramiBlack", "KeyReversal", "", "Gap", "x"};
    const int which = in.choose(0, 8);
    if (which == 8) return nullptr;
    if (which == 7) return kept_.emplace_back(in.cText(30)).c_str();
    return kWords[which];
  }
  template <typename Record>
  Record* record() {
    static_assert(std::is_trivially_copyable_v<Record>);
    if (in.seldom(8)) return nullptr;
    alignas(8) static char bytes[4096];
    static_assert(sizeof(Record) <= sizeof bytes);
    for (std::size_t k = 0; k + 8 <= sizeof(Record) && k < 200; k += 8) {
      const double d = in.number();
      std::memcpy(bytes + k, &d, 8);
      if (in.seldom(3)) {
        const int i = in.integer();
        std::memcpy(bytes + k + 4, &i, 4);
      }
    }
    return reinterpret_cast<Record*>(bytes);
  }

  std::array<BarSet, 2> bars_;
  std::array<Series, 5> series_;
  QvCandles candles_{};
  std::array<double, 8> doubles_{};
  std::array<int, 8> ints_{};
  std::size_t next_ = 0;
  std::vector<const QvArray*> writtenSeries_;
  const QvBars* writtenBars_ = nullptr;
  std::deque<std::string> kept_;
};

using Caller = void (*)(Pool&);
template <auto kFunction>
void callIt(Pool& pool) {
  pool.call(kFunction);
}
#define CALL(function) callIt<function>
constexpr Caller kCallers[] = {
    CALL(qvAbandonedBabyBottom),
    CALL(qvAbandonedBabyTop),
    CALL(qvAdvanceBlock),
    CALL(qvApproxEqual),
    CALL(qvApprxCumProbDist),
    CALL(qvArmsIdx),
    CALL(qvArrayStats),
    CALL(qvArrayStatsPos),
    CALL(qvAvgPrice),
    CALL(qvBarStats),
    CALL(qvBearCall),
    CALL(qvBearPut),
    CALL(qvBeltHoldLineBear),
    CALL(qvBeltHoldLineBull),
    CALL(qvBlackScholes),
    CALL(qvBodyGapDn),
    CALL(qvBodyGapUp),
    CALL(qvBodyMidpoint),
    CALL(qvBondAccrInt),
    CALL(qvBondDuration),
    CALL(qvBondDurationPriceChg),
    CALL(qvBondPricing),
    CALL(qvBullCall),
    CALL(qvBullPut),
    CALL(qvCPR),
    CALL(qvCandleBotShadow),
    CALL(qvCandleColor),
    CALL(qvCandleShape),
    CALL(qvCandleTopShadow),
    CALL(qvCompPerformance),
    CALL(qvCompStrength),
    CALL(qvCopyArray),
    CALL(qvCopyBarInfo),
    CALL(qvCopyBars),
    CALL(qvCorCoef),
    CALL(qvCounterAttackBear),
    CALL(qvCounterAttackBull),
    CALL(qvCovariance),
    CALL(qvCrossOver),
    CALL(qvCrossOverFill),
    CALL(qvDarkCloudCover),
    CALL(qvDeTrend),
    CALL(qvDecimals),
    CALL(qvDispersion),
    CALL(qvEMA),
    CALL(qvEngulfingLineBear),
    CALL(qvEngulfingLineBull),
    CALL(qvEveningDojiStar),
    CALL(qvEveningStar),
    CALL(qvExpToPeriod),
    CALL(qvFalling3Method),
    CALL(qvFibonacciProject),
    CALL(qvFibonacciRetrace),
    CALL(qvFindDate),
    CALL(qvFirstNonZeroItem),
    CALL(qvFormationFill),
    CALL(qvFutureValue),
    CALL(qvFutureValueAnnuity),
    CALL(qvFutureValueInt),
    CALL(qvFutureValuePrinc),
    CALL(qvGap),
    CALL(qvGetArrayItem),
    CALL(qvGetMaxFirstValid),
    CALL(qvGravestoneDoji),
    CALL(qvGroupArray),
    CALL(qvGroupBars),
    CALL(qvGroupBarsArray),
    CALL(qvGroupBarsDate),
    CALL(qvGroupBarsPeriods),
    CALL(qvGroupBarsTime),
    CALL(qvHammer),
    CALL(qvHangingman),
    CALL(qvHaramiBlack),
    CALL(qvHaramiCrossBlack),
    CALL(qvHaramiCrossWhite),
    CALL(qvHaramiWhite),
    CALL(qvHighWave),
    CALL(qvIchimokuKinkoHyo),
    CALL(qvInNeckLine),
    CALL(qvInsideBar),
    CALL(qvInvertedHammer),
    CALL(qvIslandReversal),
    CALL(qvKeyReversal),
    CALL(qvLongLeggedDoji),
    CALL(qvLongStraddle),
    CALL(qvLongStrangle),
    CALL(qvMatHoldPattern),
    CALL(qvMedianPrice),
    CALL(qvMorningDojiStar),
    CALL(qvMorningStar),
    CALL(qvOBOi),
    CALL(qvOBVol),
    CALL(qvOptionInit),
    CALL(qvOutsideBar),
    CALL(qvPeriodToExp),
    CALL(qvPiercingLine),
    CALL(qvPresentValue),
    CALL(qvPresentValueAnnuity),
    CALL(qvROC),
    CALL(qvRSIC),
    CALL(qvReAllocArray),
    CALL(qvReAllocBars),
    CALL(qvReSizeArray),
    CALL(qvReSizeBars),
    CALL(qvRegressionLine),
    CALL(qvRegressionLineMv),
    CALL(qvRising3Method),
    CALL(qvSeperatingLineBear),
    CALL(qvSeperatingLineBull),
    CALL(qvSetArrayItem),
    CALL(qvSetFirstValid),
    CALL(qvSetMaxFirstValid),
    CALL(qvShiftArray),
    CALL(qvShootingStar),
    CALL(qvShortStraddle),
    CALL(qvShortStrangle),
    CALL(qvSideBySideWhiteGapDn),
    CALL(qvSideBySideWhiteGapUp),
    CALL(qvSlopeArrayPts),
    CALL(qvSlopePts),
    CALL(qvSpread),
    CALL(qvStalledPattern),
    CALL(qvStdDev),
    CALL(qvStdErr),
    CALL(qvSumPrev),
    CALL(qvTBillBondEqYield),
    CALL(qvTBillDiscYield),
    CALL(qvTasukiDownsideGap),
    CALL(qvTasukiUpsideGap),
    CALL(qvThreeGapsDown),
    CALL(qvThreeGapsUp),
    CALL(qvThreeWhiteSoldiers),
    CALL(qvThrustingLine),
    CALL(qvTrueHigh),
    CALL(qvTrueLow),
    CALL(qvTrueRange),
    CALL(qvTurn),
    CALL(qvTurnFill),
    CALL(qvTypicalPrice),
    CALL(qvUpsideGap2Crows),
    CALL(qvWeightedClose),
    CALL(qvWesternGapDn),
    CALL(qvWesternGapUp),
    CALL(qvYieldtoMaturity),
};
#undef CALL

void run(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  Heap heap(in);
  Pool pool(in);
  heap.arm();
  for (int k = 0; k < 8 && !in.empty(); ++k) kCallers[in.choose(0, std::size(kCallers) - 1)](pool);
  Heap::disarm();
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::run(data, size);
  return 0;
}
