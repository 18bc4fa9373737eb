// Momentum oscillators and stochastics.
#include "rows.h"
#include "tulip.h"

namespace qvpeers {

std::vector<Row> oscillatorRows() {
  return {
      {"RSI", "qvRSI", kPeriod, LIBRARY(qvRSI, CLOSE, OUT, p, 0), TALIB(TA_RSI(ALL, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_rsi, {CLOSES}, {PERIOD}), ""},
      {"CMO", "qvCMO", kWindow, LIBRARY(qvCMO, CLOSE, OUT, p, 0), TALIB(TA_CMO(ALL, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_cmo, {CLOSES}, {PERIOD}),
       "Tulip has the same definition; TA-Lib smooths by Wilder (the ratio takes the faster all the same)"},
      {"momentum", "qvMomentum", kPeriod, LIBRARY(qvMomentum, CLOSE, OUT, p, 0),
       TALIB(TA_MOM(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_mom, {CLOSES}, {PERIOD}), ""},
      {"ROC", "qvRateOfChange", kPeriod, LIBRARY(qvRateOfChange, CLOSE, OUT, 100.0, p, 0),
       TALIB(TA_ROC(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_roc, {CLOSES}, {PERIOD}), ""},
      {"TRIX", "qvTRIX", kPeriod, LIBRARY(qvTRIX, CLOSE, OUT, p, 0),
       TALIB(TA_TRIX(ALL, CLOSES, p, SPAN, TO(0))), TULIP(ti_trix, {CLOSES}, {PERIOD}), ""},
      {"MACD(12,26,9)", "qvMACD", kFixed | kDiffers, LIBRARY(qvMACD, CLOSE, OUT2, 9, 0),
       TALIB(TA_MACDFIX(ALL, CLOSES, 9, SPAN, TO(0), TO(1), TO(2))), TULIP(ti_macd, {CLOSES}, {12, 26, 9}),
       "the peers also write the histogram"},
      {"APO(p/2,p)", "qvPriceOscillator", kPeriod, LIBRARY(qvPriceOscillator, CLOSE, OUT, half(p), p, 0, 0),
       TALIB(TA_APO(ALL, CLOSES, half(p), p, TA_MAType_EMA, SPAN, TO(0))),
       TULIP(ti_apo, {CLOSES}, {static_cast<double>(half(p)), PERIOD}), ""},
      {"PPO(p/2,p)", "qvPriceOscillatorPct", kPeriod,
       LIBRARY(qvPriceOscillatorPct, CLOSE, OUT, half(p), p, 0, 0),
       TALIB(TA_PPO(ALL, CLOSES, half(p), p, TA_MAType_EMA, SPAN, TO(0))),
       TULIP(ti_ppo, {CLOSES}, {static_cast<double>(half(p)), PERIOD}), ""},
      {"STOCH slow(p,3,3)", "qvStochasticOscillator", kWindow | kDiffers,
       LIBRARY(qvStochasticOscillator, BARS, OUT2, 2, p, 3, 3, 0),
       TALIB(TA_STOCH(ALL, HIGHS, LOWS, CLOSES, p, 3, TA_MAType_SMA, 3, TA_MAType_SMA, SPAN, TO(0), TO(1))),
       TULIP(ti_stoch, {HIGHS, LOWS, CLOSES}, {PERIOD, 3, 3}),
       "library's range takes open, high, low and close with a zero rule"},
      {"STOCH fast(p,3)", "qvStochasticFast", kWindow | kDiffers,
       LIBRARY(qvStochasticFast, BARS, OUT2, 2, p, 3, 0),
       TALIB(TA_STOCHF(ALL, HIGHS, LOWS, CLOSES, p, 3, TA_MAType_SMA, SPAN, TO(0), TO(1))),
       TULIP(ti_stoch, {HIGHS, LOWS, CLOSES}, {PERIOD, 1, 3}),
       "library's range takes open, high, low and close with a zero rule"},
      {"STOCHRSI(p)", "qvStochRSI", kWindow, LIBRARY(qvStochRSI, CLOSE, OUT, p, 0),
       TALIB(TA_STOCHRSI(ALL, CLOSES, p, p, 3, TA_MAType_SMA, SPAN, TO(0), TO(1))),
       TULIP(ti_stochrsi, {CLOSES}, {PERIOD}), "TA-Lib also writes D"},
      {"Williams %R", "qvWilliamsR", kWindow, LIBRARY(qvWilliamsR, BARS, OUT, p, 0),
       TALIB(TA_WILLR(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_willr, {HIGHS, LOWS, CLOSES}, {PERIOD}), ""},
      {"CCI", "qvCCI", kWindow, LIBRARY(qvCCI, BARS, OUT, p, 0),
       TALIB(TA_CCI(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_cci, {HIGHS, LOWS, CLOSES}, {PERIOD}), ""},
      {"ULTOSC(p/2,p,2p)", "qvUltimateOsc", kWindow, LIBRARY(qvUltimateOsc, BARS, OUT, half(p), p, 2 * p, 0),
       TALIB(TA_ULTOSC(ALL, HIGHS, LOWS, CLOSES, half(p), p, 2 * p, SPAN, TO(0))),
       TULIP(ti_ultosc, {HIGHS, LOWS, CLOSES}, {static_cast<double>(half(p)), PERIOD, 2 * PERIOD}), ""},
      {"DPO", "qvDPO", kWindow, LIBRARY(qvDPO, CLOSE, OUT, p, 0), nullptr, TULIP(ti_dpo, {CLOSES}, {PERIOD}),
       ""},
  };
}

}  // namespace qvpeers
