// Scales and the date axis: round and rising ticks, labels that tell them apart, the way from a pixel and
// back.
#include <gtest/gtest.h>

#include <cmath>

#include "charting/date_axis.h"
#include "charting/recording_painter.h"

namespace qvtest {
namespace {

TEST(GraphAxes, TicksAreRoundRisingAndApart) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> exponent(-12, 14), unit(0, 1);
  for (int round = 0; round < 3000; ++round)
    for (const int kind : {QV_SCALE_LINEAR, QV_SCALE_LOG}) {
      qv::charting::Scale scale;
      scale.kind = kind;
      const double low = std::pow(10, exponent(random)), width = low * std::pow(10, 6 * unit(random) - 3);
      scale.fit({low, low + width}, false, false, 10, 410);
      qv::charting::Tick ticks[qv::charting::Scale::kMostTicks];
      qv::charting::NumberFormat format;
      const int count = scale.ticks(25, ticks, format);
      SCOPED_TRACE(testing::Message() << low << " " << width << " " << kind);
      ASSERT_GE(count, kind == QV_SCALE_LOG ? 1 : 3);
      std::string last;
      for (int i = 0; i < count; ++i) {
        const double digits =
            ticks[i].value / std::pow(10, std::floor(std::log10(std::fabs(ticks[i].value))) - 4);
        if (ticks[i].value != 0 && width > low / 100) {
          EXPECT_NEAR(digits, std::round(digits), 1e-6);
        }
        EXPECT_NEAR(scale.y(ticks[i].value, 0), ticks[i].y, 1e-9);
        EXPECT_NEAR(scale.value(ticks[i].y, 0), ticks[i].value,
                    std::fabs(ticks[i].value) * 1e-9 + width * 1e-9);
        char text[qv::charting::kNumberSize];
        qv::charting::writeNumber(text, ticks[i].value, format, false);
        EXPECT_NE(last, text) << "two ticks with one label";
        last = text;
        if (i == 0) continue;
        EXPECT_GT(ticks[i].value, ticks[i - 1].value);
        EXPECT_GE(ticks[i - 1].y - ticks[i].y, 25 - 1e-6);
      }
    }
}

TEST(GraphAxes, ScalesOfOddRangesHaveTicksOrNone) {
  const auto ticksOf = [](int kind, double low, double high, double height) {
    qv::charting::Scale scale;
    scale.kind = kind;
    scale.fixedLow = low;
    scale.fixedHigh = high;
    scale.fit({}, false, false, 10, 10 + height);
    qv::charting::Tick ticks[qv::charting::Scale::kMostTicks];
    qv::charting::NumberFormat format;
    return scale.ticks(25, ticks, format);
  };
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 0, 10, 400), 11);
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 1e15, 1e15 + 1, 400), 0)
      << "steps that numbers of this size do not have";
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, -1e15 - 1, -1e15, 400), 0);
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 5e12 - 40, 5e12 + 40, 400), 0);
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 0, 1e-302, 400), 0);
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 0, 10, 1e6), 101);
  EXPECT_EQ(ticksOf(QV_SCALE_LOG, 1e-290, 1e290, 1e6), int{qv::charting::Scale::kMostTicks});
  EXPECT_EQ(ticksOf(QV_SCALE_LOG, 1, 1000, 400), 10);
  EXPECT_EQ(ticksOf(QV_SCALE_LINEAR, 0, 10, 0), 0);
}

TEST(GraphAxes, FixedLogarithmicScales) {
  const Bars bars(walkBars(30));
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  EXPECT_EQ(qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LOG, 10, 1000), 0);
  for (const auto& [low, high] : {std::pair(kNaN, 3.0), {3.0, kInf}, {4.0, 3.0}})
    EXPECT_EQ(qvGraphScale(g, 0, QV_SIDE_LEFT, QV_SCALE_LINEAR, low, high), 0) << "no range is the data's";
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("50") && r.text("500"));
  EXPECT_NEAR(g.at(0, 100).y * 2, g.at(0, 10).y + g.at(0, 1000).y, 1e-6);
  // Before the first bar the scale stands, with no last value on it.
  ASSERT_EQ(qvGraphRange(g, -20, -5), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("500"));
  // What lies below 0 is not there: half a line, no dot, no mark, half a band.
  Items items;
  for (int i = 0; i < 30; ++i) items.push_back(i < 15 ? 100.0 : -5.0);
  const Array falling(items), rising(Items(items.rbegin(), items.rend())), ones(Items(30, 50.0));
  const Graph below(bars);
  qvGraphScale(below, 0, QV_SIDE_RIGHT, QV_SCALE_LOG, 10, 1000);
  for (const int kind :
       {QV_LINE_LINE, QV_LINE_HISTOGRAM, QV_LINE_STATE, QV_LINE_BAND, QV_LINE_DOTS, QV_LINE_STEPS})
    below.line(falling, kind, kind == QV_LINE_BAND ? &rising : nullptr);
  below.line(falling, QV_LINE_BAND, &ones);
  below.line(ones, QV_LINE_BAND, &falling);
  const QvGraphShape shapes[] = {{QV_SHAPE_TREND_LINE, 2, 100, 9, 0, -1, 0, ""},
                                 {QV_SHAPE_RECTANGLE, 2, 100, 9, 0, -1, 0, ""},
                                 {QV_SHAPE_FIBONACCI, 2, 100, 9, 0, -100, 0, ""},
                                 {QV_SHAPE_TRADE, 2, -1, 0, 1, 0, 0, "x"},
                                 {QV_SHAPE_TEXT, 2, -1, 0, 0, 0, 0, "x"}};
  for (const QvGraphShape& s : shapes) EXPECT_GE(qvGraphShape(below, QV_GRAPH_NEW, 0, &s), 0);
  ASSERT_EQ(r.paint(below, 900, 600), 0);
  EXPECT_FALSE(r.text("x"));
  for (const Painted& p : r.of(Painted::Polygon)) EXPECT_TRUE(p.box.right < below.at(16, 100).x);
  for (const Painted& p : r.all)
    for (const QvPoint& q : p.points) ASSERT_TRUE(std::isfinite(q.x) && std::isfinite(q.y));
}

TEST(GraphAxes, RangesAndLevelsOfCalculationsAreInSight) {
  const Bars bars(walkBars(120));
  const Graph g(bars);
  const int rsi = g.formula("rsi(5)");
  Recording r;
  const auto heightOf = [&](double v) { return g.at(0, v, 1).y; };
  ASSERT_EQ(qvGraphScale(g, 1, QV_SIDE_RIGHT, QV_SCALE_LOG, 0, 0), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(std::isfinite(heightOf(70)));
  ASSERT_EQ(qvGraphScale(g, 1, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 0, 0), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  const double hundred = heightOf(100) - heightOf(0);
  // Another line that leaves the range makes the scale its own; on a logarithmic one only levels above 0
  // stand.
  Items beyond(120, 50.0);
  beyond[7] = 150;
  const Array line(beyond);
  ASSERT_GE(g.line(line, QV_LINE_LINE, nullptr, 1), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_GT(heightOf(100) - heightOf(0), hundred) << "nearer to each other";
  EXPECT_GT(heightOf(150), r.of(Painted::Line)[0].clip.top);
  beyond[7] = -20;
  const Array under(beyond);
  ASSERT_EQ(qvGraphLine(g, 1, 1, &under, nullptr, 0, 0, "", 0), 1);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_GT(heightOf(100) - heightOf(0), hundred);
  QvGraphStyle hidden{};
  hidden.hidden = 1;
  ASSERT_EQ(qvGraphStyle(g, rsi, 0, &hidden), 0);
  ASSERT_EQ(qvGraphLine(g, 1, 1, &bars.close, nullptr, 0, 0, "", 0), 1);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_GT(heightOf(70), 600) << "levels and range of what is hidden are of no interest";
  ASSERT_EQ(qvGraphRemove(g, rsi), 0);
  const int cci = qvGraphFormula(g, 1, "cci(20)", nullptr, 0);
  ASSERT_EQ(qvGraphScale(g, 1, QV_SIDE_RIGHT, QV_SCALE_LOG, 0, 0), 0);
  ASSERT_GE(cci, 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(std::isfinite(heightOf(100)));
  EXPECT_FALSE(std::isfinite(heightOf(-100)));
}

TEST(GraphAxes, NumbersAreWrittenShort) {
  const auto written = [](double v, double greatest, double step, bool percent = false) {
    char text[qv::charting::kNumberSize];
    qv::charting::writeNumber(text, v, qv::charting::formatFor(greatest, step), percent);
    return std::string(text);
  };
  EXPECT_EQ(written(2800, 3400, 200), "2800");
  EXPECT_EQ(written(0.25, 1, 0.05), "0.25");
  EXPECT_EQ(written(1.5e9, 6e9, 5e8), "1.5B");
  EXPECT_EQ(written(0, 6e9, 5e8), "0");
  EXPECT_EQ(written(-20, 40, 20, true), "-20%");
  EXPECT_EQ(written(2e20, 4e20, 1e20), "2e+20");
  EXPECT_EQ(written(1e300, 5, 1).size(), 6u) << "far beyond the scale";
  EXPECT_EQ(written(-9e26, 5e12, 1e-8), "-900000000000000.000000000000T") << "the longest";
}

// Bars at the dates, and the texts of their axis.
std::vector<std::string> labelsOf(const std::vector<double>& dates, double width = 900) {
  std::vector<Bar> bars;
  for (const double d : dates) bars.push_back({1, 2, 0.5, 1.5, 1, 0, d});
  const Bars set(bars);
  const Graph g(set);
  g.chart(QV_CHART_LINE);
  Recording r;
  EXPECT_EQ(r.paint(g, width, 300), 0);
  std::vector<std::string> labels;
  double last = -1e9;
  for (const Painted& p : r.of(Painted::Text)) {
    if (p.box.top < 276) continue;
    EXPECT_GE(p.box.left, last);
    last = p.box.right;
    labels.push_back(p.text);
  }
  return labels;
}

TEST(GraphAxes, DatesThinOutFromMinutesToDecades) {
  const double day = qvYMDtoDate(2020, 3, 2, 0, 0, 0);  // a Monday
  const auto every = [&](int count, double step) {
    std::vector<double> dates;
    for (int i = 0; i < count; ++i) {
      const double date = day + i * step;
      if (qvDayOfWeek(date) < 5) dates.push_back(date);
    }
    return dates;
  };
  using Labels = std::vector<std::string>;
  EXPECT_EQ(labelsOf(every(60, 1 / 1440.0)), (Labels{"2 Mar 2020", "00:10", "00:15", "00:20", "00:25",
                                                     "00:30", "00:35", "00:40", "00:45", "00:50", "00:55"}));
  const Labels hours = labelsOf(every(3 * 1440, 1 / 1440.0));
  EXPECT_NE(std::find(hours.begin(), hours.end(), "4 Mar"), hours.end());
  EXPECT_NE(std::find(hours.begin(), hours.end(), "12:00"), hours.end());
  const Labels weeks = labelsOf(every(60, 1));
  ASSERT_GE(weeks.size(), 6u);
  EXPECT_EQ(weeks[1], "16 Mar") << "Mondays, and no label for an empty week-end";
  const std::vector<double> winter = every(340, 1);
  const Labels turn = labelsOf({winter.end() - 50, winter.end()});
  EXPECT_EQ(std::count_if(turn.begin(), turn.end(), [](const auto& t) { return t.ends_with(" Jan 2021"); }),
            1)
      << "the year turned within a week";
  const Labels months = labelsOf(every(400, 1));
  EXPECT_EQ(months[0].substr(0, 3), "Apr");
  EXPECT_NE(std::find(months.begin(), months.end(), "2021"), months.end());
  const Labels years = labelsOf(every(365 * 90, 1));
  ASSERT_GE(years.size(), 8u);
  EXPECT_EQ(years[0], "2025");
  EXPECT_EQ(years[1], "2030");
  // Three bars a year, the first one's label within the picture.
  std::vector<double> yearly;
  for (int bar = 0; bar < 24; ++bar)
    yearly.push_back(qvYMDtoDate(2001 + bar / 3, 1 + 4 * (bar % 3), 2, 0, 0, 0));
  EXPECT_EQ(labelsOf(yearly), (Labels{"2001", "2002", "2003", "2004", "2005", "2006", "2007", "2008"}));
  // Days of one bar, whose labels would stand over each other: that of the month's turn stays.
  std::vector<double> uneven;
  const double march = qvYMDtoDate(2021, 3, 24, 0, 0, 0);
  for (int d = 0; d < 14; ++d)
    for (int bar = 0; bar < (d == 6 || d == 7 ? 1 : 30); ++bar)
      uneven.push_back(march + d + bar / 48.0 + 0.3);
  const Labels turned = labelsOf(uneven);
  EXPECT_NE(std::find(turned.begin(), turned.end(), "1 Apr 2021"), turned.end());
  EXPECT_EQ(std::find(turned.begin(), turned.end(), "31 Mar"), turned.end());
  EXPECT_EQ(std::find(turned.begin(), turned.end(), "30 Mar"), turned.end());
  // Sessions whose last bar begins a period of its own, in pictures of any width: labels never overlap.
  std::vector<double> sessions;
  for (int d = 0; d < 3; ++d)
    for (int bar = d == 0 ? 78 : 0; bar <= 78; ++bar)
      sessions.push_back(march + 20 + d + (570 + 5 * bar) / 1440.0);
  for (double width = 90; width < 700; width += 1) labelsOf(sessions, width);
  // A December of one bar behind a short November: the year is wider than its label.
  std::vector<double> gap;
  for (double date = qvYMDtoDate(2019, 6, 3, 0, 0, 0); date < qvYMDtoDate(2021, 3, 1, 0, 0, 0); date += 1)
    if (qvDayOfWeek(date) < 5 &&
        !(date > qvYMDtoDate(2019, 11, 25, 0, 0, 0) && date < qvYMDtoDate(2019, 12, 31, 0, 0, 0)))
      gap.push_back(date);
  for (double width = 700; width < 1000; width += 1) labelsOf(gap, width);
  // Hostile dates.
  for (const double d : {kNaN, kInf, -1e300, 1e300, -5.5, 0.0}) {
    labelsOf({d, d, d, day});
    labelsOf({day, d, day + 1, d, day - 5});
  }
}

TEST(GraphAxes, APixelsBarLiesUnderThePixel) {
  for (const int n : {1, 3, 250, 830}) {
    const Bars bars(walkBars(n));
    const Graph g(bars);
    g.chart(QV_CHART_CANDLES);
    for (const auto& [first, last] :
         std::vector<std::pair<int, int>>{{0, -1}, {-20, n + 5}, {n / 2, n - 1}}) {
      if (last >= first) {
        ASSERT_EQ(qvGraphRange(g, first, last), 0);
      }
      Recording r;
      ASSERT_EQ(r.paint(g, 1000, 400), 0);
      for (int bar = first; bar <= std::max(last, first); ++bar)
        for (const double price : {99.0, 101.0}) {
          const QvPoint p = g.at(bar, price);
          const QvGraphHit h = g.hit(p.x, std::clamp(p.y, 40.0, 300.0));
          EXPECT_EQ(h.bar, bar);
          if (p.y > 40 && p.y < 300) {
            EXPECT_NEAR(h.price[0], price, 1e-9);
          }
          EXPECT_NE(h.price[1], h.price[1]) << "no left scale";
        }
    }
    EXPECT_EQ(g.hit(-5, 100).bar, -1);
    EXPECT_EQ(g.hit(100, 1e6).subWindow, -1);
  }
}

TEST(GraphAxes, PercentagesCountFromTheFirstVisibleBar) {
  Bars bars(closingAt({1, 50, 75, 100}));
  const Array other({7, 10, 30, 5});
  const Graph g(bars);
  g.chart(QV_CHART_LINE);
  const int line = g.line(other);
  qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_PERCENT, 0, 0);
  ASSERT_EQ(qvGraphRange(g, 1, 3), 0);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("200%"));
  EXPECT_TRUE(r.text("100.0%")) << "the last close, marked";
  EXPECT_TRUE(r.text("-50.0%")) << "the last item, of its own base";
  EXPECT_EQ(g.hit(g.at(2, 0).x, g.at(2, 150).y).item, line) << "30 is 200% of 10, as 150 would be of 50";
  // A fixed range leaves room above what is there; a range of dates takes in the bars dated within.
  ASSERT_EQ(qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 0, 1000), 0);
  EXPECT_EQ(qvGraphRangeDates(g, 1, 2), -1) << "no bar: all dates are 0";
  EXPECT_EQ(qvGraphRangeDates(g, 0, 2), 0);
  for (int i = 0; i < 4; ++i) bars.date.data[i] = i;
  EXPECT_EQ(qvGraphRangeDates(g, 1, 2), 0);
  EXPECT_TRUE(g.g->first == 1 && g.g->last == 2);
  EXPECT_EQ(qvGraphRangeDates(g, 3, 9), 0);
  EXPECT_TRUE(g.g->first == 3 && g.g->last == 3);
  EXPECT_EQ(qvGraphRangeDates(g, 0, 2), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("800"));
  EXPECT_EQ(g.hit(20, 100).bar, 0);
}

}  // namespace
}  // namespace qvtest
