// Averages and moving statistics.
#include "rows.h"
#include "tulip.h"

namespace qvpeers {

std::vector<Row> averageRows() {
  return {
      {"SMA", "qvSimpleMA", kWindow, LIBRARY(qvSimpleMA, CLOSE, OUT, p, 0),
       TALIB(TA_SMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_sma, {CLOSES}, {PERIOD}), ""},
      {"EMA", "qvExpMA", kPeriod, LIBRARY(qvExpMA, CLOSE, OUT, PERIOD, 0),
       TALIB(TA_EMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_ema, {CLOSES}, {PERIOD}), ""},
      {"WMA", "qvWeightedMA", kWindow, LIBRARY(qvWeightedMA, CLOSE, OUT, p, 0),
       TALIB(TA_WMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_wma, {CLOSES}, {PERIOD}), ""},
      {"DEMA", "qvDEMA", kPeriod, LIBRARY(qvDEMA, CLOSE, OUT, PERIOD, 0),
       TALIB(TA_DEMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_dema, {CLOSES}, {PERIOD}), ""},
      {"TEMA", "qvTEMA", kPeriod, LIBRARY(qvTEMA, CLOSE, OUT, PERIOD, 0),
       TALIB(TA_TEMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_tema, {CLOSES}, {PERIOD}), ""},
      {"TRIMA", "qvTriangularMA", kWindow, LIBRARY(qvTriangularMA, CLOSE, OUT, p, 0),
       TALIB(TA_TRIMA(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_trima, {CLOSES}, {PERIOD}), ""},
      {"T3", "qvT3", kPeriod, LIBRARY(qvT3, CLOSE, OUT, PERIOD, 0.7, 3, 0),
       TALIB(TA_T3(ALL, CLOSES, p, 0.7, SPAN, TO(0))), nullptr, ""},
      {"zero-lag EMA", "qvZeroLagExpMA", kPeriod, LIBRARY(qvZeroLagExpMA, CLOSE, OUT, PERIOD, 0), nullptr,
       TULIP(ti_zlema, {CLOSES}, {PERIOD}), ""},
      {"Wilder average", "qvWellesMA", kPeriod, LIBRARY(qvWellesMA, CLOSE, OUT, p, 0), nullptr,
       TULIP(ti_wilders, {CLOSES}, {PERIOD}), ""},
      {"VIDYA(p/2,p)", "qvVIDYA", kWindow | kDiffers, LIBRARY(qvVIDYA, CLOSE, OUT, half(p), p, 0), nullptr,
       TULIP(ti_vidya, {CLOSES}, {static_cast<double>(half(p)), PERIOD, 0.2}),
       "library: CMO weight; Tulip: ratio of deviations"},
      {"VWMA", "qvVolAdjustedMA", kWindow, LIBRARY(qvVolAdjustedMA, CLOSE, VOLUME, OUT, p, 0), nullptr,
       TULIP(ti_vwma, {CLOSES, VOLUMES}, {PERIOD}), ""},
      {"SUM", "qvMovingSum", kWindow, LIBRARY(qvMovingSum, CLOSE, OUT, p, 0),
       TALIB(TA_SUM(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_sum, {CLOSES}, {PERIOD}), ""},
      {"forecast (TSF)", "qvLstSqrMA", kWindow, LIBRARY(qvLstSqrMA, CLOSE, OUT, p, 0),
       TALIB(TA_TSF(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_tsf, {CLOSES}, {PERIOD}), ""},
      {"regression slope+intercept", "qvRegressionLineMv", kWindow,
       LIBRARY(qvRegressionLineMv, CLOSE, OUT2, p, 0, d.n - 1),
       TALIB(TA_LINEARREG_SLOPE(ALL, CLOSES, p, SPAN, TO(0)) |
             TA_LINEARREG_INTERCEPT(ALL, CLOSES, p, SPAN, TO(1))),
       TULIPS(callTulip(ti_linregslope, d, d.n, {CLOSES}, {PERIOD}) |
              callTulip(ti_linregintercept, d, d.n, {CLOSES}, {PERIOD}, 1)),
       "one call; the peers need two"},
      {"forecast oscillator", "qvForecastOscillator", kWindow | kDiffers,
       LIBRARY(qvForecastOscillator, CLOSE, OUT2, p, 3, 0), nullptr, TULIP(ti_fosc, {CLOSES}, {PERIOD}),
       "library adds a signal average"},
      {"STDDEV", "qvStdDevMv", kWindow, LIBRARY(qvStdDevMv, CLOSE, OUT, 0, p, 0),
       TALIB(TA_STDDEV(ALL, CLOSES, p, 1, SPAN, TO(0))), TULIP(ti_stddev, {CLOSES}, {PERIOD}), ""},
      {"CORREL", "qvCorCoefMv", kWindow, LIBRARY(qvCorCoefMv, CLOSE, &d.second, OUT, 1, p, 0),
       TALIB(TA_CORREL(ALL, CLOSES, SECOND, p, SPAN, TO(0))), nullptr, ""},
      {"BETA", "qvBetaCoefMv", kWindow | kDiffers, LIBRARY(qvBetaCoefMv, CLOSE, &d.second, OUT, 1, p, 0),
       TALIB(TA_BETA(ALL, CLOSES, SECOND, p, SPAN, TO(0))), nullptr,
       "library: correlation / log dispersion; TA-Lib: regression of returns"},
      {"MAX+MIN (price channel)", "qvPriceChannels", kWindow | kDiffers,
       LIBRARY(qvPriceChannels, BARS, OUT2, p, 0),
       TALIB(TA_MAX(ALL, HIGHS, p, SPAN, TO(0)) | TA_MIN(ALL, LOWS, p, SPAN, TO(1))),
       TULIPS(callTulip(ti_max, d, d.n, {HIGHS}, {PERIOD}) | callTulip(ti_min, d, d.n, {LOWS}, {PERIOD}, 1)),
       "library looks at open, high, low and close with a zero rule; the peers at one series each"},
  };
}

}  // namespace qvpeers
