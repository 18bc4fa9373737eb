/* Statistics over a stretch of a series, and their moving forms. They are textbook statistics; a source is
   told only where there is more to it.

   A stretch is given by two indices, from and to, both inclusive and in either order. It begins no
   earlier than item 0 and the series' first valid indices, and ends no later than the last item of the
   shortest series; items outside are never read. s and e below are its first and last index, N the
   number of its items. When nothing is left of it, extremes and sums are 0.0, positions -1, and values
   that divide by a count are not-a-number, like every degenerate stretch that has no guard (one item
   for the forms that divide by N - 1). Means are taken of the distances from the first item, so that
   equal items have no deviation at all, whatever their size.

   The functions with a status return 0, or -1 for a null record or a missing block. Those that return
   the value itself return 0.0 for a null record.

   The moving forms write the statistic of the p items that end at i to out[i]. For these s = the larger
   of start and the inputs' first valid indices, and the first valid index is s + p - 1 unless stated
   otherwise. A period below 1 is -1 with nothing written. */
#ifndef QVLIB60_INDICATORS_STATISTICS_H
#define QVLIB60_INDICATORS_STATISTICS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- Stretch of a series --------------------------------------------------------------------- */

/* Minimum, maximum, average and sum; each pointer may be null. With skipZeros, items of exactly 0.0
   count in neither the minimum, the average nor the sum, but they do in the maximum; the minimum
   starts at item s also where that is a skipped zero. The average of no items is not-a-number. */
QVAPI int QVCALL qvArrayStats(const QvArray* a, double* min, double* max, double* avg, double* sum, int from,
                              int to, int skipZeros) QVNOEXCEPT;

/* Positions of the minimum and the maximum, the earliest of equal items; each pointer may be null.
   With skipZeros the minimum passes over zeros after item s. */
QVAPI int QVCALL qvArrayStatsPos(const QvArray* a, int* minPos, int* maxPos, int from, int to,
                                 int skipZeros) QVNOEXCEPT;

/* Lowest and highest of the open, high, low and close of the bars from .. to (first valid indices do not
   matter); each pointer may be null. Both start at the close of the first bar; prices of 0.0 never lower
   the minimum. */
QVAPI int QVCALL qvBarStats(const QvBars* b, double* min, double* max, int from, int to) QVNOEXCEPT;

/* (open + high + low + close) / 4 of bar i, (high + low + close) / 3 where the open is exactly 0; 0.0
   when i is outside 0 .. barsize - 1 or one of the four series is missing. */
QVAPI double QVCALL qvAvgPrice(const QvBars* b, int i) QVNOEXCEPT;

/* Standard deviation; divided by N, or by N - 1 when sample is not 0. */
QVAPI double QVCALL qvStdDev(const QvArray* a, int sample, int from, int to) QVNOEXCEPT;

/* Standard error of estimate: square root of the squared distances from the least-squares line divided
   by N - 2; 0.0 where that is not above zero, and for less than three items. */
QVAPI double QVCALL qvStdErr(const QvArray* a, int from, int to) QVNOEXCEPT;

/* Dispersion: square root of the average absolute natural logarithm of the ratio of neighbouring items.
   Source: no published source known. */
QVAPI double QVCALL qvDispersion(const QvArray* a, int from, int to) QVNOEXCEPT;

/* Least-squares line through (1, a[s]), (2, a[s + 1]) ...; one item has slope 0 and itself as
   intercept, an empty stretch 0 and 0. A null slope or intercept is -1. */
QVAPI int QVCALL qvRegressionLine(const QvArray* a, double* slope, double* intercept, int from,
                                  int to) QVNOEXCEPT;

/* ---- Stretch of a pair of series ------------------------------------------------------------- */

/* Covariance, always divided by N - 1. */
QVAPI double QVCALL qvCovariance(const QvArray* a, const QvArray* b, int from, int to) QVNOEXCEPT;

/* Covariance divided by both standard deviations; 0.0 where their product is zero or not a number, thus
   for one item. Only the deviations follow sample: with sample 0 the result is N / (N - 1) times the
   usual coefficient of correlation, -1 .. 1 with sample 1. */
QVAPI double QVCALL qvCorCoef(const QvArray* a, const QvArray* b, int sample, int from, int to) QVNOEXCEPT;

/* ---- Slopes ---------------------------------------------------------------------------------- */

/* (a[i2] - a[i1]) / (i2 - i1); an index outside the series reads 0.0. Equal indices divide by zero. */
QVAPI double QVCALL qvSlopeArrayPts(const QvArray* a, int i1, int i2) QVNOEXCEPT;

/* (y2 - y1) / (x2 - x1), unguarded. */
QVAPI double QVCALL qvSlopePts(double x1, double y1, double x2, double y2) QVNOEXCEPT;

/* ---- Moving forms ---------------------------------------------------------------------------- */

/* Moving qvStdDev, qvStdErr, qvDispersion, qvCovariance and qvCorCoef. First valid s + p - 1, s over both
   inputs where there are two. */
QVAPI int QVCALL qvStdDevMv(const QvArray* in, QvArray* out, int sample, int p, int start) QVNOEXCEPT;
QVAPI int QVCALL qvStdErrMv(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;
QVAPI int QVCALL qvDispersionMv(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;
QVAPI int QVCALL qvCovarianceMv(const QvArray* a, const QvArray* b, QvArray* out, int p,
                                int start) QVNOEXCEPT;
QVAPI int QVCALL qvCorCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                             int start) QVNOEXCEPT;

/* Square of qvCorCoefMv. First valid s + p - 1 over both inputs. */
QVAPI int QVCALL qvRSquaredCoef(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                                int start) QVNOEXCEPT;

/* Square of the correlation between the index and the items, 0 .. 1: 1 on a straight trend, 0.0 without
   any. First valid s + p - 1. */
QVAPI int QVCALL qvRSquared(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* qvCorCoef of a and b divided by the dispersion of a, 0.0 where the dispersion is zero or not a number.
   This is not the usual beta coefficient, which is the covariance over the variance of the market.
   Waits for the dispersion of a, which is valid from d = (the larger of start and a's first valid index)
   + p - 1 on, and then for a window of p items more: first valid p - 1 after the larger of d and b's
   first valid index.
   Source: no published source known. */
QVAPI int QVCALL qvBetaCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                              int start) QVNOEXCEPT;

/* Least-squares line of each window, x = 1 .. p over it, up to index end: the last value stands at the
   smaller of end and the last item. First valid s + p - 1 for both. -1 with nothing touched when end is
   below s + p. */
QVAPI int QVCALL qvRegressionLineMv(const QvArray* in, QvArray* slopeOut, QvArray* interceptOut, int p,
                                    int start, int end) QVNOEXCEPT;

QV_END_DECLS

#endif
