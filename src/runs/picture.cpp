#include "runs/picture.h"

namespace qv::runs {

GraphPointer openGraph(const QvBars& bars, const std::string& title) {
  GraphPointer graph(qvGraphOpen(&bars, title.c_str(), QV_GRAPH_REFER));
  if (!graph) throw Error("the chart", QV_MALLOC);
  return graph;
}

int chartKindFor(const QvBars& bars, int kind) {
  const auto isKnown = [&](const QvArray& a) { return a.firstValid < bars.barsize; };
  const bool needsAll = kind == QV_CHART_CANDLES || kind == QV_CHART_BARS || kind == QV_CHART_HEIKIN_ASHI;
  const bool hasAll = isKnown(bars.open) && isKnown(bars.high) && isKnown(bars.low);
  return needsAll && !hasAll ? int{QV_CHART_LINE} : kind;
}

PictureKind pictureKindOf(const std::string& file) {
  std::string name = file;
  for (char& c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return name.ends_with(".svg")   ? PictureKind::Svg
         : name.ends_with(".png") ? PictureKind::Png
         : name.ends_with(".pdf") ? PictureKind::Pdf
                                  : PictureKind::None;
}

void writePicture(QvGraph* graph, const std::string& file, double width, double height, double scale,
                  PictureWriter writer) {
  const auto isSize = [](double units) { return units >= 1 && units <= kLargestPicture; };
  if (!isSize(width) || !isSize(height))
    throw Error(file, "pictures are 1 to 20000 units wide and high", QV_INVALID_PARM);
  const PictureKind kind = pictureKindOf(file);
  if (kind == PictureKind::None) throw Error(file, "pictures end in .svg, .png or .pdf", QV_INVALID_PARM);
  if (kind != PictureKind::Svg && !writer)
    throw Error(file, "only .svg is written without Cairo (Debian: libcairo2)", QV_UNKNOWN);
  const int status = kind == PictureKind::Svg
                         ? qvGraphWriteSVG(graph, file.c_str(), width, height)
                         : writer(graph, file, kind == PictureKind::Pdf, width, height, scale);
  if (status == QV_FILE_OPEN || status == QV_FILE_WRITE)
    throw Error(file, "the picture can't be written there", status);
  check(status, file);
}

}  // namespace qv::runs
