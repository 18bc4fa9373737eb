// The bundled vendor directories against the text file that they were made from.
#include <gtest/gtest.h>

#include "support/vendor_files.h"

namespace {

using namespace qvtest;

const std::string kData = QV_DATA_DIR "/";

// Type, directory, security, frequency, fields (the others are 0), and the ticks to which prices are rounded;
// 0: to single precision.
const std::tuple<const char*, std::string, std::string, int, std::string, double> kFiles[] = {
    {"CT", "computrac", "spx", 2, "OHLCV", 0},     {"CT", "computrac", "SPX HLC", 2, "HLCV", 0},
    {"CT", "computrac", "SPXW@W", 3, "OHLCV", 0},  {"CT", "computrac", "f256.mwd", 4, "OHLCV", 0},
    {"DJ", "dowjones", "spx0", 2, "VHLC", 0},      {"DJ", "dowjones", "spx1", 2, "C", 0},
    {"DJ", "dowjones", "spx2", 2, "VC", 0},        {"DJ", "dowjones", "spx3", 2, "HLC", 0},
    {"DJ", "dowjones", "spx4", 2, "VHLC", 0},      {"DJ", "dowjones", "spx5", 2, "HLCO", 0},
    {"DJ", "dowjones", "spx6", 2, "HLCO", 0},      {"DJ", "dowjones", "spx7", 2, "OHLCV", 0},
    {"DJ", "dowjones", "spx8", 3, "OHLCV", 0},     {"DJ", "dowjones", "spx9", 2, "V", 0},
    {"TC", "telechart", "SPX", 2, "OHLCV", 0},     {"TC", "telechart", "spxw.ndx", 3, "OHLCV", 0},
    {"TC", "telechart", "spxm", 4, "OHLCV", 0},    {"TT", "techtools", "SPX", 2, "OHLCV", 0.1},
    {"TT", "techtools", "SPXW", 3, "OHLCV", 1},    {"TT", "techtools", "SPXQ", 2, "OHLCV", 0.25},
    {"TT", "techtools", "SPXN", 2, "OHLCV", 0.05}, {"TT", "techtools", "XSP", 2, "OHLCV", 0.01}};

TEST(VendorData, AgreesWithTheTextFile) {
  Bars text;
  ASSERT_EQ(qvFILEread("TXT", &text, (kData + "text").c_str(), "SPX.CSV", 0, -1), 0);
  for (int i = 0; i < text.barsize; ++i) text.volume.data[i] = std::round(text.volume.data[i] / 1000);
  for (const auto& [type, folder, name, frequency, fields, tick] : kFiles) {
    SCOPED_TRACE(folder + " " + name);
    Bars bars, expected;
    const double last = qvYMDtoDate(frequency == 2 ? 2000 : frequency == 3 ? 2002 : 2019, 12, 31, 0, 0, 0);
    ASSERT_EQ(qvGroupBarsDate(&text, &expected, frequency, 0, last), 0);
    ASSERT_EQ(qvFILEread(type, &bars, (kData + folder).c_str(), name.c_str(), 0, -1), 0);
    ASSERT_EQ(itemsOf(bars.date), itemsOf(expected.date));
    EXPECT_EQ(bars.frequency, frequency);
    EXPECT_EQ(bars.enddate, bars.date.data[bars.barsize - 1]);
    for (int i = 0; i < bars.barsize; ++i)
      for (int k = 1; k < 7; ++k) {
        const bool isPrice = k <= 4, isStored = fields.find("-OHLCVI"[k]) != fields.npos;
        const double scale = !isStored ? 0 : isPrice && name == "XSP" ? 0.1 : 1;
        const double value = qv::seriesOf(expected, k).data[i] * scale;
        const double tolerance = isPrice && tick > 0 ? tick / 2 + 1e-9 : value * 6e-8;
        EXPECT_NEAR(qv::seriesOf(bars, k).data[i], value, tolerance) << k << ' ' << i;
      }
  }
}

}  // namespace
