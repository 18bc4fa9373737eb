// The kernels that run four bars abreast where the machine has registers for them. Only what is instantiated
// below is compiled for these machines: what the headers before that switch hold is for all.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>

#include "core/memory.h"
#include "core/numbers.h"

#if defined(__x86_64__) || defined(__i386__)

#define QV_FOUR_LANES
#include <immintrin.h>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "kernels/balances.h"
#include "kernels/bar_extremes.h"
#include "kernels/greater_sums.h"
#include "kernels/mean_deviation.h"
#include "kernels/moments.h"
#include "kernels/recurrence.h"

#if QV_WIDE_LOOPS

namespace qv {

template <typename Of>
void runBlocksWide(const Of& of, BlockMemory& memory, Running<Of>& running, const Inputs<Of::kInputs>& in,
                   int count, const Outputs<Of::kOutputs>& out) noexcept {
  runBlocks<Four>(of, memory, running, in, count, out);
}

template <typename Of>
void runShortWide(const Of& of, int period, PastItems<Of>& past, const Inputs<Of::kInputs>& in, int count,
                  const Outputs<Of::kOutputs>& out) noexcept {
  runShort<Four>(of, period, past, in, count, out);
}

#define QV_WIDE(...)                                                                   \
  template void runBlocksWide(const __VA_ARGS__&, BlockMemory&, Running<__VA_ARGS__>&, \
                              const Inputs<__VA_ARGS__::kInputs>&, int,                \
                              const Outputs<__VA_ARGS__::kOutputs>&) noexcept;         \
  template void runShortWide(const __VA_ARGS__&, int, PastItems<__VA_ARGS__>&,         \
                             const Inputs<__VA_ARGS__::kInputs>&, int,                 \
                             const Outputs<__VA_ARGS__::kOutputs>&) noexcept;
QV_WIDE(Sums<1>)
QV_WIDE(Sums<2>)
QV_WIDE(Sums<4>)
QV_WIDE(Means<1>)
QV_WIDE(Means<2>)
QV_WIDE(WeightedMean)
QV_WIDE(MeanByWeight)
QV_WIDE(RatioOfSums)
QV_WIDE(BalanceOfMoves)
QV_WIDE(MoneyFlow)
QV_WIDE(DistanceFromMean)
QV_WIDE(Deviation)
QV_WIDE(DeviationBands)
QV_WIDE(Covariance)
QV_WIDE(Correlation)
QV_WIDE(SlopeIntercept)
QV_WIDE(Forecast)
QV_WIDE(HighestLowest)
QV_WIDE(PercentWithin)
QV_WIDE(PercentBelow)
QV_WIDE(ExtremeAges)
QV_WIDE(HighestLowestOf<BarExtremes>)
QV_WIDE(PercentWithinPrices)
#undef QV_WIDE

template <typename Enter, typename Leave>
void runWide(Recurrence& y, const double* in, int count, double* out, Enter enter, Leave leave) noexcept {
  y.runLanes<Four>(in, count, out, enter, leave);
}
template <std::size_t kCount, typename Enter, typename Leave>
void runInTurnWide(std::array<Recurrence, kCount>& chain, const double* in, int count, double* out,
                   Enter enter, Leave leave) noexcept {
  Recurrence::runInTurnLanes<Four>(chain, in, count, out, enter, leave);
}
template <std::size_t kOutputs, typename Enter, typename Leave>
void runBesideWide(Recurrence& y, Recurrence& z, const double* in, int count, Outputs<kOutputs> out,
                   Enter enter, Leave leave) noexcept {
  y.runBesideLanes<Four>(z, in, count, out, enter, leave);
}

void addGreaterWide(const WindowsAboutMeans& of, int count) noexcept {
  addGreaterBy<Four>(of, count);
}

template void runWide(Recurrence&, const double*, int, double*, AsItIs, AsItIs) noexcept;
template void runWide(Recurrence&, const double*, int, double*, AsItIs, Times) noexcept;
template void runWide(Recurrence&, const double*, int, double*, Times, AsItIs) noexcept;
template void runWide(Recurrence&, const double*, int, double*, Less, Times) noexcept;
template void runWide(Recurrence&, const double*, int, double*, Less, TimesOnto) noexcept;
template void runInTurnWide(std::array<Recurrence, 2>&, const double*, int, double*, Less,
                            SumOnto<2>) noexcept;
template void runInTurnWide(std::array<Recurrence, 3>&, const double*, int, double*, Less,
                            SumOnto<3>) noexcept;
template void runBesideWide(Recurrence&, Recurrence&, const double*, int, Outputs<2>, Less, Both) noexcept;
template void runBesideWide(Recurrence&, Recurrence&, const double*, int, Outputs<1>, Less, Apart) noexcept;

}  // namespace qv

#endif

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif  // of these processors
