// Trend, volume and prices.
#include "rows.h"
#include "tulip.h"

namespace qvpeers {

std::vector<Row> trendRows() {
  return {
      {"true range", "qvTR", kFixed, LIBRARY(qvTR, BARS, OUT, 0),
       TALIB(TA_TRANGE(ALL, HIGHS, LOWS, CLOSES, SPAN, TO(0))), TULIP(ti_tr, {HIGHS, LOWS, CLOSES}, {}), ""},
      {"ATR", "qvATR", kPeriod, LIBRARY(qvATR, BARS, OUT, p, 0),
       TALIB(TA_ATR(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_atr, {HIGHS, LOWS, CLOSES}, {PERIOD}), ""},
      {"+DM and -DM (raw)", "qvDMIx", kFixed, LIBRARY(qvDMIx, BARS, OUT2, 0),
       TALIB(TA_PLUS_DM(ALL, HIGHS, LOWS, 1, SPAN, TO(0)) | TA_MINUS_DM(ALL, HIGHS, LOWS, 1, SPAN, TO(1))),
       TULIP(ti_dm, {HIGHS, LOWS}, {1}), "TA-Lib needs two calls"},
      {"+DI and -DI", "qvDI", kPeriod, LIBRARY(qvDI, BARS, OUT2, p, 0),
       TALIB(TA_PLUS_DI(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0)) |
             TA_MINUS_DI(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(1))),
       TULIP(ti_di, {HIGHS, LOWS, CLOSES}, {PERIOD}), "TA-Lib needs two calls"},
      {"DX", "qvDX", kPeriod, LIBRARY(qvDX, BARS, OUT, p, 0),
       TALIB(TA_DX(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))), TULIP(ti_dx, {HIGHS, LOWS, CLOSES}, {PERIOD}),
       ""},
      {"ADX", "qvADX", kPeriod, LIBRARY(qvADX, BARS, OUT, p, p, 0),
       TALIB(TA_ADX(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_adx, {HIGHS, LOWS, CLOSES}, {PERIOD}), ""},
      {"ADXR", "qvADXR", kPeriod, LIBRARY(qvADXR, BARS, OUT, p, p, p - 1, 0),
       TALIB(TA_ADXR(ALL, HIGHS, LOWS, CLOSES, p, SPAN, TO(0))),
       TULIP(ti_adxr, {HIGHS, LOWS, CLOSES}, {PERIOD}), ""},
      {"SAR(.02,.2)", "qvSAR", kFixed | kDiffers, LIBRARY(qvSAR, BARS, OUT2, 0.02, 0.2, 0),
       TALIB(TA_SAR(ALL, HIGHS, LOWS, 0.02, 0.2, SPAN, TO(0))), TULIP(ti_psar, {HIGHS, LOWS}, {0.02, 0.2}),
       "library turns on the close and also writes the direction"},
      {"Aroon", "qvAroon", kWindow, LIBRARY(qvAroon, BARS, OUT2, p, 0),
       TALIB(TA_AROON(ALL, HIGHS, LOWS, p, SPAN, TO(0), TO(1))), TULIP(ti_aroon, {HIGHS, LOWS}, {PERIOD}),
       "ties: earliest bar here, latest in the peers"},
      {"Aroon oscillator", "qvAroonOscillator", kWindow, LIBRARY(qvAroonOscillator, BARS, OUT, p, 0),
       TALIB(TA_AROONOSC(ALL, HIGHS, LOWS, p, SPAN, TO(0))), TULIP(ti_aroonosc, {HIGHS, LOWS}, {PERIOD}),
       "ties: earliest bar here, latest in the peers"},
      {"VHF", "qvVHF", kWindow | kDiffers, LIBRARY(qvVHF, CLOSE, OUT, p, 0), nullptr,
       TULIP(ti_vhf, {CLOSES}, {PERIOD}), "library's noise is relative (one division a bar more)"},
  };
}

std::vector<Row> volumeRows() {
  return {
      {"OBV", "qvOBV", kFixed, LIBRARY(qvOBV, BARS, OUT, 0), TALIB(TA_OBV(ALL, CLOSES, VOLUMES, SPAN, TO(0))),
       TULIP(ti_obv, {CLOSES, VOLUMES}, {}), ""},
      {"AD", "qvAccumDist", kFixed, LIBRARY(qvAccumDist, BARS, OUT, 0),
       TALIB(TA_AD(ALL, HIGHS, LOWS, CLOSES, VOLUMES, SPAN, TO(0))),
       TULIP(ti_ad, {HIGHS, LOWS, CLOSES, VOLUMES}, {}), ""},
      {"ADOSC(p/4,p)", "qvChaikinOscillator", kPeriod,
       LIBRARY(qvChaikinOscillator, BARS, OUT, quarter(p), p, 0),
       TALIB(TA_ADOSC(ALL, HIGHS, LOWS, CLOSES, VOLUMES, quarter(p), p, SPAN, TO(0))),
       TULIP(ti_adosc, {HIGHS, LOWS, CLOSES, VOLUMES}, {static_cast<double>(quarter(p)), PERIOD}), ""},
      {"Chaikin volatility", "qvChaikinVolatility", kPeriod, LIBRARY(qvChaikinVolatility, BARS, OUT, p, 0),
       nullptr, TULIP(ti_cvi, {HIGHS, LOWS}, {PERIOD}), ""},
      {"market facilitation", "qvMFI", kFixed | kDiffers, LIBRARY(qvMFI, BARS, OUT, 0), nullptr,
       TULIP(ti_marketfi, {HIGHS, LOWS, VOLUMES}, {}), "library scales by the mean volume (a second pass)"},
      {"MFI (money flow)", "qvMoneyFlowIndex", kWindow, LIBRARY(qvMoneyFlowIndex, BARS, OUT, p, 0),
       TALIB(TA_MFI(ALL, HIGHS, LOWS, CLOSES, VOLUMES, p, SPAN, TO(0))),
       TULIP(ti_mfi, {HIGHS, LOWS, CLOSES, VOLUMES}, {PERIOD}), ""},
      {"NVI", "qvNVI", kFixed, LIBRARY(qvNVI, BARS, OUT, 0), nullptr, TULIP(ti_nvi, {CLOSES, VOLUMES}, {}),
       "library sums changes; Tulip compounds"},
      {"PVI", "qvPVI", kFixed, LIBRARY(qvPVI, BARS, OUT, 0), nullptr, TULIP(ti_pvi, {CLOSES, VOLUMES}, {}),
       "library sums changes; Tulip compounds"},
      {"Williams AD", "qvWilliamsAD", kFixed, LIBRARY(qvWilliamsAD, BARS, OUT, 0), nullptr,
       TULIP(ti_wad, {HIGHS, LOWS, CLOSES}, {}), ""},
      {"EMV (raw)", "qvArmsEMV", kFixed, LIBRARY(qvArmsEMV, BARS, OUT, 10000, 0), nullptr,
       TULIP(ti_emv, {HIGHS, LOWS, VOLUMES}, {}), ""},
      {"EMV averaged", "qvEMV", kWindow | kDiffers, LIBRARY(qvEMV, BARS, OUT, 2, p, 0), nullptr,
       TULIPS(callTulip(ti_emv, d, d.n, {HIGHS, LOWS, VOLUMES}, {}) |
              callTulip(ti_sma, d, d.n - 1, {TO(0)}, {PERIOD}, 1)),
       "peer: emv then sma; the library's formula has another previous midpoint"},
      {"VOSC(p/2,p)", "qvVOSC", kWindow, LIBRARY(qvVOSC, VOLUME, OUT, half(p), p, 2, 0), nullptr,
       TULIP(ti_vosc, {VOLUMES}, {static_cast<double>(half(p)), PERIOD}),
       "library reads the second average one bar back"},
      {"mass index", "qvMassIndex", kWindow, LIBRARY(qvMassIndex, BARS, OUT, p, 0), nullptr,
       TULIP(ti_mass, {HIGHS, LOWS}, {PERIOD}), ""},
  };
}

std::vector<Row> priceRows() {
  return {
      {"Bollinger(p,2)", "qvBollinger", kWindow, LIBRARY(qvBollinger, BARS, OUT3, 2.0, p, 0),
       TALIB(TA_TYPPRICE(ALL, HIGHS, LOWS, CLOSES, SPAN, TO(3)) |
             TA_BBANDS(ALL, TO(3), p, 2, 2, TA_MAType_SMA, SPAN, TO(0), TO(1), TO(2))),
       TULIPS(callTulip(ti_typprice, d, d.n, {HIGHS, LOWS, CLOSES}, {}, 3) |
              callTulip(ti_bbands, d, d.n, {TO(3)}, {PERIOD, 2})),
       "on the typical price: the peers need two calls"},
      {"typical price", "qvTypicalPrices", kFixed, LIBRARY(qvTypicalPrices, BARS, OUT, 0),
       TALIB(TA_TYPPRICE(ALL, HIGHS, LOWS, CLOSES, SPAN, TO(0))),
       TULIP(ti_typprice, {HIGHS, LOWS, CLOSES}, {}), ""},
      {"median price", "qvMedianPrices", kFixed, LIBRARY(qvMedianPrices, BARS, OUT, 0),
       TALIB(TA_MEDPRICE(ALL, HIGHS, LOWS, SPAN, TO(0))), TULIP(ti_medprice, {HIGHS, LOWS}, {}), ""},
      {"weighted price", "qvWeightedCloses", kFixed, LIBRARY(qvWeightedCloses, BARS, OUT, 0),
       TALIB(TA_WCLPRICE(ALL, HIGHS, LOWS, CLOSES, SPAN, TO(0))),
       TULIP(ti_wcprice, {HIGHS, LOWS, CLOSES}, {}), ""},
      {"average price", "qvAvgPrices", kFixed, LIBRARY(qvAvgPrices, BARS, OUT, 0),
       TALIB(TA_AVGPRICE(ALL, OPENS, HIGHS, LOWS, CLOSES, SPAN, TO(0))),
       TULIP(ti_avgprice, {OPENS, HIGHS, LOWS, CLOSES}, {}), "library has a zero-open rule"},
      {"qstick", "qvQstick", kPeriod | kDiffers, LIBRARY(qvQstick, BARS, OUT, p, 0), nullptr,
       TULIP(ti_qstick, {OPENS, CLOSES}, {PERIOD}), "library: exponential; Tulip: simple average"},
      {"balance of power", "qvBOP", kWindow | kDiffers, LIBRARY(qvBOP, BARS, OUT, 2, p, 0),
       TALIB(TA_BOP(ALL, OPENS, HIGHS, LOWS, CLOSES, SPAN, TO(0)) | TA_SMA(ALL, TO(0), p, SPAN, TO(1))),
       TULIPS(callTulip(ti_bop, d, d.n, {OPENS, HIGHS, LOWS, CLOSES}, {}) |
              callTulip(ti_sma, d, d.n, {TO(0)}, {PERIOD}, 1)),
       "peers: bop then sma; the library takes the previous open"},
  };
}

}  // namespace qvpeers
