#include "cli/picture.h"

#include <cstdio>

#include "cli/tool.h"

namespace qvcli {

namespace {

struct Size {
  double width = 900, height = 600;
};

Size sizeOf(const std::string& text) {
  Size size;
  if (text.empty()) return size;
  char more = 0;
  constexpr double kLargest = 20000;
  if (std::sscanf(text.c_str(), "%lfx%lf%c", &size.width, &size.height, &more) != 2 || !(size.width >= 1) ||
      !(size.height >= 1) || size.width > kLargest || size.height > kLargest)
    throw UsageError("--size " + text + ": WIDTHxHEIGHT is wanted, up to 20000x20000");
  return size;
}

}  // namespace

GraphPointer openGraph(const qv::Bars& bars, const std::string& title) {
  GraphPointer graph(qvGraphOpen(&bars, title.c_str(), QV_GRAPH_REFER));
  if (!graph) throw qv::Error("the chart", QV_MALLOC);
  return graph;
}

void addPictureOptions(CLI::App& command, PictureOptions& options) {
  command.add_option("-o,--output", options.file, "The picture: a file that ends in .svg, .png or .pdf");
  command.add_option("--size", options.size, "WIDTHxHEIGHT (900x600)");
  command.add_option("--scale", options.scale, "PNG: device pixels to a unit")->check(CLI::Range(0.5, 8.0));
  command.add_option("--theme", options.theme, "light or dark")->check(CLI::IsMember({"light", "dark"}));
}

void showPicture(QvGraph* graph, const PictureOptions& options) {
  QvGraphTheme theme;
  qv::check(qvGraphTheme(options.theme == "dark" ? QV_THEME_DARK : QV_THEME_LIGHT, &theme), "the theme");
  qv::check(qvGraphSetTheme(graph, &theme), "the theme");
  const Size size = sizeOf(options.size);
  if (options.file.empty()) return printBlocks(graph, options.theme);
  const auto endsIn = [&](const char* ending) {
    std::string name = options.file;
    for (char& c : name)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name.ends_with(ending);
  };
  if (endsIn(".svg"))
    qv::check(qvGraphWriteSVG(graph, options.file.c_str(), size.width, size.height), options.file);
  else if (endsIn(".png") || endsIn(".pdf"))
    writeCairo(graph, options.file, endsIn(".pdf"), size.width, size.height, options.scale);
  else
    throw UsageError(options.file + ": pictures end in .svg, .png or .pdf");
}

}  // namespace qvcli
