// The same prices bar by bar, as they would come on a trading day: values of the bar that forms, a correction
// of the last one, and a state that is saved and goes on.
#include <cstdio>
#include <vector>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"

namespace qvcli {

namespace {

std::vector<const double*> barOf(const QvBars& bars, int i) {
  std::vector<const double*> values;
  for (const QvArray* a :
       {&bars.date, &bars.open, &bars.high, &bars.low, &bars.close, &bars.volume, &bars.openInterest})
    values.push_back(a->data + i);
  return values;
}

}  // namespace

void showStreams(const DemoData& demo) {
  const QvBars& bars = *demo.bars;
  const int last = bars.barsize - 1;
  const QvCatalogueEntry* bands = qvCatalogueFind("bollinger");
  qv::Stream stream(*bands);
  qv::Series upper(bars.barsize), middle(bars.barsize), lower(bars.barsize);
  double* const whole[] = {upper.data, middle.data, lower.data};
  stream.update(barOf(bars, 0).data(), last, whole);

  heading("Bollinger bands bar by bar: the last bar while it forms");
  double values[3];
  double* const shown[] = {&values[0], &values[1], &values[2]};
  const double low = bars.low.data[last], high = bars.high.data[last];
  for (const double share : {0.0, 0.5, 1.0}) {
    const double close = low + share * (high - low);
    std::vector<const double*> forming = barOf(bars, last);
    forming[4] = &close;
    stream.peek(forming.data(), shown);
    std::printf("close %9.2f: %9.2f %9.2f %9.2f\n", close, values[0], values[1], values[2]);
  }

  const std::vector<unsigned char> state = stream.save();
  qv::Stream resumed = qv::Stream::load(state);
  const double wrong = 1.0;
  std::vector<const double*> misprint = barOf(bars, last);
  misprint[4] = &wrong;
  resumed.update(misprint.data(), 1, shown);
  std::printf("\nSaved in %d bytes, loaded, and given a bar with a misprint: %9.2f %9.2f %9.2f\n",
              static_cast<int>(state.size()), values[0], values[1], values[2]);
  resumed.replaceLast(barOf(bars, last).data(), shown);
  std::printf("Corrected:                                                  %9.2f %9.2f %9.2f\n", values[0],
              values[1], values[2]);
  const std::vector<qv::Series> batch = qv::calcAll("bollinger", bars);
  std::printf("The whole series at once:                                   %9.2f %9.2f %9.2f\n",
              batch[0].data[last], batch[1].data[last], batch[2].data[last]);
}

}  // namespace qvcli
