// Market breadth.
#include <algorithm>
#include <climits>
#include <cmath>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/breadth.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

namespace {

constexpr int kThrustPeriod = 10, kOverBoughtPeriod = 10, kBretzPeriod = 5, kOpenTrinPeriod = 10;

double share(double adv, double dec) noexcept {
  return adv + dec != 0.0 ? adv / (adv + dec) : 0.0;
}
double quotient(double a, double b) noexcept {
  return isNonZero(b) ? a / b : 0.0;
}
double difference(double a, double b) noexcept {
  return a - b;
}

// out[i] = value(a[i], b[i]) from f on; first valid f.
template <typename Value>
int eachBar(const QvArray* a, const QvArray* b, QvArray* out, int start, Value value) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a, b});
  for (int i = f; i < n; ++i) out->data[i] = value(a->data[i], b->data[i]);
  qvSetFirstValid(out, f);
  return QV_OK;
}

// Turns the items from `first` on into their running sum.
void accumulate(QvArray* out, int first) noexcept {
  for (int i = saturatingSum(first, 1); i < out->size; ++i) out->data[i] += out->data[i - 1];
}

struct Totals {
  const QvArray *adv, *dec, *advVol, *decVol;
};

double trin(const Totals& t, int i) noexcept {
  const double adv = t.adv->data[i], dec = t.dec->data[i];
  const double advVol = t.advVol->data[i], decVol = t.decVol->data[i];
  const bool all = adv != 0.0 && dec != 0.0 && advVol != 0.0 && decVol != 0.0;
  return all ? (adv / dec) / (advVol / decVol) : 0.0;
}

int tradingIndex(const Totals& t, QvArray* out, int start, int end) noexcept {
  const int n = prepareOutputs({}, {t.adv, t.dec, t.advVol, t.decVol}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {t.adv, t.dec, t.advVol, t.decVol});
  for (int i = f; i <= std::min(end, n - 1); ++i) out->data[i] = trin(t, i);
  qvSetFirstValid(out, f);
  return QV_OK;
}

// Ten-bar sums of the four totals.
struct OpenSums {
  double adv = 0.0, dec = 0.0, advVol = 0.0, decVol = 0.0;

  void add(const Totals& t, int i) noexcept {
    adv += t.adv->data[i];
    dec += t.dec->data[i];
    advVol += t.advVol->data[i];
    decVol += t.decVol->data[i];
  }
  void remove(const Totals& t, int i) noexcept {
    adv -= t.adv->data[i];
    dec -= t.dec->data[i];
    advVol -= t.advVol->data[i];
    decVol -= t.decVol->data[i];
  }
  // Only three zeros at once are guarded; any other zero divides through.
  double index() const noexcept {
    return dec == 0.0 && advVol == 0.0 && decVol == 0.0 ? 0.0 : (adv / dec) / (advVol / decVol);
  }
};

}  // namespace

extern "C" {

int QVCALL qvADIssues(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return eachBar(adv, dec, out, start, difference);
}

int QVCALL qvADLine(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  if (const int status = qvCVI(adv, dec, out, start); status || hasNoRoom(out)) return status;
  qvSetFirstValid(out, saturatingSum(out->firstValid, 1));
  return QV_OK;
}

int QVCALL qvCVI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {adv, dec}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {adv, dec});
  double sum = 0.0;
  for (int i = f; i < n; ++i) out->data[i] = sum = sum + adv->data[i] - dec->data[i];
  qvSetFirstValid(out, f);
  return QV_OK;
}

int QVCALL qvADLineBreadth(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return eachBar(adv, dec, out, start, share);
}

int QVCALL qvADRatio(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return eachBar(adv, dec, out, start, quotient);
}

int QVCALL qvUpDownRatio(const QvArray* up, const QvArray* down, QvArray* out, int start) noexcept {
  return eachBar(up, down, out, start, quotient);
}

int QVCALL qvUpDownVolume(const QvArray* up, const QvArray* down, QvArray* out, int start) noexcept {
  return eachBar(up, down, out, start, difference);
}

int QVCALL qvABI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return eachBar(adv, dec, out, start, [](double a, double d) { return std::fabs(a - d); });
}

int QVCALL qvBreadthThrust(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  const int status = eachBar(adv, dec, out, start, [](double a, double d) { return a / (a + d); });
  return status || hasNoRoom(out) ? status : qvSimpleMA(out, out, kThrustPeriod, 0);
}

int QVCALL qvOverBoughtSold(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  const int status = eachBar(adv, dec, out, start, difference);
  return status || hasNoRoom(out) ? status : qvExpMA(out, out, kOverBoughtPeriod, 0);
}

int QVCALL qvSTIX(const QvArray* adv, const QvArray* dec, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  auto percent = [](double a, double d) { return a + d != 0.0 ? 100.0 * a / (a + d) : 0.0; };
  const int status = eachBar(adv, dec, out, start, percent);
  return status || hasNoRoom(out) ? status : qvExpMA(out, out, p, out->firstValid);
}

int QVCALL qvTRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                  QvArray* out, int start) noexcept {
  return tradingIndex({adv, dec, advVol, decVol}, out, start, INT_MAX);
}

int QVCALL qvBretzTRIN5(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                        QvArray* out, int start) noexcept {
  qvTRIN(adv, dec, advVol, decVol, out, start);
  qvMovingSum(out, out, kBretzPeriod, start);
  return QV_OK;
}

int QVCALL qvOpen10TRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                        QvArray* out, int start) noexcept {
  const Totals t{adv, dec, advVol, decVol};
  const int n = prepareOutputs({}, {adv, dec, advVol, decVol}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {adv, dec, advVol, decVol});
  const int first = saturatingSum(f, kOpenTrinPeriod, -1);
  OpenSums sums;
  for (int i = f; i < n; ++i) {
    if (i > first) sums.remove(t, i - kOpenTrinPeriod);
    sums.add(t, i);
    if (i >= first || i == n - 1) out->data[i] = sums.index();
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvArmsIdx(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                     QvArray* out, int start, int end) noexcept {
  return tradingIndex({adv, dec, advVol, decVol}, out, start, end);
}

int QVCALL qvBoltonTremblay(const QvArray* adv, const QvArray* dec, const QvArray* unchanged, QvArray* out,
                            int start) noexcept {
  const int n = prepareOutputs({}, {adv, dec, unchanged}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {adv, dec, unchanged}), 1);
  for (int i = first; i < n; ++i) {
    const double even = unchanged->data[i];
    double step = 0.0;
    if (even != 0.0) {
      const double r = adv->data[i] / even - dec->data[i] / even;
      step = r >= 0.0 ? std::sqrt(std::fabs(r)) : -std::sqrt(std::fabs(r));
    }
    out->data[i] = out->data[i - 1] + step;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvMcClellanOscillator(const QvArray* adv, const QvArray* dec, QvArray* out, int fast, int slow,
                                 int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {adv, dec}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {adv, dec});
  Temporary net, fastAverage, slowAverage;
  if (const int status = qvOscillator(adv, dec, &net, f)) return status;
  if (const int status = qvExpMA(&net, &fastAverage, fast, f)) return status;
  if (const int status = qvExpMA(&net, &slowAverage, slow, f)) return status;
  return qvOscillator(&fastAverage, &slowAverage, out, f);
}

int QVCALL qvMcClellanSummation(const QvArray* adv, const QvArray* dec, QvArray* out, int fast, int slow,
                                int start) noexcept {
  if (const int status = qvMcClellanOscillator(adv, dec, out, fast, slow, start)) return status;
  accumulate(out, std::max(start, 0));  // from the caller's start, over values that may still be 0.0
  return QV_OK;
}

int QVCALL qvMcClellanOscSum(const QvArray* adv, const QvArray* dec, QvArray* outOsc, QvArray* outSum,
                             int fast, int slow, int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {adv, dec}, {outOsc, outSum});
  if (n < 1) return n;
  if (const int status = qvMcClellanOscillator(adv, dec, outOsc, fast, slow, start)) return status;
  const int f = outOsc->firstValid;
  double sum = 0.0;
  for (int i = f; i < n; ++i) outSum->data[i] = sum = sum + outOsc->data[i];
  qvSetFirstValid(outSum, saturatingSum(f, 1));
  return QV_OK;
}

}  // extern "C"
