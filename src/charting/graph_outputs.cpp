#include "charting/graph_outputs.h"

#include <algorithm>

namespace qv::charting {

void takeHints(const QvCatalogueEntry& entry, int only, Item& item) noexcept {
  for (int k = 0; k < entry.outputCount; ++k) {
    const QvCatalogueOutput& output = entry.outputs[k];
    if ((only >= 0 && k != only) || output.place != QV_PLACE_PANEL) continue;
    const int taken = std::min(int{output.zoneCount}, kMostLevels - item.levelCount);
    std::copy_n(output.zones, taken, item.levels + item.levelCount);
    item.levelCount += taken;
    if (output.low < output.high) {
      item.fixed.take(output.low);
      item.fixed.take(output.high);
    }
  }
}

int putInPanel(QvGraph& graph, Item& item, int subWindow, const QvCatalogueEntry* entry,
               unsigned series) noexcept {
  const bool isNew = subWindow == QV_GRAPH_NEW;
  item.subWindow = isNew ? addSubWindow(graph) : subWindow;
  if (item.subWindow < 0) {
    release(item);
    return item.subWindow;
  }
  if (isNew) {
    graph.subWindow(item.subWindow).entry = entry;
    graph.subWindow(item.subWindow).series = series;
  }
  const int result = put(graph, QV_GRAPH_NEW, item);
  if (result < 0 && isNew) --graph.subWindowCount;
  return result;
}

}  // namespace qv::charting
