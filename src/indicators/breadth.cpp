// Market breadth.
#include "indicators/breadth.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/breadth.h"

using namespace qv;

extern "C" {

int QVCALL qvADIssues(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::ADIssues>({adv, dec}, {out}, start);
}

int QVCALL qvADLine(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::ADLine>({adv, dec}, {out}, start);
}

int QVCALL qvCVI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::CVI>({adv, dec}, {out}, start);
}

int QVCALL qvADLineBreadth(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::ADLineBreadth>({adv, dec}, {out}, start);
}

int QVCALL qvADRatio(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::ADRatio>({adv, dec}, {out}, start);
}

int QVCALL qvUpDownRatio(const QvArray* up, const QvArray* down, QvArray* out, int start) noexcept {
  return calculate<chain::UpDownRatio>({up, down}, {out}, start);
}

int QVCALL qvUpDownVolume(const QvArray* up, const QvArray* down, QvArray* out, int start) noexcept {
  return calculate<chain::UpDownVolume>({up, down}, {out}, start);
}

int QVCALL qvABI(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::ABI>({adv, dec}, {out}, start);
}

int QVCALL qvBreadthThrust(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::BreadthThrust>({adv, dec}, {out}, start);
}

int QVCALL qvOverBoughtSold(const QvArray* adv, const QvArray* dec, QvArray* out, int start) noexcept {
  return calculate<chain::OverBoughtSold>({adv, dec}, {out}, start);
}

int QVCALL qvSTIX(const QvArray* adv, const QvArray* dec, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::STIX>({adv, dec}, {out}, start, p);
}

int QVCALL qvTRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                  QvArray* out, int start) noexcept {
  return calculate<chain::TRIN>({adv, dec, advVol, decVol}, {out}, start);
}

// Where the index is refused, the sum is taken of what the output held.
int QVCALL qvBretzTRIN5(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                        QvArray* out, int start) noexcept {
  const int status = calculate<chain::BretzTRIN5>({adv, dec, advVol, decVol}, {out}, start);
  if (openingOf(out)) return status;
  if (status == QV_INVALID_PARM) qvMovingSum(out, out, 5, start);
  return QV_OK;
}

int QVCALL qvOpen10TRIN(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                        QvArray* out, int start) noexcept {
  return calculate<chain::Open10TRIN>({adv, dec, advVol, decVol}, {out}, start);
}

int QVCALL qvArmsIdx(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                     QvArray* out, int start, int end) noexcept {
  return calculate<chain::ArmsIdx>({adv, dec, advVol, decVol}, {out}, {start, saturatingSum(end, 1)});
}

int QVCALL qvBoltonTremblay(const QvArray* adv, const QvArray* dec, const QvArray* unchanged, QvArray* out,
                            int start) noexcept {
  return calculate<chain::BoltonTremblay>({adv, dec, unchanged}, {out}, start);
}

int QVCALL qvMcClellanOscillator(const QvArray* adv, const QvArray* dec, QvArray* out, int fast, int slow,
                                 int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  return calculate<chain::McClellanOscillator>({adv, dec}, {out}, start, fast, slow);
}

int QVCALL qvMcClellanSummation(const QvArray* adv, const QvArray* dec, QvArray* out, int fast, int slow,
                                int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  return calculate<chain::McClellanSummation>({adv, dec}, {out}, start, fast, slow);
}

int QVCALL qvMcClellanOscSum(const QvArray* adv, const QvArray* dec, QvArray* outOsc, QvArray* outSum,
                             int fast, int slow, int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  return calculate<chain::McClellanOscSum>({adv, dec}, {outOsc, outSum}, start, fast, slow);
}

}  // extern "C"
