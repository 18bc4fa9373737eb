// Every entry of the catalogue, with its usual numbers and with others, one parameter at a time.
#include <cmath>

#include "digest.h"

namespace qvtest {
namespace {

void digestCall(const QvCatalogueEntry& e, const QvBars& bars, const QvBars& second, const Items& params,
                int start, Digest& digest) {
  const QvBars* sets[] = {&bars, &second};
  const QvArray* series[] = {&bars.close, &second.close, &bars.volume, &second.volume};
  std::vector<Array> outputs(static_cast<std::size_t>(e.outputCount));
  std::vector<QvArray*> to;
  for (Array& out : outputs) to.push_back(&out);
  digest.add(qvCatalogueCall(&e, sets, series, to.data(), params.data(), start));
  for (const Array& out : outputs) digest.add(out);
}

std::vector<Items> parametersOf(const QvCatalogueEntry& e) {
  Items usual;
  for (int k = 0; k < e.paramCount; ++k) usual.push_back(e.params[k].defaultValue);
  std::vector<Items> all{usual};
  for (std::size_t k = 0; k < usual.size(); ++k) {
    const QvCatalogueParam& p = e.params[k];
    Items values{p.least, p.optimiseStart, p.optimiseEnd};
    if (p.kind == QV_PARAM_PERIOD || p.kind == QV_PARAM_INTEGER)
      values.insert(values.end(), {1, 2, 3, 9, 50, 333});
    for (int c = 0; c < p.choiceCount; ++c) values.push_back(c);
    for (const double v : values) {
      all.push_back(usual);
      all.back()[k] = v;
    }
  }
  if (usual.size() > 1)
    for (const double period : {1, 4, 21}) {  // together, too
      all.push_back(usual);
      for (std::size_t k = 0; k < usual.size(); ++k)
        if (e.params[k].kind == QV_PARAM_PERIOD) all.back()[k] = period;
    }
  return all;
}

}  // namespace

void digestCalculations(const Data& data, Digests& digests) {
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    for (const Items& params : parametersOf(e))
      for (const int start : {0, 7}) {
        digestCall(e, data.prices, data.rough, params, start, digests[e.name]);
        digestCall(e, data.rough, data.prices, params, start, digests[e.name]);
      }
  }
}

}  // namespace qvtest
