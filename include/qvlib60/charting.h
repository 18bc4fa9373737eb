/* Charts: a graph of sub-windows over one time axis, in them price charts, lines of any series, zones and
   shapes, painted into any device context through a record of callbacks.

   Lifetimes. With QV_GRAPH_REFER a graph points to the caller's records and reads them whenever it is
   painted: record and block must stay until the item is removed or replaced or the graph is closed; they may
   grow and change between two paintings. With QV_GRAPH_COPY it keeps a copy of its own. Styles, themes,
   shapes and texts are always copied. Texts are UTF-8; bytes that are not become U+FFFD, control characters
   blanks, and what does not fit is cut behind a whole character.

   Time axis. Bar i of the graph's bars stands i places to the right of bar 0, however many days lie between:
   week-ends and holidays leave no gap. Item i of a series belongs to bar i; items below its first valid
   index, not-a-numbers, infinities and numbers beyond 1e300 are gaps.

   Errors. -1: a null graph or record, a number that stands for no item, sub-window or kind; -3: memory ran
   out. What failed left the graph as it was. A graph belongs to one thread at a time.

   Colours are 0xAARRGGBB, AA being 0xFF for an opaque one. Lengths are in units of the painter's picture. */
#ifndef QVLIB60_CHARTING_H
#define QVLIB60_CHARTING_H

#include "qvlib60/catalogue.h"

QV_BEGIN_DECLS

enum { QV_GRAPH_REFER = 0, QV_GRAPH_COPY = 1 }; /* `keep` */
enum { QV_GRAPH_NEW = -1 };                     /* instead of a number: a new item, a new sub-window */

/* The kinds of qvGraphChart. */
enum {
  QV_CHART_CANDLES = 0,
  QV_CHART_BARS = 1, /* open, high, low, close */
  QV_CHART_LINE = 2, /* the closes */
  QV_CHART_AREA = 3,
  QV_CHART_VOLUME = 4, /* columns, in the colour of their bar */
  QV_CHART_PNF = 5,    /* the bar set holds columns of qvBars2PNF */
  QV_CHART_HEIKIN_ASHI = 6
};

/* The kinds of qvGraphLine. The numbers 0 .. 5 are those of QV_STYLE_... of catalogue.h. */
enum {
  QV_LINE_LINE = 0,
  QV_LINE_HISTOGRAM = 1, /* columns from 0 */
  QV_LINE_DOTS = 2,
  QV_LINE_BAND = 3,   /* between two series */
  QV_LINE_SIGNAL = 4, /* a mark under the low where the item is above 0, over the high where below; at the
                         foot of sub-windows without prices */
  QV_LINE_STATE = 5,  /* columns from 0 that touch each other */
  QV_LINE_STEPS = 6
};

enum { QV_SIDE_RIGHT = 0, QV_SIDE_LEFT = 1 }; /* the two scales of a sub-window */

/* The kinds of a scale. Percent: how far from the value at the first visible bar, each series from its own.
 */
enum { QV_SCALE_LINEAR = 0, QV_SCALE_LOG = 1, QV_SCALE_PERCENT = 2 };

enum { QV_DASH_SOLID = 0, QV_DASH_DASHED = 1, QV_DASH_DOTTED = 2 };

enum { QV_THEME_LIGHT = 0, QV_THEME_DARK = 1 };

/* QvGraphShape.kind, and which fields of the record it reads. A bar may lie outside the data. */
enum {
  QV_SHAPE_TREND_LINE = 0,
  QV_SHAPE_RAY = 1, /* from the first point through the second to the edge */
  QV_SHAPE_RECTANGLE = 2,
  QV_SHAPE_TEXT = 3,      /* centred over bar, price */
  QV_SHAPE_ARROW = 4,     /* to the second point */
  QV_SHAPE_TRADE = 5,     /* at bar and price; direction 1 bought, -1 sold; text */
  QV_SHAPE_FIBONACCI = 6, /* retracements of the move from the first point to the second */
  QV_SHAPE_REGRESSION =
      7 /* of the closes from bar to bar2, and `deviations` standard errors on either side */
};

/* ---- Records --------------------------------------------------------------------------------- */

typedef struct QvPoint {
  double x;
  double y; /* downwards */
} QvPoint;

#pragma pack(push, 4)

typedef struct QvGraphShape {
  int32_t kind; /* QV_SHAPE_... */
  int32_t bar;
  double price;
  int32_t bar2;
  int32_t direction;
  double price2;
  double deviations; /* 0 or less, or not a number: 2 */
  char text[64];
} QvGraphShape;

/* How an item is drawn. Zero in a field leaves it to the theme; an all-zero record is the theme's. */
typedef struct QvGraphStyle {
  uint32_t colour;  /* of a line; of rising bars */
  uint32_t colour2; /* of falling bars; of the filling of an area or band; of columns below 0 */
  double width;     /* of lines; of dots and marks their size */
  int32_t dash;     /* QV_DASH_... */
  int32_t hidden;   /* 1: not painted, and nowhere in scale and legend */
  char name[64];    /* in the legend */
} QvGraphStyle;

typedef struct QvGraphTheme {
  uint32_t background;
  uint32_t text;
  uint32_t faint; /* text that matters less */
  uint32_t grid;
  uint32_t frame;
  uint32_t up;
  uint32_t down;
  uint32_t zone;
  uint32_t cursor;
  uint32_t palette[8]; /* of lines, in turn */
  int32_t reserved;
  double fontSize;
  double lineWidth;
  char font[64]; /* families, the first that exists */
} QvGraphTheme;

/* What lies at a point of the picture. */
typedef struct QvGraphHit {
  int32_t subWindow; /* -1: none */
  int32_t bar;       /* also outside the data; -1 outside the sub-windows' width */
  int32_t item;      /* the item drawn last within a few units; -1: none */
  int32_t part;      /* of an item with several lines */
  double price[2];   /* on the right scale, on the left one; not a number where there is no such scale */
} QvGraphHit;

#pragma pack(pop)

QV_PACK_POINTERS

/* A device context. Callbacks answer 0; another answer ends the painting, which gives it if it is below 0,
   else -5. Texts are UTF-8 without control characters. Coordinates are finite; lines and fillings lie within
   the clip but for half their width, texts within the picture. All callbacks are needed. */
typedef struct QvPainter {
  void* context;
  double scale; /* device pixels to a unit: lines are laid on whole pixels. Not above 0: 1 */
  int(QVCALL* line)(void* context, double x1, double y1, double x2, double y2, uint32_t colour, double width,
                    int dash);
  int(QVCALL* polyline)(void* context, const QvPoint* points, int count, uint32_t colour, double width,
                        int dash);
  int(QVCALL* rectangle)(void* context, double x, double y, double width, double height, uint32_t fill);
  int(QVCALL* polygon)(void* context, const QvPoint* points, int count, uint32_t fill);
  /* x: the left edge, y: the base line */
  int(QVCALL* text)(void* context, double x, double y, const char* text, const char* font, double size,
                    int bold, uint32_t colour);
  int(QVCALL* extent)(void* context, const char* text, const char* font, double size, int bold,
                      double* width);
  int(QVCALL* clip)(void* context, double x, double y, double width, double height);
} QvPainter;

#pragma pack(pop)

typedef struct QvGraph QvGraph;
typedef struct QvChart QvChart;

/* ---- The graph ------------------------------------------------------------------------------- */

/* A graph over the dates of a bar set, which are its time axis; with an empty sub-window 0, that of the
   prices. The title may be null. Null for null bars and where memory runs out. What is opened must be closed;
   null is fine there. */
QVAPI QvGraph* QVCALL qvGraphOpen(const QvBars* bars, const char* title, int keep) QVNOEXCEPT;
QVAPI void QVCALL qvGraphClose(QvGraph* graph) QVNOEXCEPT;

/* A new sub-window under the others, or sub-window 0, 1 .. once more. Heights are shared out by the weights
   (above 0; sub-window 0 begins with 3); with 0 the sub-window is not shown. The title may be null. Gives the
   number of the sub-window; -1 also for a weight that is negative or not finite. At most 64. */
QVAPI int QVCALL qvGraphSubWindow(QvGraph* graph, int subWindow, const char* title, double weight) QVNOEXCEPT;

/* ---- Items: all give the item's number, 0 or more ----------------------------------------------- */

/* `item` is QV_GRAPH_NEW or the number of an item, which is replaced and loses its style. Items are painted
   in the order of their numbers, shapes on top of them. */

/* Prices of a bar set. Null bars are those of the graph; others whose dates differ are laid on the time axis
   by their dates, once and as a copy, whatever `keep` says. A bar with an item that is no number is a gap;
   only the closes are read for lines and areas, the volumes (and for their colour open and close) for
   volumes. `box` is for point and figure: the box of the columns, 0 lets the chart choose. */
QVAPI int QVCALL qvGraphChart(QvGraph* graph, int item, int subWindow, const QvBars* bars, int kind,
                              double box, int keep) QVNOEXCEPT;

/* A series; for QV_LINE_BAND the other edge, else null. A series may be shorter or longer than the bars. */
QVAPI int QVCALL qvGraphLine(QvGraph* graph, int item, int subWindow, const QvArray* series,
                             const QvArray* other, int kind, int side, const char* name, int keep) QVNOEXCEPT;

/* The values from low to high over the whole width, a line where they are equal. */
QVAPI int QVCALL qvGraphZone(QvGraph* graph, int item, int subWindow, double low, double high,
                             int side) QVNOEXCEPT;

/* On the right scale. */
QVAPI int QVCALL qvGraphShape(QvGraph* graph, int item, int subWindow, const QvGraphShape* shape) QVNOEXCEPT;

/* A calculation or any other formula over the graph's bars, with what its catalogue entry tells about drawing
   it: the outputs that stand where the main one does (or the one that the formula names) are the item's parts
   in the order of the entry, both edges of a band being one part. Prices go to sub-window 0, what is computed
   from the values of another panel to that panel, rules as signals to sub-window 0, everything else to a new
   sub-window, which has the formula as its title: QV_GRAPH_NEW asks for that, another number names a
   sub-window. It is computed at this call. -1 with the reason in `error`, as qvFormulaOpen gives it. */
QVAPI int QVCALL qvGraphFormula(QvGraph* graph, int subWindow, const char* formula, char* error,
                                int errorSize) QVNOEXCEPT;

/* A calculation that a formula can't have: of the graph's bars and a second bar set, of series of the
   caller's. `other` is the second bar set of entries that take two, else null; `inputs` are the entry's
   series, null or an item of null for those of the graph's bars that one usually passes; params as for
   qvCatalogueCall. Drawn as qvGraphFormula draws calculations, prices and signals in sub-window 0. -1 also
   for what is no entry; else the errors of the calculation. */
QVAPI int QVCALL qvGraphCalculation(QvGraph* graph, int subWindow, const QvCatalogueEntry* entry,
                                    const QvBars* other, const QvArray* const* inputs,
                                    const double* params) QVNOEXCEPT;

/* Restyles part 0 .. of an item. */
QVAPI int QVCALL qvGraphStyle(QvGraph* graph, int item, int part, const QvGraphStyle* style) QVNOEXCEPT;

/* The item is no more; its number may be given to a later one. */
QVAPI int QVCALL qvGraphRemove(QvGraph* graph, int item) QVNOEXCEPT;

/* ---- Scales and what is visible ------------------------------------------------------------------ */

/* The kind of a scale and its ends; where low is not below high (both 0, say) the ends follow what is
   visible. Under QV_SCALE_PERCENT the ends are percents. Values that a logarithmic scale does not have are
   gaps. */
QVAPI int QVCALL qvGraphScale(QvGraph* graph, int subWindow, int side, int kind, double low,
                              double high) QVNOEXCEPT;

/* The bars that are visible, both included; they may reach up to 2^30 outside the data, as empty room.
   At first all bars are, also those that come later. The second form takes the bars dated from .. to. */
QVAPI int QVCALL qvGraphRange(QvGraph* graph, int first, int last) QVNOEXCEPT;
QVAPI int QVCALL qvGraphRangeDates(QvGraph* graph, double from, double to) QVNOEXCEPT;

/* The bar whose values the legend shows, under a vertical line; -1: the last visible one, without a line. */
QVAPI int QVCALL qvGraphCursor(QvGraph* graph, int bar) QVNOEXCEPT;

/* ---- Themes -------------------------------------------------------------------------------------- */

/* The colours of both are told apart by colour-blind people. Fields of 0 in a theme that is set, and numbers
   that are not finite, are those of the light theme. */
QVAPI int QVCALL qvGraphTheme(int theme, QvGraphTheme* out) QVNOEXCEPT;
QVAPI int QVCALL qvGraphSetTheme(QvGraph* graph, const QvGraphTheme* theme) QVNOEXCEPT;

/* ---- Painting ------------------------------------------------------------------------------------ */

/* Paints the graph into 0 .. width, 0 .. height. What finds no room is left out: title, legend, axes. A
   sub-window without a value says so. -1 also for a size below 1 or above 1,000,000 and a missing callback.
 */
QVAPI int QVCALL qvGraphPaint(QvGraph* graph, const QvPainter* painter, double width,
                              double height) QVNOEXCEPT;

/* The picture as SVG, in a file (-2 where it can't be opened, -5 where it can't be written). */
QVAPI int QVCALL qvGraphWriteSVG(QvGraph* graph, const char* file, double width, double height) QVNOEXCEPT;

/* The same in `text`, which holds `size` characters (null and 0: just counts). Gives the length of the whole,
   which is below `size` where it fitted; what is stored is always ended. */
QVAPI int QVCALL qvGraphTextSVG(QvGraph* graph, double width, double height, char* text, int size) QVNOEXCEPT;

/* Paints into a Windows device context (HDC); -10 where there is none. */
QVAPI int QVCALL qvGraphPaintDC(QvGraph* graph, void* dc, int width, int height) QVNOEXCEPT;

/* ---- From the picture and back: as the graph was last painted; -1 before that --------------------- */

QVAPI int QVCALL qvGraphHit(const QvGraph* graph, double x, double y, QvGraphHit* hit) QVNOEXCEPT;

/* Where a bar's middle and a price stand, also outside what is visible; not a number for a price that the
   scale does not have. */
QVAPI int QVCALL qvGraphPosition(const QvGraph* graph, int subWindow, int side, int bar, double price,
                                 QvPoint* point) QVNOEXCEPT;

/* ---- The simple chart ---------------------------------------------------------------------------- */

/* Candles of a bar set, referred to. Null as for qvGraphOpen. */
QVAPI QvChart* QVCALL qvChartOpen(const QvBars* bars, const char* title) QVNOEXCEPT;
QVAPI void QVCALL qvChartClose(QvChart* chart) QVNOEXCEPT;

/* Adds a moving average of the closes (method: QV_MA_... of codes.h, as qvMovingAverage). */
QVAPI int QVCALL qvChartAverage(QvChart* chart, int method, int period) QVNOEXCEPT;

/* Shows the volumes below the prices (show not 0) or not. */
QVAPI int QVCALL qvChartVolume(QvChart* chart, int show) QVNOEXCEPT;

QVAPI int QVCALL qvChartPaint(QvChart* chart, const QvPainter* painter, double width,
                              double height) QVNOEXCEPT;
QVAPI int QVCALL qvChartWriteSVG(QvChart* chart, const char* file, double width, double height) QVNOEXCEPT;

/* The graph behind it, for everything else; it goes with the chart. */
QVAPI QvGraph* QVCALL qvChartGraph(QvChart* chart) QVNOEXCEPT;

QV_END_DECLS

#endif
