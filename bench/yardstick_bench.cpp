// The yardstick: a plain copy of n doubles. Every other rate is read as a multiple of it.
#include <cstring>

#include "support.h"

static void Copy(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  qvbench::runOnSeries(state, n, [n](const QvArray* in, QvArray* out) {
    if (!out->data) qvAllocArray(out, n);
    std::memcpy(out->data, in->data, static_cast<std::size_t>(n) * sizeof(double));
    return 0;
  });
}
BENCHMARK(Copy)->Arg(5000)->Arg(qvbench::kMillion);
