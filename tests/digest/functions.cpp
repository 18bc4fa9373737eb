// Functions of numbers, of one bar or of a stretch: with many arguments, drawn by their types.
#include <array>
#include <tuple>
#include <type_traits>

#include "digest.h"

namespace qvtest {
namespace {

struct Range {
  int from, to;
};
constexpr int kSamples = 2000;

// Arguments for a call, and what it writes through its pointers.
class Arguments {
 public:
  Arguments(const Data& data, const QvCandles& candles, Range whole, Range numbers,
            std::vector<const char*> texts)
      : data_(data), candles_(candles), whole_(whole), range_(numbers), texts_(std::move(texts)) {}

  template <typename T>
  T draw() {
    if constexpr (std::is_same_v<T, int> || std::is_same_v<T, short>) {
      return static_cast<T>(numbers_.whole(whole_.from, whole_.to));
    } else if constexpr (std::is_same_v<T, double>) {
      return number();
    } else if constexpr (std::is_same_v<T, const char*>) {
      return texts_[static_cast<std::size_t>(numbers_.whole(0, static_cast<int>(texts_.size()) - 1))];
    } else if constexpr (std::is_same_v<T, const QvBars*>) {
      return bars_++ % 2 ? &data_.rough : &data_.prices;
    } else if constexpr (std::is_same_v<T, const QvCandles*>) {
      return &candles_;
    } else if constexpr (std::is_same_v<T, const QvArray*>) {
      return arrays_++ % 2 ? &data_.prices.open : &data_.prices.close;
    } else if constexpr (std::is_same_v<T, char*>) {
      return text_.data();
    } else if constexpr (std::is_same_v<T, double*> || std::is_same_v<T, int*> || std::is_same_v<T, short*>) {
      auto& written = std::get<std::array<std::remove_pointer_t<T>, 6>>(written_);
      return &written[used_++ % 6];
    } else if constexpr (std::is_same_v<T, const QvOptionLeg*>) {
      return &(option_.bought[0] = leg());
    } else if constexpr (std::is_same_v<T, QvOption*>) {
      option_ = {};
      option_.underlying = number();
      for (QvOptionLeg* l : {option_.bought, option_.bought + 1, option_.written, option_.written + 1})
        *l = leg();
      return &option_;
    } else if constexpr (std::is_same_v<T, const QvBond*>) {
      const int perYear[] = {1, 2, 4, 12};
      bond_ = {1000, 0, 0, perYear[numbers_.whole(0, 3)], 0};
      bond_.price = 900 + number(), bond_.coupon = number(), bond_.maturity = 40000 + 100 * number();
      return &bond_;
    } else {
      static_assert(std::is_same_v<std::remove_const_t<std::remove_pointer_t<T>>, QvTvm>);
      tvm_ = {};
      tvm_.principal = 100 * number(), tvm_.rate = number(), tvm_.years = number();
      tvm_.periodsPerYear = numbers_.whole(1, 12);
      return &tvm_;
    }
  }

  void addWritten(Digest& digest) const {
    std::apply([&](const auto&... arrays) { ((addAll(arrays, digest)), ...); }, written_);
    for (const double v :
         {option_.maxProfit, option_.ratio, option_.maxLoss, option_.upperBreakeven, option_.lowerBreakeven,
          option_.upperMove, option_.lowerMove, tvm_.principal, tvm_.rate})
      digest.add(v);
    digest.add(text_.data());
  }

 private:
  template <typename T>
  static void addAll(const std::array<T, 6>& items, Digest& digest) {
    for (const T v : items)
      if constexpr (std::is_same_v<T, double>)
        digest.add(v);
      else
        digest.add(int{v});
  }
  double number() { return numbers_.number(range_.from, range_.to); }
  QvOptionLeg leg() {
    QvOptionLeg l{};
    l.premium = number(), l.strike = number(), l.type = numbers_.whole(1, 2), l.expiry = 40000 + number();
    return l;
  }

  const Data& data_;
  const QvCandles& candles_;
  const Range whole_, range_;
  const std::vector<const char*> texts_;
  Numbers numbers_{42};
  unsigned bars_ = 0, arrays_ = 0, used_ = 0;
  std::tuple<std::array<double, 6>, std::array<int, 6>, std::array<short, 6>> written_{};
  std::array<char, 256> text_{};
  QvOption option_{};
  QvBond bond_{};
  QvTvm tvm_{};
};

template <typename Result, typename... Args>
void digestFunction(Result(QVCALL* function)(Args...) noexcept, Arguments arguments, Digest& digest) {
  for (int k = 0; k < kSamples; ++k) {
    const std::tuple<Args...> drawn{arguments.draw<Args>()...};  // braces keep the order
    if constexpr (std::is_void_v<Result>)
      std::apply(function, drawn);
    else
      digest.add(std::apply(function, drawn));
    arguments.addWritten(digest);
  }
}

}  // namespace

void digestFunctions(const Data& data, Digests& digests) {
  QvCandles candles{};
  qvCandleConstruct(&data.prices, &candles);
  const std::vector<const char*> parts{"Y", "M", "D", "H", "N", "S", "W", "Q", "DY", "DW", "?"},
      dates{"01/02/2003", "20030405", "3-Feb-99",  "12/31/49 23:59:59",
            "1999-12-31", "30.6.05",  "2/30/2001", "none"},
      times{"09:30", "09:30:01", "23:59:59", "9:30 PM", "12:00 AM", "25:00", "93001", ""},
      pictures{"yyyymmdd", "mm/dd/yy hh:mm:ss", "d-m-yyyy", "hh:mm AM/PM", "YY MM DD HH NN SS A/P", "h:m:s"};
#define FUNCTION(function, ...) \
  digestFunction(function, Arguments(data, candles, __VA_ARGS__), digests[#function])

  for (const int k : {0, 1}) {  // near the beginning, anywhere
    const Range bars{-3, k ? 5200 : 60}, hundred{0, 100};
    FUNCTION(qvGetArrayItem, bars, hundred, {});
    FUNCTION(qvFindDate, bars, {20000, 40000}, {});
    FUNCTION(qvFirstNonZeroItem, bars, hundred, {});
    FUNCTION(qvSumPrev, bars, hundred, {});
    FUNCTION(qvTrueHigh, bars, hundred, {});
    FUNCTION(qvTrueLow, bars, hundred, {});
    FUNCTION(qvTrueRange, bars, hundred, {});
    FUNCTION(qvTypicalPrice, bars, hundred, {});
    FUNCTION(qvWeightedClose, bars, hundred, {});
    FUNCTION(qvMedianPrice, bars, hundred, {});
    FUNCTION(qvGroupBars, bars, hundred, {});
    FUNCTION(qvROC, bars, hundred, {});
    FUNCTION(qvArrayStats, bars, hundred, {});
    FUNCTION(qvArrayStatsPos, bars, hundred, {});
    FUNCTION(qvBarStats, bars, hundred, {});
    FUNCTION(qvAvgPrice, bars, hundred, {});
    FUNCTION(qvStdDev, bars, hundred, {});
    FUNCTION(qvStdErr, bars, hundred, {});
    FUNCTION(qvDispersion, bars, hundred, {});
    FUNCTION(qvRegressionLine, bars, hundred, {});
    FUNCTION(qvCovariance, bars, hundred, {});
    FUNCTION(qvCorCoef, bars, hundred, {});
    FUNCTION(qvSlopeArrayPts, bars, hundred, {});
    FUNCTION(qvOBVol, bars, hundred, {});
    FUNCTION(qvOBOi, bars, hundred, {});
    FUNCTION(qvCandleColor, bars, hundred, {});
    FUNCTION(qvCandleShape, bars, hundred, {});
    FUNCTION(qvCandleTopShadow, bars, hundred, {});
    FUNCTION(qvCandleBotShadow, bars, hundred, {});
    FUNCTION(qvBodyMidpoint, bars, hundred, {});
    FUNCTION(qvBodyGapUp, bars, hundred, {});
    FUNCTION(qvBodyGapDn, bars, hundred, {});
    FUNCTION(qvWesternGapUp, bars, hundred, {});
    FUNCTION(qvWesternGapDn, bars, hundred, {});
    FUNCTION(qvCPR, bars, hundred, {});
    FUNCTION(qvGap, bars, hundred, {});
    FUNCTION(qvIslandReversal, bars, hundred, {});
    FUNCTION(qvInsideBar, bars, hundred, {});
    FUNCTION(qvKeyReversal, bars, hundred, {});
    FUNCTION(qvOutsideBar, bars, hundred, {});
    FUNCTION(qvCrossOver, bars, hundred, {});
    FUNCTION(qvTurn, bars, hundred, {});
  }
  const Range few{0, 30}, day{0, 60}, percents{-5, 100}, moneys{0, 150}, days{-80000, 80000};
  FUNCTION(qvDecimals, {0, 12}, percents, {});
  FUNCTION(qvSlopePts, few, percents, {});
  FUNCTION(qvEMA, few, percents, {});
  FUNCTION(qvPeriodToExp, few, percents, {});
  FUNCTION(qvExpToPeriod, few, percents, {});
  FUNCTION(qvFibonacciProject, few, percents, {});
  FUNCTION(qvFibonacciRetrace, few, percents, {});
  FUNCTION(qvApproxEqual, few, {0, 2}, {});

  FUNCTION(qvApprxCumProbDist, few, {-6, 6}, {});
  FUNCTION(qvBlackScholes, few, moneys, {});
  FUNCTION(qvOptionInit, few, moneys, {});
  FUNCTION(qvBullCall, few, moneys, {});
  FUNCTION(qvBullPut, few, moneys, {});
  FUNCTION(qvBearCall, few, moneys, {});
  FUNCTION(qvBearPut, few, moneys, {});
  FUNCTION(qvLongStraddle, few, moneys, {});
  FUNCTION(qvShortStraddle, few, moneys, {});
  FUNCTION(qvLongStrangle, few, moneys, {});
  FUNCTION(qvShortStrangle, few, moneys, {});
  FUNCTION(qvBondPricing, few, moneys, {});
  FUNCTION(qvBondDuration, few, moneys, {});
  FUNCTION(qvBondDurationPriceChg, few, moneys, {});
  FUNCTION(qvBondAccrInt, few, moneys, {});
  FUNCTION(qvYieldtoMaturity, few, moneys, {});
  FUNCTION(qvTBillDiscYield, few, moneys, {});
  FUNCTION(qvTBillBondEqYield, few, moneys, {});
  FUNCTION(qvFutureValue, few, {0, 40}, {});
  FUNCTION(qvPresentValue, few, {0, 40}, {});
  FUNCTION(qvFutureValuePrinc, few, {0, 40}, {});
  FUNCTION(qvFutureValueInt, few, {0, 40}, {});
  FUNCTION(qvFutureValueAnnuity, few, {0, 40}, {});
  FUNCTION(qvPresentValueAnnuity, few, {0, 40}, {});

  FUNCTION(qvYMDtoDate, few, days, {});
  FUNCTION(qvDateToYMD, few, days, {});
  FUNCTION(qvNumToDate, {19991231, 20010301}, days, {});
  FUNCTION(qvNumToTime, {0, 240000}, days, {});
  FUNCTION(qvDatePart, few, days, parts);
  FUNCTION(qvDateDiff, few, days, parts);
  FUNCTION(qvDayOfWeek, few, days, {});
  FUNCTION(qvIsLeapYear, {1500, 2500}, days, {});
  FUNCTION(qvYearToDays, {1500, 2500}, days, {});
  FUNCTION(qvDateValidate, few, days, {});
  FUNCTION(qvDateStrToYMD, {0, 8}, days, dates);
  FUNCTION(qvDateStrToDate, {0, 8}, days, dates);
  FUNCTION(qvDateStrValidate, {0, 8}, days, dates);
  FUNCTION(qvTimeStrToHMS, few, days, times);
  FUNCTION(qvTimeStrToTime, few, days, times);
  FUNCTION(qvFormatDate, few, days, pictures);
  FUNCTION(qvYMDToJulian, few, days, {});
  FUNCTION(qvHMSToJulian, day, days, {});
  FUNCTION(qvJulianToYMD, few, days, {});
  FUNCTION(qvJulianToHMS, few, days, {});
  FUNCTION(qvJulianDOW, few, days, {});
  FUNCTION(qvJulianDif, few, days, {});
  FUNCTION(qvYMDDif, few, days, {});
  FUNCTION(qvHMSDif, day, days, {});
  FUNCTION(qvDateTxtDif, {0, 8}, days, dates);
  FUNCTION(qvTimeTxtDif, few, days, times);
  FUNCTION(qvDateTxtToJulian, {0, 8}, days, dates);
  FUNCTION(qvDateTxtVal, {0, 8}, days, dates);
  FUNCTION(qvTimeTxtToJulian, few, days, times);
  FUNCTION(qvJulianToDateTxt, {0, 12}, days, {"/", "-", ""});
  FUNCTION(qvJulianToTimeTxt, {0, 12}, days, {":", ""});
#undef FUNCTION
  qvCandleFree(&candles);
}

}  // namespace qvtest
