// Pictures of graphs: SVG by the library, PNG and PDF through Cairo, and block characters on a terminal.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "qvlib60.hpp"

namespace qvcli {

struct CloseGraph {
  void operator()(QvGraph* graph) const { qvGraphClose(graph); }
};
using GraphPointer = std::unique_ptr<QvGraph, CloseGraph>;
GraphPointer openGraph(const qv::Bars& bars, const std::string& title);

// Where a picture goes, and its looks: -o, --size, --theme, --scale.
struct PictureOptions {
  std::string file, size, theme = "light";
  double scale = 1;
};
void addPictureOptions(CLI::App& command, PictureOptions& options);

// Throws UsageError for an ending that is no picture's and a size that is none. Without a file the graph is
// printed.
void showPicture(QvGraph* graph, const PictureOptions& options);

// The graph in block characters, as large as the terminal.
void printBlocks(QvGraph* graph, const std::string& theme);

// PNG (device pixels: the size times the scale) or PDF (a point to a unit).
void writeCairo(QvGraph* graph, const std::string& file, bool pdf, double width, double height, double scale);

}  // namespace qvcli
