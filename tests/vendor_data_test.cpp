// The bundled vendor directories against the text file that they were made from.
#include <gtest/gtest.h>

#include <string>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

const std::string kData = QV_DATA_DIR;

struct Text : Bars {
  Text() { EXPECT_EQ(qvFILEread("TXT", this, (kData + "/text").c_str(), "SPX.CSV", 0, -1), 0); }
};

// The bars of one period of the text file, made anew from its days: those from `first` to `last`.
struct Stretch {
  int first, last;
};
std::vector<Stretch> stretches(const QvBars& text, char period, int lastYear) {
  std::vector<Stretch> found;
  int key = INT_MIN;
  for (int i = 0; i < text.barsize; ++i) {
    const double date = text.date.data[i];
    if (qvDatePart("Y", date) > lastYear) break;
    const int week = static_cast<int>(date) - qvDayOfWeek(date);
    const int now = period == 'D' ? i : period == 'W' ? week : qvDatePart("M", date);
    if (now != key) found.push_back({i, i});
    found.back().last = i;
    key = now;
  }
  return found;
}

// Compares what is read through the front with the text file. Fields are letters (O H L C V); the others
// must be 0. Prices are those of the text, times `scale`, to the nearest `tick`, or to single precision.
void expectLikeText(const char* type, const std::string& folder, const char* name, char period, int lastYear,
                    const std::string& fields, double tick = 0, double scale = 1) {
  SCOPED_TRACE(folder + " " + name);
  static const Text text;
  const auto expected = stretches(text, period, lastYear);
  const std::string directory = kData + "/" + folder;
  Bars bars;
  ASSERT_EQ(qvFILEread(type, &bars, directory.c_str(), name, 0, -1), 0);
  ASSERT_EQ(bars.barsize, static_cast<int>(expected.size()));
  EXPECT_EQ(bars.reccnt, bars.barsize);
  EXPECT_EQ(bars.frequency, period == 'D' ? 2 : period == 'W' ? 3 : 4);
  EXPECT_EQ(bars.begindate, bars.date.data[0]);
  EXPECT_EQ(bars.enddate, bars.date.data[bars.barsize - 1]);
  const auto has = [&](char f) { return fields.find(f) != fields.npos; };
  for (int i = 0; i < bars.barsize; ++i) {
    const auto [first, last] = expected[static_cast<std::size_t>(i)];
    EXPECT_EQ(bars.date.data[i], text.date.data[last]);
    double high = text.high.data[first], low = text.low.data[first], volume = 0;
    for (int k = first; k <= last; ++k) {
      high = std::max(high, text.high.data[k]);
      low = std::min(low, text.low.data[k]);
      volume += std::round(text.volume.data[k] / 1000);
    }
    const auto expectPrice = [&](char field, const QvArray& series, double price) {
      const double value = has(field) ? price * scale : 0.0;
      const double tolerance = tick > 0 ? tick / 2 + 1e-9 : std::fabs(value) * 6e-8;
      EXPECT_NEAR(series.data[i], value, tolerance) << field << i;
    };
    expectPrice('O', bars.open, text.open.data[first]);
    expectPrice('H', bars.high, high);
    expectPrice('L', bars.low, low);
    expectPrice('C', bars.close, text.close.data[last]);
    EXPECT_NEAR(bars.volume.data[i], has('V') ? volume : 0.0, volume * 6e-8);
    EXPECT_EQ(bars.openInterest.data[i], 0.0);
  }
  double found;
  const int middle = bars.barsize / 2;
  EXPECT_EQ(qvFILEfindrec(type, directory.c_str(), name, bars.date.data[middle], &found), middle);
  EXPECT_EQ(found, bars.date.data[middle]);
}

TEST(VendorData, AgreesWithTheTextFile) {
  expectLikeText("CT", "computrac", "spx", 'D', 2000, "OHLCV");
  expectLikeText("CT", "computrac", "SPX HLC", 'D', 2000, "HLCV");
  expectLikeText("CT", "computrac", "SPXW@W", 'W', 2002, "OHLCV");
  expectLikeText("CT", "computrac", "f256.mwd", 'M', 2019, "OHLCV");
  const std::string formats[] = {"VHLC", "C", "VC", "HLC", "VHLC", "HLCO", "HLCO", "VHLCO", "VHLCO", "V"};
  for (int k = 0; k < 10; ++k)
    expectLikeText("DJ", "dowjones", ("spx" + std::to_string(k)).c_str(), k == 8 ? 'W' : 'D',
                   k == 8 ? 2002 : 2000, formats[k]);
  expectLikeText("TC", "telechart", "SPX", 'D', 2000, "OHLCV");
  expectLikeText("TC", "telechart", "spxw.ndx", 'W', 2002, "OHLCV");
  expectLikeText("TC", "telechart", "spxm", 'M', 2019, "OHLCV");
  expectLikeText("TT", "techtools", "SPX", 'D', 2000, "OHLCV", 0.1);
  expectLikeText("TT", "techtools", "SPXW", 'W', 2002, "OHLCV", 1);
  expectLikeText("TT", "techtools", "SPXQ", 'D', 2000, "OHLCV", 0.25);
  expectLikeText("TT", "techtools", "SPXN", 'D', 2000, "OHLCV", 0.05);
  expectLikeText("TT", "techtools", "XSP", 'D', 2000, "OHLCV", 0.01, 0.1);
}

TEST(VendorData, IsListed) {
  const ScratchDir dir;
  for (const auto& [type, folder, securities] : {std::tuple{"CT", "computrac", 4},
                                                 {"DJ", "dowjones", 10},
                                                 {"TC", "telechart", 3},
                                                 {"TT", "techtools", 5}}) {
    ASSERT_EQ(qvFILElist(type, (kData + "/" + folder).c_str(), (dir / "list").c_str(), 0), 0);
    const std::string lines = linesOfListing(dir);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), securities) << folder;
    EXPECT_EQ(lines.find("Unknown"), lines.npos) << folder;
  }
}

}  // namespace
