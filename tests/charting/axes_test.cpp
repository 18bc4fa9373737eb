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
}

// Bars at the dates, and the texts of their axis.
std::vector<std::string> labelsOf(const std::vector<double>& dates) {
  std::vector<Bar> bars;
  for (const double d : dates) bars.push_back({1, 2, 0.5, 1.5, 1, 0, d});
  const Bars set(bars);
  const Graph g(set);
  g.chart(QV_CHART_LINE);
  Recording r;
  EXPECT_EQ(r.paint(g, 900, 300), 0);
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
  const Bars bars(closingAt({1, 50, 75, 100}));
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
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("800"));
  EXPECT_EQ(g.hit(20, 100).bar, 0);
}

}  // namespace
}  // namespace qvtest
