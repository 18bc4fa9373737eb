/* Bands and channels, in price units. Members on bar sets count from start, members on series from f,
   the larger of start and the inputs' first valid indices. A period below 1 is -1 with nothing written.
   Every output is needed, each a record of its own, also where only one line of several is of interest: a
   null one is -1. */
#ifndef QVLIB60_INDICATORS_BANDS_H
#define QVLIB60_INDICATORS_BANDS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Bollinger bands on the typical price (not the close): the simple average of p bars, and k population
   deviations on either side (usually 20 bars, k = 2). First valid start + p - 1; with fewer bars the
   middle's last item keeps the partial sum over p, as qvSimpleMA leaves it.
   Source: John Bollinger, Bollinger on Bollinger Bands, 2001. */
QVAPI int QVCALL qvBollinger(const QvBars* bars, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower,
                             double k, int p, int start) QVNOEXCEPT;

/* The distance between the two bands, not divided by the middle. First valid start + p - 1.
   Source: after Bollinger, 2001, who divides by the middle. */
QVAPI int QVCALL qvBollingerWidth(const QvBars* bars, QvArray* out, double k, int p, int start) QVNOEXCEPT;

/* a plus and minus k times w. First valid f over both.
   Source: no published source known. */
QVAPI int QVCALL qvEnvelope(const QvArray* a, const QvArray* w, QvArray* outUpper, QvArray* outLower,
                            double k, int start) QVNOEXCEPT;

/* The series plus and minus the fraction k of itself (0.05 is five per cent). First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvEnvelopePct(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k,
                               int start) QVNOEXCEPT;

/* qvEnvelopePct of a moving average of the given method (see qvMovingAverage; its error is returned).
   First valid where the average begins.
   Source: no published source known. */
QVAPI int QVCALL qvMAEnvelope(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k, int method,
                              int p, int start) QVNOEXCEPT;

/* Moving averages of the highs and of the lows, by the given method (see qvMovingAverage; its error is
   returned). First valid where the averages begin.
   Source: no published source known. */
QVAPI int QVCALL qvMAHighLow(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int method, int p,
                             int start) QVNOEXCEPT;

/* Price channels: the highest and lowest price of the p bars before each bar, which is not part of its
   own channel, so that a close can break out of it (elsewhere the bar is part of it). All four prices
   count, and zero prices never lower the bottom. First valid start + p.
   Source: after Richard Donchian's four-week rule; no publication known. */
QVAPI int QVCALL qvPriceChannels(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                                 int start) QVNOEXCEPT;

/* Projection bands: the highest high (lowest low) of the last p bars after each is carried forward to
   this bar along the regression slope of the highs (lows). Never inside the bar's own range. First
   valid start + 2p - 2; a series too short for the slopes is left 0.0.
   Source: Mel Widner, "Signaling Change with Projection Bands", Technical Analysis of Stocks &
   Commodities, 1995. */
QVAPI int QVCALL qvProjectionBands(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                                   int start) QVNOEXCEPT;

/* The distance between the projection bands in percent of their middle; no guard against a middle of
   zero. First valid start + 2p - 2.
   Source: Widner, 1995. */
QVAPI int QVCALL qvProjectionBandwidth(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Where the close lies between the projection bands, 0 .. 100 (0.0 where they meet), smoothed by an
   exponential average when smoothing is above 1. First valid start + 2p - 2.
   Source: Widner, 1995. */
QVAPI int QVCALL qvProjectionOscillator(const QvBars* bars, QvArray* out, int p, int smoothing,
                                        int start) QVNOEXCEPT;

/* Standard-error bands: the least-squares average (a forecast of one bar) and k standard errors of
   estimate on either side. First valid f + p - 1 for upper and lower; the middle is computed from the
   series' first valid index on, whatever start is, and first valid p - 1 items behind it.
   Source: Jon Andersen, "Standard Error Bands", Technical Analysis of Stocks & Commodities, 1996. */
QVAPI int QVCALL qvStdErrBands(const QvArray* in, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower,
                               double k, int p, int start) QVNOEXCEPT;

/* Ichimoku chart: conversion line over p1 bars, base line over p2, the leading spans A and B (over p3)
   p2 - 1 bars ahead, and the close of `shift - 1` bars later as lagging span (usually 9, 26, 52, 26). Each
   line is the middle of the highest high and the lowest low of its bars, of those that exist where fewer
   do. (Charts that draw the spans p2 bars ahead have them one bar further on.) The lagging span looks ahead
   by its definition: it is a drawing, no signal for a backtest.

   The leading spans reach index n + p2 - 2 of the n bars: give those two outputs a capacity of
   n + p2 - 1 items to get them whole. What does not fit is left out; an output that is empty is
   allocated like any other and holds as many of the bars ahead as the bar set's datasize leaves room
   for. Their size stays n, so read the items
   ahead through `data`. The lagging span's size ends where the closes do.

   First valid: start + p1 - 1; start + p2 - 1 (one bar earlier holds a value too);
   start + max(p1, p2) + p2 - 2; start + p3 + p2 - 2; start. The argument after shift is not read.
   Source: Goichi Hosoda, late 1960s; the work is not known to us. */
QVAPI int QVCALL qvIchimokuKinkoHyo(const QvBars* bars, QvArray* outConversion, QvArray* outBase,
                                    QvArray* outSpanA, QvArray* outSpanB, QvArray* outLagging, int p1, int p2,
                                    int p3, int shift, int reserved, int start) QVNOEXCEPT;

/* Price levels beyond b after a move from a to b, at 1.618, 2.618 and 4.236 times the move; all a when
   there was no move. 0, or -1 for a null result.
   Source: no published source known. */
QVAPI int QVCALL qvFibonacciProject(double a, double b, double* r1, double* r2, double* r3) QVNOEXCEPT;

/* Levels to which the move from a to b may be given back: 0.382, 0.5 and 0.618 of it; all a when there was
   no move. 0, or -1 for a null result.
   Source: no published source known. */
QVAPI int QVCALL qvFibonacciRetrace(double a, double b, double* r1, double* r2, double* r3) QVNOEXCEPT;

QV_END_DECLS

#endif
