// A graph in block characters: each character's place is four pixels, or a letter of a text.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "cli/picture.h"
#include "cli/terminal.h"

namespace qvcli {

namespace {

// The units of a place, which hold a letter: the labels of a scale stand in rows of their own.
constexpr double kFontSize = 13, kCellWidth = 7.5, kCellHeight = kFontSize * 1.3;

struct Cell {
  unsigned dots = 0;  // 1 2 over 4 8
  uint32_t colour = 0;
  std::string letter;
};

class Blocks {
 public:
  Blocks(int columns, int rows, uint32_t background, uint32_t grid)
      : columns_(columns),
        rows_(rows),
        background_(background),
        grid_(grid),
        cells_(static_cast<std::size_t>(columns) * rows) {}

  QvPainter painter() { return {this, 1, line, polyline, rectangle, polygon, text, extent, clip}; }
  double width() const { return columns_ * kCellWidth; }
  double height() const { return rows_ * kCellHeight; }

  void print(bool coloured) const {
    static const char* const kBlocks[] = {" ", "▘", "▝", "▀", "▖", "▌", "▞", "▛",
                                          "▗", "▚", "▐", "▜", "▄", "▙", "▟", "█"};
    for (int row = 0; row < rows_; ++row) {
      uint32_t colour = 0;
      std::string out;
      for (int column = 0; column < columns_; ++column) {
        const Cell& cell = cells_[static_cast<std::size_t>(row) * columns_ + column];
        if (coloured && cell.colour != colour && (cell.dots || !cell.letter.empty())) {
          char code[32];
          std::snprintf(code, sizeof code, "\x1b[38;2;%u;%u;%um", (cell.colour >> 16) & 255u,
                        (cell.colour >> 8) & 255u, cell.colour & 255u);
          out += code;
          colour = cell.colour;
        }
        out += cell.letter.empty() ? kBlocks[cell.dots] : cell.letter;
      }
      out.erase(out.find_last_not_of(' ') + 1);
      std::printf("%s%s\n", out.c_str(), colour ? "\x1b[0m" : "");
    }
  }

 private:
  bool isSeen(uint32_t colour) const {
    return colour != background_ && colour != grid_ && (colour >> 24) > 100;
  }

  void dot(double x, double y, uint32_t colour) {
    const int px = static_cast<int>(std::floor(x / kCellWidth * 2)),
              py = static_cast<int>(std::floor(y / kCellHeight * 2));
    if (px < 0 || py < 0 || px >= 2 * columns_ || py >= 2 * rows_) return;
    Cell& cell = cells_[static_cast<std::size_t>(py / 2) * columns_ + px / 2];
    cell.dots |= 1u << (px % 2 + 2 * (py % 2));
    cell.colour = colour;
  }

  static Blocks& self(void* c) { return *static_cast<Blocks*>(c); }
  static int QVCALL line(void* c, double x1, double y1, double x2, double y2, uint32_t colour, double,
                         int dash) {
    if (!self(c).isSeen(colour)) return 0;
    const double cells = std::max(std::fabs(x2 - x1) / kCellWidth, std::fabs(y2 - y1) / kCellHeight);
    const int steps = static_cast<int>(std::ceil(std::min(cells * 4, 1e6))) + 1;
    // Of a line that is not solid every other place.
    for (int i = 0; i <= steps; i += dash && i % 8 == 3 ? 5 : 1)
      self(c).dot(x1 + (x2 - x1) * i / steps, y1 + (y2 - y1) * i / steps, colour);
    return 0;
  }
  static int QVCALL polyline(void* c, const QvPoint* p, int count, uint32_t colour, double width, int dash) {
    for (int i = 1; i < count; ++i) line(c, p[i - 1].x, p[i - 1].y, p[i].x, p[i].y, colour, width, dash);
    return 0;
  }
  // Marks behind texts are left out: the texts are seen without them.
  static int QVCALL rectangle(void* c, double x, double y, double width, double height, uint32_t fill) {
    Blocks& b = self(c);
    if (!b.isSeen(fill) || x >= b.clipRight_ - 1 || b.isWhole_) return 0;
    const int rows = static_cast<int>(std::ceil(height / kCellHeight * 4));
    const int columns = static_cast<int>(std::ceil(width / kCellWidth * 4));
    for (int row = 0; row < rows; ++row)
      for (int column = 0; column < columns; ++column)
        b.dot(x + column * kCellWidth / 4, y + row * kCellHeight / 4, fill);
    return 0;
  }
  static int QVCALL polygon(void* c, const QvPoint* p, int count, uint32_t fill) {
    for (int i = 0; i < count; ++i)
      line(c, p[i].x, p[i].y, p[(i + 1) % count].x, p[(i + 1) % count].y, fill, 1, 0);
    return 0;
  }
  static int QVCALL text(void* c, double x, double y, const char* text, const char*, double size, int,
                         uint32_t colour) {
    Blocks& b = self(c);
    const int row = static_cast<int>(std::floor((y - 0.36 * size) / kCellHeight));
    int column = static_cast<int>(std::floor(x / kCellWidth + 0.5));
    // What is written on a mark is white or black, and seen in the colour of other texts here.
    if (colour == 0xFFFFFFFFu || colour == 0xFF000000u) colour = 0xFF9AA4B1u;
    for (const char* at = text; *at && row >= 0 && row < b.rows_;) {
      const char* end = at + 1;
      while ((static_cast<unsigned char>(*end) & 0xC0u) == 0x80u) ++end;
      if (column >= 0 && column < b.columns_)
        b.cells_[static_cast<std::size_t>(row) * b.columns_ + column] = {0, colour, std::string(at, end)};
      ++column;
      at = end;
    }
    return 0;
  }
  static int QVCALL extent(void*, const char* text, const char*, double, int, double* width) {
    int letters = 0;
    for (; *text; ++text) letters += (static_cast<unsigned char>(*text) & 0xC0u) != 0x80u;
    *width = (letters + 0.5) * kCellWidth;  // so that words stay apart when they are laid on whole places
    return 0;
  }
  static int QVCALL clip(void* c, double x, double, double width, double) {
    self(c).clipRight_ = x + width;
    self(c).isWhole_ = width >= self(c).width();
    return 0;
  }

  int columns_, rows_;
  uint32_t background_, grid_;
  double clipRight_ = 0;
  bool isWhole_ = true;
  std::vector<Cell> cells_;
};

}  // namespace

void printBlocks(QvGraph* graph, QvGraphTheme theme) {
  theme.fontSize = kFontSize;
  theme.frame = theme.grid;  // no room for either
  qv::check(qvGraphSetTheme(graph, &theme), "the theme");
  const TerminalSize size = terminalSize();
  Blocks blocks(size.columns, size.rows, theme.background, theme.grid);
  const QvPainter painter = blocks.painter();
  qv::check(qvGraphPaint(graph, &painter, blocks.width(), blocks.height()), "the chart");
  blocks.print(size.isTerminal);
}

}  // namespace qvcli
