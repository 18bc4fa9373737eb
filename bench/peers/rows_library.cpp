// Calculations that the peers do not have: in the table as figures of their own, or only in the table of
// costs.
#include "rows.h"

namespace qvpeers {

namespace {

int ichimoku(Data& d, int p) {
  QvArray* w[5];
  for (int k = 0; k < 5; ++k) w[k] = d.wideOut(k, p + 8);
  return QV_CALL(qvIchimokuKinkoHyo, &d.bars, w[0], w[1], w[2], w[3], w[4], half(p), p, 2 * p, p, 0, 0);
}

int pointAndFigure(Data& d, int) {
  QvBars columns{};
  QvArray index{};
  const int status = QV_CALL(qvBars2PNF, &d.bars, &columns, &index, 0.5, 3.0, 0);
  QV_CALL(qvFreeBars, &columns);
  QV_CALL(qvFreeArray, &index);
  return status;
}

int construct(Data& d, int) {
  QvCandles candles{};
  const int status = QV_CALL(qvCandleConstruct, &d.bars, &candles);
  QV_CALL(qvCandleFree, &candles);
  return status;
}

const char* const kPatterns[] = {"qvAbandonedBabyBottom",  "qvAbandonedBabyTop", "qvAdvanceBlock",
                                 "qvBeltHoldLineBear",     "qvBeltHoldLineBull", "qvCounterAttackBear",
                                 "qvCounterAttackBull",    "qvDarkCloudCover",   "qvEngulfingLineBear",
                                 "qvEngulfingLineBull",    "qvEveningDojiStar",  "qvEveningStar",
                                 "qvFalling3Method",       "qvGravestoneDoji",   "qvHammer",
                                 "qvHangingman",           "qvHaramiBlack",      "qvHaramiCrossBlack",
                                 "qvHaramiCrossWhite",     "qvHaramiWhite",      "qvHighWave",
                                 "qvInNeckLine",           "qvInvertedHammer",   "qvLongLeggedDoji",
                                 "qvMatHoldPattern",       "qvMorningDojiStar",  "qvMorningStar",
                                 "qvPiercingLine",         "qvRising3Method",    "qvSeperatingLineBear",
                                 "qvSeperatingLineBull",   "qvShootingStar",     "qvSideBySideWhiteGapDn",
                                 "qvSideBySideWhiteGapUp", "qvStalledPattern",   "qvTasukiDownsideGap",
                                 "qvTasukiUpsideGap",      "qvThreeGapsUp",      "qvThreeGapsDown",
                                 "qvThreeWhiteSoldiers",   "qvThrustingLine",    "qvUpsideGap2Crows"};

}  // namespace

// A row of one call that only the table of costs has.
#define COST(f, ...) \
  { #f, #f, kWindow | kScaling | kZeroIsFine, LIBRARY(f, __VA_ARGS__), nullptr, nullptr, "" }

std::vector<Row> libraryRows() {
  std::vector<Row> rows = {
      {"qvRWI", "qvRWI", kWindow, LIBRARY(qvRWI, BARS, OUT2, p, 0), nullptr, nullptr, ""},
      {"qvIchimokuKinkoHyo", "qvIchimokuKinkoHyo", kWindow | kZeroIsFine, ichimoku, nullptr, nullptr,
       "periods p/2, p, 2p, shift p"},
      {"qvProjectionBands", "qvProjectionBands", kWindow, LIBRARY(qvProjectionBands, BARS, OUT2, p, 0),
       nullptr, nullptr, ""},
      {"qvStdErrMv", "qvStdErrMv", kWindow, LIBRARY(qvStdErrMv, CLOSE, OUT, p, 0), nullptr, nullptr, ""},
      {"qvDispersionMv", "qvDispersionMv", kWindow, LIBRARY(qvDispersionMv, CLOSE, OUT, p, 0), nullptr,
       nullptr, ""},
      {"qvSMI", "qvSMI", kWindow, LIBRARY(qvSMI, BARS, OUT2, p, 3, 3, 3, 0), nullptr, nullptr, ""},
      {"qvRVI", "qvRVI", kPeriod, LIBRARY(qvRVI, BARS, OUT, p, 0), nullptr, nullptr, ""},
      {"qvBars2PNF", "qvBars2PNF,qvFreeBars,qvFreeArray", kFixed | kZeroIsFine, pointAndFigure, nullptr,
       nullptr, "box 0.5, reversal 3; with allocating and freeing its outputs"},
      {"qvCandleConstruct", "qvCandleConstruct,qvCandleFree", kFixed | kZeroIsFine, construct, nullptr,
       nullptr, "with freeing the records"},
      COST(qvVariableMA, CLOSE, OUT, p, 0),
      COST(qvWellesSum, CLOSE, OUT, p, 0),
      COST(qvRSquared, CLOSE, OUT, p, 0),
      COST(qvCovarianceMv, CLOSE, &d.second, OUT, p, 0),
      COST(qvRSquaredCoef, CLOSE, &d.second, OUT, 1, p, 0),
      COST(qvRMI, CLOSE, OUT, p, p, 0),
      COST(qvUpAverage, CLOSE, OUT, p, 0),
      COST(qvTSI, CLOSE, OUT, p, p, 0),
      COST(qvStochastic, CLOSE, OUT, p, 0),
      COST(qvRawK, BARS, OUT, p, 0),
      COST(qvTrendScore, CLOSE, OUT, p, 0),
      COST(qvOBVolMv, BARS, OUT, p, 0),
      COST(qvOBOiMv, BARS, OUT, p, 0),
      COST(qvOBVolExp, BARS, OUT3, p, 0),
      COST(qvChaikinMoneyFlow, BARS, OUT, p, 0),
      COST(qvForceIndex, BARS, OUT, p, 0),
      COST(qvVR, BARS, OUT, p, 0),
      COST(qvBollingerWidth, BARS, OUT, 2.0, p, 0),
      COST(qvMAEnvelope, CLOSE, OUT2, 0.05, 2, p, 0),
      COST(qvMAHighLow, BARS, OUT2, 2, p, 0),
      COST(qvProjectionBandwidth, BARS, OUT, p, 0),
      COST(qvProjectionOscillator, BARS, OUT, p, 3, 0),
      COST(qvStdErrBands, CLOSE, OUT3, 2.0, p, 0),
      COST(qvIMI, BARS, OUT, p, 0),
      COST(qvPVO, BARS, OUT, half(p), p, 2, 0),
      COST(qvPsychologyLine, CLOSE, OUT, p, 0),
      COST(qvNMO, CLOSE, OUT, p, 0),
      COST(qvAR, BARS, OUT, p, 0),
      COST(qvBR, BARS, OUT, p, 0),
      COST(qvERAYBull, BARS, OUT, p, 0),
      COST(qvERAYBear, BARS, OUT, p, 0),
      COST(qvSONAR, CLOSE, OUT, p, p, 0),
      COST(qvRangeIndicator, BARS, OUT, p, 3, 0),
      COST(qvPFE, CLOSE, OUT, p, 5, 0),
      COST(qvWellesVolatility, BARS, &d.out[0], &d.out[1], &d.out[2], &d.out[3], 3.0, p, 0),
      COST(qvRVIoriginal, CLOSE, OUT, p, 0),
      COST(qvInertia, BARS, OUT, p, p, 0),
  };
  for (const std::string name : kPatterns) {
    const auto fill = [name](Data& d, int) {
      return QV_CALL(qvCandleFill, &d.bars, d.candles(), &d.out[0], name.c_str(), 5, d.n - 1);
    };
    rows.push_back({"fill " + name, "qvCandleConstruct,qvCandleFill,qvCandleFree",
                    kFixed | kCount | kZeroIsFine, fill, nullptr, nullptr, ""});
  }
  return rows;
}

}  // namespace qvpeers
