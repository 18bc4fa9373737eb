// Pictures of graphs as options ask for them: in files, or in block characters on a terminal.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "runs/picture.h"

namespace qvcli {

// Where a picture goes, and its looks: -o, --size, --theme, --scale.
struct PictureOptions {
  std::string file, size, theme = "light";
  double scale = 1;
};

// `output` and `size` are the names of the options for file and size.
void addPictureOptions(CLI::App& command, PictureOptions& options, const char* output = "-o,--output",
                       const char* size = "--size");

QvGraphTheme themeOf(const PictureOptions& options);

// Throws UsageError for an ending that is no picture's and a size that is none.
void checkPictureOptions(const PictureOptions& options);

// Into the file, with the same checks; without a file the graph is printed.
void showPicture(QvGraph* graph, const PictureOptions& options);

// The graph in block characters and the colours of the theme, as large as the terminal.
void printBlocks(QvGraph* graph, QvGraphTheme theme);

}  // namespace qvcli
