// Calculations in a graph, by their catalogue entries and with a second bar set or series of the caller's.
#include <bit>
#include <cstdio>
#include <cstring>

#include "catalogue/item.h"
#include "charting/graph_outputs.h"

namespace qv::charting {

namespace {

// The outputs of one call; those that no item took are freed.
class Results {
 public:
  Results() noexcept = default;
  ~Results() {
    for (KeptSeries& kept : kept_) release(kept);
  }
  Results(const Results&) = delete;
  Results& operator=(const Results&) = delete;

  int compute(const QvCatalogueEntry& entry, const QvBars* const* bars, const QvArray* const* inputs,
              const double* params) noexcept {
    QvArray* outputs[kMostParts];
    for (int k = 0; k < entry.outputCount; ++k)
      if (outputs[k] = ownSeries(kept_[k]); !outputs[k]) return QV_MALLOC;
    const int first = qvGetMaxFirstValid();
    const int status = qvCatalogueCall(&entry, bars, inputs, outputs, params, 0);
    qvSetMaxFirstValid(first);  // painting is no calculation of the caller's
    for (int k = 0; k < entry.outputCount && status > 0; ++k) outputs[k]->firstValid = outputs[k]->size;
    return status;
  }
  int give(int output, KeptSeries& kept) noexcept {
    kept = kept_[output];
    kept_[output] = {};
    return QV_OK;
  }

 private:
  KeptSeries kept_[kMostParts];
};

const QvArray* seriesIn(const QvBars& bars, int bit) noexcept {
  return bit ? &seriesOf(bars, std::countr_zero(static_cast<unsigned>(bit))) : nullptr;
}

// The calculation as a formula would write it: its short name and the numbers, dates left out.
void storeCall(char (&text)[64], const QvCatalogueEntry& entry, const double* params) noexcept {
  int length = std::snprintf(text, sizeof text, "%s", entry.shortName);
  const char* before = "(";
  const auto add = [&](const char* value) {
    if (length < static_cast<int>(sizeof text))
      length +=
          std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), "%s%s", before, value);
    before = ", ";
  };
  for (int k = 0; k < entry.paramCount; ++k) {
    const QvCatalogueParam& param = entry.params[k];
    const double value = params ? params[k] : param.defaultValue;
    if (param.kind == QV_PARAM_DATE) continue;
    char number[24];
    std::snprintf(number, sizeof number, "%g", value);
    add(value >= 0.0 && value < param.choiceCount ? param.choices[static_cast<int>(value)] : number);
  }
  if (*before == ',' && length < static_cast<int>(sizeof text) - 1) std::strcat(text, ")");
}

}  // namespace

}  // namespace qv::charting

using namespace qv;
using namespace qv::charting;

extern "C" int QVCALL qvGraphCalculation(QvGraph* graph, int subWindow, const QvCatalogueEntry* entry,
                                         const QvBars* other, const QvArray* const* inputs,
                                         const double* params) noexcept {
  if (!graph || !catalogue::isEntry(entry) || (subWindow != QV_GRAPH_NEW && !hasSubWindow(graph, subWindow)))
    return QV_INVALID_PARM;
  const QvBars* bars[] = {graph->bars.record, other};
  const QvArray* series[catalogue::kMostInputs] = {};
  for (int k = 0; k < entry->inputCount; ++k)
    series[k] = inputs && inputs[k] ? inputs[k] : seriesIn(*graph->bars.record, entry->inputs[k].series);
  Results results;
  if (const int status = results.compute(*entry, bars, series, params); status < 0) return status;
  Item item;
  item.kind = Item::Kind::Line;
  storeCall(item.name, *entry, params);
  takeOutputs(*entry, item,
              [&](int output, KeptSeries& kept) noexcept { return results.give(output, kept); });
  takeHints(*entry, -1, item);
  const bool overPrices = entry->outputs[entry->mainOutput].place == QV_PLACE_PRICE;
  return putInPanel(*graph, item, subWindow == QV_GRAPH_NEW && overPrices ? 0 : subWindow, entry, 0);
}
