// Pictures of graphs in files: SVG by the library, PNG and PDF through Cairo.
#pragma once

#include <memory>
#include <string>

#include "qvlib60.hpp"

namespace qv::runs {

struct CloseGraph {
  void operator()(QvGraph* graph) const { qvGraphClose(graph); }
};
using GraphPointer = std::unique_ptr<QvGraph, CloseGraph>;

// Refers to the bars, which must outlive it.
GraphPointer openGraph(const QvBars& bars, const std::string& title);

// The kind of chart that bars can have: a line for those without open, high or low.
int chartKindFor(const QvBars& bars, int kind);

enum class PictureKind { None, Svg, Png, Pdf };
PictureKind pictureKindOf(const std::string& file);  // by its ending, in any case

constexpr double kLargestPicture = 20000;  // units, wide and high

// Writes PNG or PDF; 0 or a code.
using PictureWriter = int (*)(QvGraph* graph, const std::string& file, bool pdf, double width, double height,
                              double scale);

// As the file ends. PNG has the size times the scale pixels, PDF a point to a unit. Throws for a file that
// ends otherwise or can't be written, a size that is none, and where a writer is wanted and null.
void writePicture(QvGraph* graph, const std::string& file, double width, double height, double scale,
                  PictureWriter writer);

// Through Cairo. In a library of its own, qvlib60_cairo, which is there where Cairo is.
int writeCairo(QvGraph* graph, const std::string& file, bool pdf, double width, double height, double scale);

}  // namespace qv::runs
