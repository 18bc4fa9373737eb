// The table of calculations: ordinary parameters, the series read, and what is documented to differ.
#include "support/calculations.h"

#include <algorithm>

#include "support/candles.h"

namespace qvtest {

using enum qv::BarSeries;

using BarSet = const QvBars*;
using In = const QvArray*;
using Out = QvArray*;

// Signals answer their count, comparisons that no bar has the date: neither is a failure.
static int failureOf(int status) {
  return status > 0 || status == QV_RECORD_NOT_FOUND ? 0 : status;
}

#define ROW(function, ...) calculation(#function, function, __VA_ARGS__)
// Of a function whose last argument is no start, with the arguments in the order of the others.
#define REORDERED(name, arguments, call, ...) \
  calculation(                                \
      name, +[] arguments noexcept { return failureOf(call); }, __VA_ARGS__)
#define FORMATION(name)                                                          \
  REORDERED("qvFormationFill_" name, (BarSet bars, Out out, int end, int start), \
            qvFormationFill(bars, out, name, start, end), {200})

const std::vector<Calculation>& calculations() {
  static const std::vector<Calculation> table{
      // Averages.
      ROW(qvExpMA, {14}).mayRunInPlace().refusesPeriods({0}),
      ROW(qvZeroLagExpMA, {14}).refusesPeriods({0}),
      // The seed stands before the first valid index.
      ROW(qvDEMA, {14}).refusesPeriods({0}).keepsEarlierItems(),
      ROW(qvTEMA, {14}).refusesPeriods({0}).keepsEarlierItems(),
      ROW(qvVIDYA, {10, 14}).refusesPeriods({0, 1}).keepsEarlierItems(),
      ROW(qvVariableMA, {14}).refusesPeriods({0}).keepsEarlierItems(),
      ROW(qvT3, {14, 0.7, 3}).refusesPeriods({0}),
      ROW(qvWellesMA, {14}).mayRunInPlace().refusesPeriods({0}),
      ROW(qvWellesSum, {14}).mayRunInPlace().refusesPeriods({0}),
      ROW(qvSimpleMA, {14}).mayRunInPlace().refusesPeriods({0}),
      ROW(qvMovingSum, {14}).mayRunInPlace().refusesPeriods({0}),
      ROW(qvWeightedMA, {14}).refusesPeriods({0}),
      ROW(qvLstSqrMA, {14}).refusesPeriods({0}),
      ROW(qvTriangularMA, {14}).refusesPeriods({0}),
      ROW(qvVolAdjustedMA, {14}).refusesPeriods({0}),
      ROW(qvMovingAverage, {2, 14}).mayRunInPlace().refusesPeriods({1}),
      ROW(qvCMO, {14}).refusesPeriods({0}),
      // Trend.
      ROW(qvTR, {}).reads(kHighLowClose),
      ROW(qvATR, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvDMIx, {}).reads(kHighLow),
      ROW(qvDI, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvDX, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvADX, {14, 10}).reads(kHighLowClose).refusesPeriods({0, 1}),
      ROW(qvADXR, {14, 10, 5}).reads(kHighLowClose).refusesPeriods({0, 1}),
      ROW(qvDMI, {}),
      ROW(qvSAR, {0.02, 0.2}).reads(kHighLowClose),
      ROW(qvAroon, {14}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvAroonOscillator, {14}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvVHF, {14}).refusesPeriods({0}),
      ROW(qvRWI, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvZigZag, {0.02, 0}).keepsEarlierItems(),
      ROW(qvSwingIndex, {3.0}).reads(kPrices),
      ROW(qvAccumSwingIndex, {3.0}).reads(kPrices),
      ROW(qvTrendScore, {14}).refusesPeriods({0}),
      // Momentum.
      ROW(qvRSI, {14}).refusesPeriods({0}),
      ROW(qvRMI, {14, 5}).refusesPeriods({0, 1}),
      ROW(qvUpAverage, {14}).refusesPeriods({0}),
      ROW(qvDownAverage, {14}).refusesPeriods({0}),
      ROW(qvStochRSI, {14}).refusesPeriods({0}),
      ROW(qvMomentum, {14}).refusesPeriods({0}),
      ROW(qvRateOfChange, {100, 14}).refusesPeriods({1}),
      ROW(qvRatio, {}),
      REORDERED("qvRSIC", (BarSet a, BarSet b, Out out, int p, double date, int), qvRSIC(a, b, out, p, date),
                {14, 36540})
          .reads(kClose)
          .refusesPeriods({0}),
      ROW(qvMACD, {9}).refusesPeriods({0}),
      ROW(qvMACDx, {12, 26, 9}).refusesPeriods({0, 1, 2}),
      ROW(qvOscillator, {}),
      ROW(qvOscillatorPct, {}),
      ROW(qvPriceOscillator, {12, 26, 2}).refusesPeriods({0, 1}),
      ROW(qvPriceOscillatorPct, {12, 26, 3}).refusesPeriods({0, 1}),
      ROW(qvDPO, {14}).refusesPeriods({0}),
      ROW(qvTRIX, {14}).refusesPeriods({0}),
      ROW(qvTSI, {14, 5}).refusesPeriods({0, 1}),
      ROW(qvUltimateOsc, {7, 14, 28}).reads(kHighLowClose).refusesPeriods({0, 1, 2}),
      // Stochastics.
      ROW(qvRawK, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvFastD, {14, 3}).reads(kHighLowClose).refusesPeriods({0, 1}),
      ROW(qvSlowD, {14, 3, 5}).reads(kHighLowClose).refusesPeriods({0, 1, 2}),
      ROW(qvStochastic, {14}).refusesPeriods({0}),
      ROW(qvStochasticFast, {2, 14, 3}).reads(kPrices).refusesPeriods({1, 2}),
      ROW(qvStochasticOscillator, {3, 14, 3, 5}).reads(kPrices).refusesPeriods({1, 2, 3}),
      ROW(qvSMI, {14, 3, 5, 9}).reads(kHighLowClose).refusesPeriods({0, 1, 2, 3}),
      ROW(qvWilliamsR, {14}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvCCI, {14}).reads(kHighLowClose).refusesPeriods({0}),
      // Bands.
      ROW(qvBollinger, {2.0, 20}).reads(kHighLowClose).refusesPeriods({1}),
      ROW(qvBollingerWidth, {2.0, 20}).reads(kHighLowClose).refusesPeriods({1}),
      ROW(qvEnvelope, {2.0}),
      ROW(qvEnvelopePct, {0.05}),
      ROW(qvMAEnvelope, {0.05, 2, 14}).refusesPeriods({2}),
      ROW(qvMAHighLow, {2, 14}).reads(kHighLow).refusesPeriods({1}),
      ROW(qvPriceChannels, {14}).reads(kPrices).refusesPeriods({0}),
      ROW(qvProjectionBands, {14}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvProjectionBandwidth, {14}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvProjectionOscillator, {14, 3}).reads(kHighLowClose).refusesPeriods({0}),
      ROW(qvStdErrBands, {2.0, 14}).refusesPeriods({1}).keepsEarlierItems(),
      ROW(qvIchimokuKinkoHyo, {9, 26, 52, 26, 0})
          .reads(kHighLowClose)
          .refusesPeriods({0, 1, 2})
          .keepsEarlierItems(),
      // Volume.
      ROW(qvOBV, {}).reads(kClose | kVolume),
      ROW(qvOBVolMv, {14}).reads(kClose | kVolume).refusesPeriods({0}),
      ROW(qvOBOiMv, {14}).reads(kClose | kOpenInterest).refusesPeriods({0}),
      ROW(qvOBVolExp, {4}).reads(kClose | kVolume).refusesPeriods({0}),
      ROW(qvAccumDist, {}).reads(kHighLowClose | kVolume),
      ROW(qvAccumulate, {}),
      ROW(qvChaikinMoneyFlow, {14}).reads(kHighLowClose | kVolume).refusesPeriods({0}),
      ROW(qvChaikinOscillator, {3, 10}).reads(kHighLowClose | kVolume).refusesPeriods({0, 1}),
      ROW(qvChaikinVolatility, {10}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvMFI, {}).reads(kHighLow | kVolume),
      ROW(qvMoneyFlowIndex, {14}).reads(kHighLowClose | kVolume).refusesPeriods({0}),
      ROW(qvPVT, {}).reads(kClose | kVolume),
      ROW(qvNVI, {}).reads(kClose | kVolume),
      ROW(qvPVI, {}).reads(kClose | kVolume),
      ROW(qvForceIndex, {13}).reads(kClose | kVolume).refusesPeriods({0}).needsMoreThan(13),
      ROW(qvEMV, {2, 14}).reads(kHighLow | kVolume).refusesPeriods({1}).keepsEarlierItems().needsMoreThan(14),
      ROW(qvArmsEMV, {10000}).reads(kHighLow | kVolume),
      ROW(qvHerrickPayoffIndex, {100.0, 0.1}).reads(kHighLow | kVolume | kOpenInterest),
      ROW(qvVOSC, {5, 10, 2}).refusesPeriods({0, 1}).needsMoreThan(10),
      ROW(qvVR, {14}).reads(kClose | kVolume).refusesPeriods({0}).needsMoreThan(14),
      // Breadth. qvBretzTRIN5, which always answers 0, is tested by hand.
      ROW(qvADIssues, {}),
      ROW(qvADLine, {}).keepsEarlierItems(),
      ROW(qvCVI, {}),
      ROW(qvADLineBreadth, {}),
      ROW(qvADRatio, {}),
      ROW(qvUpDownRatio, {}),
      ROW(qvUpDownVolume, {}),
      ROW(qvABI, {}),
      ROW(qvBreadthThrust, {}),
      ROW(qvOverBoughtSold, {}),
      ROW(qvSTIX, {21}).refusesPeriods({0}),
      ROW(qvTRIN, {}),
      ROW(qvOpen10TRIN, {}),
      REORDERED("qvArmsIdx", (In adv, In dec, In advVol, In decVol, Out out, int end, int start),
                qvArmsIdx(adv, dec, advVol, decVol, out, start, end), {100}),
      ROW(qvBoltonTremblay, {}),
      ROW(qvMcClellanOscillator, {19, 39}).refusesPeriods({0, 1}),
      ROW(qvMcClellanSummation, {19, 39}).refusesPeriods({0, 1}),
      ROW(qvMcClellanOscSum, {19, 39}).refusesPeriods({0, 1}).keepsEarlierItems(),
      // Bar shape, counting, sentiment, range and relative volatility.
      ROW(qvBOP, {2, 14}).reads(kPrices).refusesPeriods({1}).keepsEarlierItems().needsMoreThan(14),
      ROW(qvQstick, {8}).reads(kOpen | kClose).refusesPeriods({0}),
      ROW(qvIMI, {14}).reads(kOpen | kClose).refusesPeriods({0}),
      ROW(qvMassIndex, {25}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvPVO, {12, 26, 0}).reads(kVolume).refusesPeriods({0, 1}),
      ROW(qvForecastOscillator, {14, 3}).refusesPeriods({0, 1}),
      REORDERED("qvDeTrend", (In in, Out out, int end, int start), qvDeTrend(in, out, start, end), {119}),
      ROW(qvPsychologyLine, {12}).refusesPeriods({0}),
      ROW(qvWilliamsAD, {}).reads(kHighLowClose),
      ROW(qvPVrank, {}).reads(kClose | kVolume),
      ROW(qvLineOsc, {10}).refusesPeriods({0}),
      ROW(qvNMO, {14}).refusesPeriods({0}).keepsEarlierItems(),
      ROW(qvAR, {26}).reads(kOpen | kHighLow).refusesPeriods({0}).needsMoreThan(26),
      ROW(qvBR, {26}).reads(kHighLowClose).refusesPeriods({0}).needsMoreThan(26),
      ROW(qvERAYBull, {13}).reads(kHigh | kClose).refusesPeriods({0}).needsMoreThan(13),
      ROW(qvERAYBear, {13}).reads(kLow | kClose).refusesPeriods({0}).needsMoreThan(13),
      ROW(qvSONAR, {13, 9}).refusesPeriods({0}).needsMoreThan(22),
      ROW(qvRangeIndicator, {10, 3}).reads(kHighLowClose).refusesPeriods({0, 1}),
      ROW(qvPFE, {10, 5}).refusesPeriods({0, 1}).keepsEarlierItems(),
      ROW(qvWellesVolatility, {3.0, 7}).reads(kHighLowClose).refusesPeriods({1}),
      ROW(qvRVIoriginal, {14}).refusesPeriods({0}),
      ROW(qvRVI, {14}).reads(kHighLow).refusesPeriods({0}),
      ROW(qvInertia, {14, 20}).reads(kHighLow).refusesPeriods({0, 1}),
      // Statistics.
      ROW(qvStdDevMv, {0, 14}).refusesPeriods({1}),
      ROW(qvStdErrMv, {14}).refusesPeriods({0}),
      ROW(qvDispersionMv, {14}).refusesPeriods({0}),
      ROW(qvCovarianceMv, {14}).refusesPeriods({0}),
      ROW(qvCorCoefMv, {0, 14}).refusesPeriods({1}),
      ROW(qvRSquaredCoef, {1, 14}).refusesPeriods({1}),
      ROW(qvRSquared, {14}).refusesPeriods({0}),
      ROW(qvBetaCoefMv, {1, 14}).refusesPeriods({1}),
      REORDERED("qvRegressionLineMv", (In in, Out slope, Out intercept, int p, int end, int start),
                qvRegressionLineMv(in, slope, intercept, p, start, end), {14, 119})
          .refusesPeriods({0}),
      // Transforms.
      ROW(qvAvgPrices, {}).reads(kPrices),
      ROW(qvMedianPrices, {}).reads(kHighLow),
      ROW(qvTypicalPrices, {}).reads(kHighLowClose),
      ROW(qvWeightedCloses, {}).reads(kHighLowClose),
      ROW(qvPerformancePct, {}),
      ROW(qvDiffValue, {14}).refusesPeriods({0}),
      REORDERED("qvCompStrength", (BarSet a, BarSet b, Out out, double date, int),
                qvCompStrength(a, b, out, date), {36540})
          .reads(kClose),
      REORDERED("qvCompPerformance", (BarSet a, BarSet b, Out out, double date, int),
                qvCompPerformance(a, b, out, date), {36540})
          .reads(kClose),
      REORDERED("qvSpread", (BarSet a, BarSet b, Out out, double x, double y, double date, int),
                qvSpread(a, b, out, x, y, date), {2, 3, 36540})
          .reads(kClose),
      // Arrays.
      ROW(qvScaleArray, {0, 0, 0, 100, 1}).mayRunInPlace().leavesFirstValid(),
      ROW(qvMultAddArray, {2, 1}).mayRunInPlace().leavesFirstValid(),
      ROW(qvDivide, {100}),
      ROW(qvFillInterval, {}).keepsEarlierItems(),
      // Signals: the end stands behind the start.
      FORMATION("qvCPR").reads(kHighLowClose),
      FORMATION("qvGap").reads(kHighLow),
      FORMATION("qvGapDown").reads(kHighLow),
      FORMATION("qvGapUp").reads(kHighLow),
      FORMATION("qvIslandReversal").reads(kHighLowClose),
      FORMATION("qvInsideBar").reads(kHighLow),
      FORMATION("qvKeyReversal").reads(kHighLowClose),
      FORMATION("qvOutsideBar").reads(kHighLow),
      REORDERED("qvCrossOverFill", (In a, In b, Out out, int end, int start),
                qvCrossOverFill(a, b, out, start, end), {200}),
      REORDERED("qvTurnFill", (In in, Out out, int end, int start), qvTurnFill(in, out, start, end), {200}),
      calculation("qvCandleFill",
                  +[](BarSet bars, Out out, int start) noexcept {
                    Candles candles;
                    if (const int status = qvCandleConstruct(bars, &candles)) return status;
                    return std::min(qvCandleFill(bars, &candles, out, "qvHaramiBlack", start, INT32_MAX), 0);
                  },
                  {})
          .reads(kPrices)
          .leavesFirstValid(),
  };
  return table;
}

}  // namespace qvtest
