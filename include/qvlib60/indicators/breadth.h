/* Market breadth: indicators over per-bar market totals that the caller supplies as series of equal
   meaning, advancing and declining issues (adv, dec), unchanged issues, and the volume of advancing
   and declining issues. f is the larger of start and all inputs' first valid indices. Bars on which a
   guard fails hold 0.0. A period below 1 is -1 with nothing written. */
#ifndef QVLIB60_INDICATORS_BREADTH_H
#define QVLIB60_INDICATORS_BREADTH_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- Two totals at a time -------------------------------------------------------------------- */

/* Advancing less declining issues. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvADIssues(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* Advance/decline line: the running sum of adv - dec. First valid f + 1, although bar f holds the
   first term.
   Source: Leonard P. Ayres and James F. Hughes, 1926; no publication known. */
QVAPI int QVCALL qvADLine(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* Cumulative volume index: the same running sum, of up and down volume. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvCVI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* adv / (adv + dec), 0 .. 1; 0.0 where the sum is zero. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvADLineBreadth(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* adv / dec, 0.0 where dec is zero or not a number. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvADRatio(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* Up over down volume, 0.0 where the latter is zero or not a number. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvUpDownRatio(const QvArray* up, const QvArray* down, QvArray* out, int start) QVNOEXCEPT;

/* Up less down volume. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvUpDownVolume(const QvArray* up, const QvArray* down, QvArray* out, int start) QVNOEXCEPT;

/* Absolute breadth index: |adv - dec|. First valid f.
   Source: Norman G. Fosback, Stock Market Logic, 1976. */
QVAPI int QVCALL qvABI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* Breadth thrust: the 10-bar simple average of adv / (adv + dec), 0 .. 1, which has no guard: a bar
   without issues makes the values not-a-number. First valid f + 9; with fewer bars the last item keeps the
   partial sum over 10.
   Source: Martin E. Zweig, Winning on Wall Street, 1986. */
QVAPI int QVCALL qvBreadthThrust(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* Overbought/oversold: the 10-period exponential average of adv - dec. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvOverBoughtSold(const QvArray* adv, const QvArray* dec, QvArray* out, int start) QVNOEXCEPT;

/* The STIX, 0 .. 100: the p-period exponential average (usually 21) of 100 adv / (adv + dec), which is 0.0
   where the sum is zero. First valid f.
   Source: The Polymetric Report, a newsletter; author and year not known. */
QVAPI int QVCALL qvSTIX(const QvArray* adv, const QvArray* dec, QvArray* out, int p, int start) QVNOEXCEPT;

/* ---- Issues and their volume ----------------------------------------------------------------- */

/* Trading index: (adv / dec) / (advVol / decVol), 0.0 unless all four are non-zero. First valid f.
   Source: Richard W. Arms Jr., The Arms Index (TRIN), 1989. */
QVAPI int QVCALL qvTRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                        QvArray* out, int start) QVNOEXCEPT;

/* The 5-bar sum of qvTRIN. Always returns 0, also when qvTRIN refuses its arguments: then the sum is
   taken over whatever the output holds. First valid f + 4; with fewer bars the last item keeps the partial
   sum.
   Source: W. G. Bretz, Juncture Recognition in the Stock Market, 1972. */
QVAPI int QVCALL qvBretzTRIN5(const QvArray* adv, const QvArray* dec, const QvArray* advVol,
                              const QvArray* decVol, QvArray* out, int start) QVNOEXCEPT;

/* Open ten-day trading index: qvTRIN's quotient of ten-bar sums, skipped only where the sums of dec,
   advVol and decVol are all zero. First valid f + 9; fewer bars give one value at the last of them.
   Source: Peter Eliades, after Arms; no publication known. */
QVAPI int QVCALL qvOpen10TRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol,
                              const QvArray* decVol, QvArray* out, int start) QVNOEXCEPT;

/* qvTRIN for the bars f .. end only (an end past the series stops at its last bar). First valid f.
   Source: Arms, 1989. */
QVAPI int QVCALL qvArmsIdx(const QvArray* adv, const QvArray* dec, const QvArray* advVol,
                           const QvArray* decVol, QvArray* out, int start, int end) QVNOEXCEPT;

/* Bolton-Tremblay: the running sum of the signed square roots of |adv - dec| / unchanged; bars without
   unchanged issues add nothing. 0.0 at f, first valid f + 1.
   Source: A. Hamilton Bolton and Essiambre Tremblay; no publication known. */
QVAPI int QVCALL qvBoltonTremblay(const QvArray* adv, const QvArray* dec, const QvArray* unchanged,
                                  QvArray* out, int start) QVNOEXCEPT;

/* ---- McClellan ------------------------------------------------------------------------------- */

/* McClellan oscillator: fast less slow exponential average of adv - dec (usually 19 and 39), both started
   at the first value. First valid f.
   Source: Sherman and Marian McClellan, Patterns for Profit, 1970. */
QVAPI int QVCALL qvMcClellanOscillator(const QvArray* adv, const QvArray* dec, QvArray* out, int fast,
                                       int slow, int start) QVNOEXCEPT;

/* McClellan summation: the oscillator's running sum, summed from bar start + 1 on. First valid f.
   Source: McClellan, 1970. */
QVAPI int QVCALL qvMcClellanSummation(const QvArray* adv, const QvArray* dec, QvArray* out, int fast,
                                      int slow, int start) QVNOEXCEPT;

/* Both: the oscillator (first valid f) and its running sum from f on (first valid f + 1, although bar f
   holds its first term).
   Source: McClellan, 1970. */
QVAPI int QVCALL qvMcClellanOscSum(const QvArray* adv, const QvArray* dec, QvArray* outOsc, QvArray* outSum,
                                   int fast, int slow, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
