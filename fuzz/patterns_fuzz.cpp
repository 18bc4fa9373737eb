// The candle engine, and point and figure with its chart.
#include "input.h"
#include "scratch.h"

namespace qvfuzz {
namespace {

void cutTo(const QvBars& from, int m, QvBars& to) {
  QV_REQUIRE(qvAllocBars(&to, m) == 0, "%d bars", m);
  for (int s = 0; s < qv::kSeriesCount; ++s)
    if (m > 0)
      std::memcpy(qv::seriesOf(to, s).data, qv::seriesOf(from, s).data,
                  static_cast<std::size_t>(m) * sizeof(double));
}

void candles(Input& in, const Heap& heap) {
  const int n = in.choose(0, 200);
  BarSet bars(in, n);
  const bool regular = in.flip(), trailing = in.flip();
  if (!regular) bars.disturb(in);
  QvCandles candles{};
  if (in.flip()) {
    candles.longShadowFactor = in.number();
    candles.shortShadowFactor = in.number();
    candles.dojiFactor = in.number();
  }
  const int period = in.seldom(4) ? in.integer() : in.choose(1, 30);
  Snapshot inputs;
  inputs.add(bars);
  heap.arm();
  const int status =
      trailing ? qvCandleConstructTrailing(&bars, &candles, period) : qvCandleConstruct(&bars, &candles);
  Heap::disarm();
  QV_REQUIRE(
      status == 0 || (status == QV_INVALID_PARM && !candles.records) || (status == QV_MALLOC && heap.fails()),
      "%d", status);
  const int count = std::max(0, bars.barsize);
  for (int i = -1; status == 0 && i <= count; ++i) {
    const bool there = i >= 0 && i < count;
    const int colour = qvCandleColor(&candles, i), shape = qvCandleShape(&candles, i),
              top = qvCandleTopShadow(&candles, i), bottom = qvCandleBotShadow(&candles, i);
    QV_REQUIRE(colour >= 0 && colour <= 2 && (there || !colour), "bar %d: %d", i, colour);
    QV_REQUIRE(shape == 0 || shape == 1 || shape == 3, "bar %d: %d", i, shape);
    QV_REQUIRE(there == (top >= 1 && top <= 3) && there == (bottom >= 1 && bottom <= 3), "bar %d: %d %d", i,
               top, bottom);
  }
  if (status == 0 && trailing && regular && n > 0) {
    BarSet fewer;
    cutTo(bars, in.choose(1, n), fewer);
    QvCandles earlier = candles;
    earlier.records = nullptr;
    if (qvCandleConstructTrailing(&fewer, &earlier, period) == 0)
      QV_REQUIRE(std::memcmp(earlier.records, candles.records,
                             static_cast<std::size_t>(fewer.barsize) * sizeof(QvCandle)) == 0,
                 "candles look ahead");
    qvCandleFree(&earlier);
  }
  const QvCatalogueEntry* entry = qvCatalogueFind("candle");
  const std::string own = in.cText(20);
  const char* name =
      in.seldom(8) ? own.c_str() : entry->params[0].choices[in.choose(0, entry->params[0].choiceCount - 1)];
  Series out;
  const int from = in.integer(), to = in.integer();
  heap.arm();
  const int found = qvCandleFill(&bars, &candles, &out, name, from, to);
  Heap::disarm();
  QV_REQUIRE(found <= count && found >= QV_MALLOC, "%d", found);
  require(out);
  int marked = 0;
  for (int i = 0; i < out.size; ++i) marked += out.data[i] == 1.0;
  QV_REQUIRE(found < 0 || marked == found, "%d of %d", marked, found);
  inputs.require();
  qvCandleFree(&candles);
}

void pointAndFigure(Input& in, const Heap& heap) {
  static const Scratch dir;
  const int n = in.choose(0, 300);
  BarSet bars(in, n);
  if (in.flip()) bars.disturb(in);
  const double box = in.seldom(4) ? in.number() : in.choose(1, 64) / 16.0;
  const double reversal = in.seldom(4) ? in.number() : in.choose(0, 5);
  const int start = in.flip() ? 0 : in.integer();
  const bool byHighs = in.flip();
  BarSet columns;
  Series columnOf;
  Snapshot inputs;
  inputs.add(bars);
  int status = 0;
  heap.arm();
  requireQuick(n, "point and figure", [&] {
    qvFreeBars(&columns);
    qvFreeArray(&columnOf);
    status = (byHighs ? qvBars2PNFhilo : qvBars2PNF)(&bars, &columns, &columnOf, box, reversal, start);
  });
  Heap::disarm();
  inputs.require();
  QV_REQUIRE(status == 0 || status == QV_INVALID_PARM || (status == QV_MALLOC && heap.fails()), "%d", status);
  require(columnOf);
  QV_REQUIRE(columns.barsize <= std::max(0, bars.barsize), "%d columns", columns.barsize);
  if (status == 0) {
    QV_REQUIRE(columns.barsize > 0, "no column");
    for (int i = 0; i < columnOf.size; ++i)
      QV_REQUIRE(columnOf.data[i] >= 0 && columnOf.data[i] < columns.barsize, "bar %d in column %g", i,
                 columnOf.data[i]);
    for (int c = 0; c < columns.barsize; ++c) {
      const double side = columns.openInterest.data[c];
      QV_REQUIRE(side == 1.0 || side == -1.0, "column %d: %g", c, side);
      QV_REQUIRE(c == 0 || side == -columns.openInterest.data[c - 1], "column %d goes on", c);
    }
  }
  const QvBars& drawn = in.flip() ? columns : bars;
  const double height = in.flip() ? box : in.number();
  const std::string file = dir / "chart";
  const int written = qvPNFchart(&drawn, height, file.c_str(), 0);
  QV_REQUIRE(written == 0 || written == QV_INVALID_PARM || written == QV_MALLOC, "%d", written);
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::Input in(data, size);
  const qvfuzz::Heap heap(in);
  if (in.flip())
    qvfuzz::candles(in, heap);
  else
    qvfuzz::pointAndFigure(in, heap);
  return 0;
}
