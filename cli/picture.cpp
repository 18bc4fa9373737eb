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
  using qv::runs::kLargestPicture;
  if (std::sscanf(text.c_str(), "%lfx%lf%c", &size.width, &size.height, &more) != 2 || !(size.width >= 1) ||
      !(size.height >= 1) || size.width > kLargestPicture || size.height > kLargestPicture)
    throw UsageError("size " + text + ": WIDTHxHEIGHT is wanted, up to 20000x20000");
  return size;
}

}  // namespace

void addPictureOptions(CLI::App& command, PictureOptions& options, const char* output, const char* size) {
  command.add_option(output, options.file, "The picture: a file that ends in .svg, .png or .pdf");
  command.add_option(size, options.size, "WIDTHxHEIGHT (900x600)");
  command.add_option("--scale", options.scale, "PNG: device pixels to a unit")->check(CLI::Range(0.5, 8.0));
  command.add_option("--theme", options.theme, "light or dark")->check(CLI::IsMember({"light", "dark"}));
}

QvGraphTheme themeOf(const PictureOptions& options) {
  QvGraphTheme theme;
  qv::check(qvGraphTheme(options.theme == "dark" ? QV_THEME_DARK : QV_THEME_LIGHT, &theme), "the theme");
  return theme;
}

void checkPictureOptions(const PictureOptions& options) {
  sizeOf(options.size);
  if (!options.file.empty() && qv::runs::pictureKindOf(options.file) == qv::runs::PictureKind::None)
    throw UsageError(options.file + ": pictures end in .svg, .png or .pdf");
}

void showPicture(QvGraph* graph, const PictureOptions& options) {
  checkPictureOptions(options);
  const QvGraphTheme theme = themeOf(options);
  if (options.file.empty()) return printBlocks(graph, theme);
  qv::check(qvGraphSetTheme(graph, &theme), "the theme");
  const Size size = sizeOf(options.size);
#ifdef QV_WITH_CAIRO
  constexpr qv::runs::PictureWriter kWriter = qv::runs::writeCairo;
#else
  constexpr qv::runs::PictureWriter kWriter = nullptr;
#endif
  qv::runs::writePicture(graph, options.file, size.width, size.height, options.scale, kWriter);
}

}  // namespace qvcli
