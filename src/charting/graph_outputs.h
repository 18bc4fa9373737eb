// How the outputs of a calculation are drawn: as its catalogue entry tells.
#pragma once

#include "charting/graph.h"
#include "charting/texts.h"

namespace qv::charting {

// Fills the item with the outputs that stand where the main one does, both edges of a band as one part.
// `valuesOf(output, kept)` gives the values, or an error.
template <typename ValuesOf>
int takeOutputs(const QvCatalogueEntry& entry, Item& item, const ValuesOf& valuesOf) noexcept {
  const QvCatalogueOutput& main = entry.outputs[entry.mainOutput];
  item.partCount = 0;
  int status = QV_OK;
  int edge = -1;  // the part that is a band's first edge and waits for the other
  for (int k = 0; k < entry.outputCount && status == QV_OK; ++k) {
    const QvCatalogueOutput& output = entry.outputs[k];
    const bool isBand = output.style == QV_STYLE_BAND;
    if (output.place != main.place || (output.style == QV_STYLE_SIGNAL) != (main.style == QV_STYLE_SIGNAL))
      continue;
    if (isBand && edge >= 0) {
      status = valuesOf(k, item.parts[edge].other);
      edge = -1;
      continue;
    }
    if (isBand) edge = item.partCount;
    Part& part = item.parts[item.partCount++];
    part.form = output.style;
    storeText(part.name, isBand || entry.outputCount == 1 ? "" : output.name);
    status = valuesOf(k, part.values);
  }
  if (edge >= 0) item.parts[edge].form = QV_LINE_LINE;
  return status;
}

// Levels and range of one output, or with -1 of all, where they are drawn in a panel.
void takeHints(const QvCatalogueEntry& entry, int only, Item& item) noexcept;

// Puts a new item into a sub-window, or with QV_GRAPH_NEW into a new one, which is the panel of that
// calculation or of these series. Gives the item's number; where it fails the item is released.
int putInPanel(QvGraph& graph, Item& item, int subWindow, const QvCatalogueEntry* entry,
               unsigned series) noexcept;

}  // namespace qv::charting
