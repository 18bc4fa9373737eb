/* Volume and money flow. Members on bar sets and qvVOSC count from start, members on a series from f,
   the larger of start and the series' first valid index. Members on bar sets read the prices that their
   formula names, and the volume or the open interest: a set without that series is -1.

   Four members (qvForceIndex, qvEMV, qvVR, and qvVOSC with the longer of its periods) refuse a period
   that is not below the number of bars by returning that number, which is positive and no error code,
   with the output left cleared: treat any result but 0 as a refusal. A period below 1 is -1 with nothing
   written. Divisions without a guard give the floating-point result as it comes. */
#ifndef QVLIB60_INDICATORS_VOLUME_H
#define QVLIB60_INDICATORS_VOLUME_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- On balance ------------------------------------------------------------------------------ */

/* On-balance volume: the running sum of volumes, added on rising closes, subtracted on falling ones;
   0.0 at bar start. In units of volume. First valid start + 1.
   Source: Joseph E. Granville, Granville's New Key to Stock Market Profits, 1963. */
QVAPI int QVCALL qvOBV(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* The same sum over the bars from + 1 .. to, stopping at the last bar; 0.0 for an empty range, a null
   record or missing data.
   Source: Granville, 1963. */
QVAPI double QVCALL qvOBVol(const QvBars* bars, int from, int to) QVNOEXCEPT;

/* qvOBVol over the p changes that end at each bar. First valid start + p.
   Source: after Granville, 1963. */
QVAPI int QVCALL qvOBVolMv(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* On-balance open interest: begins with the open interest of bar from, then adds or subtracts that of
   the bars from + 1 .. to as qvOBVol does the volume.
   Source: no published source known. */
QVAPI double QVCALL qvOBOi(const QvBars* bars, int from, int to) QVNOEXCEPT;

/* qvOBOi over the p bars that end at each bar: one change fewer than qvOBVolMv. First valid
   start + p - 1.
   Source: no published source known. */
QVAPI int QVCALL qvOBOiMv(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* On-balance volume with its swings.
   outVolume is qvOBV. A swing high is a value that none of the p values on either side exceeds; it is
   known, and recorded, p bars later; of a run of equal swing highs the first is recorded. Swing lows
   mirror that.
   outBreakout is +1.0 on bars whose value reaches or passes the last recorded swing high, else -1.0 on
   bars that reach or fall below the last recorded swing low, else 0.0.
   outTrend is decided anew whenever a swing is recorded, from the last three recorded swing values:
   +1.0 when each later one of them is above the earlier ones of its kind (rising highs, rising lows),
   -1.0 when each is below, else 0.0; it is carried forward from bar to bar.
   No value uses bars after its own. First valid start + 1 for all three.
   Source: after Granville, 1963, who read the "designations" of rising and falling on-balance volume so. */
QVAPI int QVCALL qvOBVolExp(const QvBars* bars, QvArray* outVolume, QvArray* outBreakout, QvArray* outTrend,
                            int p, int start) QVNOEXCEPT;

/* ---- Accumulation ---------------------------------------------------------------------------- */

/* Accumulation/distribution line: the running sum of volume times where the close lies in its bar (-1
   at the low, +1 at the high). A bar without height counts -1 when its close fell, else +1. In units of
   volume. First valid start.
   Source: Marc Chaikin; no publication known. */
QVAPI int QVCALL qvAccumDist(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Running sum of the series from f on. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvAccumulate(const QvArray* in, QvArray* out, int start) QVNOEXCEPT;

/* Chaikin money flow, -1 .. 1: the sum of the accumulation/distribution terms of p bars over the sum
   of their volumes; 0.0 where that is zero. First valid start + p - 1.
   Source: Marc Chaikin; no publication known. */
QVAPI int QVCALL qvChaikinMoneyFlow(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Chaikin oscillator: fast less slow exponential average of the accumulation/distribution line (usually 3
   and 10 bars). First valid start.
   Source: Marc Chaikin; no publication known. */
QVAPI int QVCALL qvChaikinOscillator(const QvBars* bars, QvArray* out, int fast, int slow,
                                     int start) QVNOEXCEPT;

/* Chaikin volatility: the change over p bars, in percent, of the p-period exponential average of the
   bars' heights. First valid start + p.
   Source: Marc Chaikin; no publication known. */
QVAPI int QVCALL qvChaikinVolatility(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* ---- Price moves weighed by volume ----------------------------------------------------------- */

/* Market facilitation index: the bar's height per volume, scaled by the mean of the non-zero volumes
   from start to the last bar (so it is in price units; elsewhere it is not scaled); 0.0 where the volume
   is zero. The mean takes in the volumes of later bars: every value changes with the end of the data,
   though not its ratio to its neighbours. First valid start.
   Source: Bill Williams, Trading Chaos, 1995. */
QVAPI int QVCALL qvMFI(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Money flow index, 0 .. 100: positive over negative flow (typical price times volume) of p changes;
   0.0, not 100, where the negative flow is zero. A flow that has no part in the window is exactly zero.
   First valid start + p; fewer bars give one value at the last of them.
   Source: Gene Quong and Avrum Soudack, "Volume-Weighted RSI: Money Flow", Technical Analysis of Stocks &
   Commodities, 1989. */
QVAPI int QVCALL qvMoneyFlowIndex(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Price-volume trend: the running sum of volume times the close's relative change. First valid
   start + 1.
   Source: no published source known. */
QVAPI int QVCALL qvPVT(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Negative and positive volume index: the sum of the closes' relative changes on bars whose volume
   fell (rose), from 0.0; elsewhere an index that begins at 1000 and compounds. First valid start + 1.
   Source: Norman G. Fosback, Stock Market Logic, 1976, after Paul L. Dysart. */
QVAPI int QVCALL qvNVI(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;
QVAPI int QVCALL qvPVI(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Force index: the bar's volume times the change of the p-period exponential average of the closes.
   (Elsewhere it is the average of the bars' own forces, volume times the change of the close.) First
   valid start + 1.
   Source: after Alexander Elder, Trading for a Living, 1993. */
QVAPI int QVCALL qvForceIndex(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Ease of movement, smoothed by the average of the given method (see qvMovingAverage; its error is
   returned): the bar's midpoint less the previous bar's height, over volume per height; 0.0 where that
   is zero or not a number. First valid start + p; what the average holds before that stays.
   Source: after Arms, 1983; qvArmsEMV is his form. */
QVAPI int QVCALL qvEMV(const QvBars* bars, QvArray* out, int method, int p, int start) QVNOEXCEPT;

/* Ease of movement of each bar: the midpoint's change over the box ratio, volume / divisor / height;
   0.0 without volume or height; a divisor of 0 divides by it. First valid start + 1.
   Source: Richard W. Arms Jr., Volume Cycles in the Stock Market, 1983. */
QVAPI int QVCALL qvArmsEMV(const QvBars* bars, QvArray* out, int volumeDivisor, int start) QVNOEXCEPT;

/* Herrick payoff index: money flow of a future out of price, volume and open interest, smoothed
   exponentially by the factor `smoothing`; multiplier is the value of a one-point move. First valid
   start + 1.
   Source: John Herrick; no publication known. */
QVAPI int QVCALL qvHerrickPayoffIndex(const QvBars* bars, QvArray* out, double multiplier, double smoothing,
                                      int start) QVNOEXCEPT;

/* Volume oscillator, in percent: the p1 average of the series less the p2 average of one bar before,
   over the p1 average; 0.0 where that is zero. (Elsewhere both averages are those of the bar, and the
   longer one divides.) Averages of the given method (see qvMovingAverage; its error is returned). First
   valid start + max(p1, p2).
   Source: no published source known. */
QVAPI int QVCALL qvVOSC(const QvArray* in, QvArray* out, int p1, int p2, int method, int start) QVNOEXCEPT;

/* Volume ratio, in percent: volume of rising over volume of falling closes of p changes, unchanged ones
   counting half on each side; 0.0 where the latter is zero. First valid start + p.
   Source: no published source known. */
QVAPI int QVCALL qvVR(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
