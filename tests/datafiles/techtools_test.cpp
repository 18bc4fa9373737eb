// TechTools: the price formats.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

std::string quarters(char field, double value) {
  const bool isPrice = std::string("OHLC").find(field) != std::string::npos;
  return little(static_cast<int>(isPrice ? 4 * value : value), field == 'V' || field == 'I' ? 3 : 2);
}

std::string techToolsFile(int records, int step) {
  return little(-12, 2) + gap(14) + recordsOf("DOHLCVI", records, step, quarters);
}

struct TechTools : VendorTest {
  TechTools() : VendorTest(kFormat) {}
  inline static const VendorFormat& kFormat = vendorFormat(
      "TechTools", "TT", qvTTread, qvTTfindrec, qvTTlist, Files{}, "ACME.TTD", "DOHLCVI",
      [](int step) { return techToolsFile(6, step); }, "ACME", "Intraday");

  double price(int code, int stored, const char* name = "A.TTD") {
    const std::string v = little(stored, 2);
    dir.write(name, little(code, 2) + gap(14) + little(65535, 2) + v + v + v + v + little(0x030201, 3) +
                        little(0xFEFFFF, 3));
    EXPECT_EQ(read(name), 0);
    const double p = qvGetArrayItem(&bars.open, 0);
    EXPECT_EQ(barOf(bars, 0), (Items{65535, p, p, p, p, 197121, 16711679}));
    return p;
  }
};

TEST_F(TechTools, DecodesEveryPriceFormat) {
  double ten = 1, two = 1;
  for (int code = 0; code <= 5; ++code, ten *= 10) EXPECT_EQ(price(code, 12345), 12345 / ten) << code;
  for (int k = 1; k <= 9; ++k) {
    two *= 2;
    EXPECT_EQ(price(-10 - k, 101), 101 / two) << k;
    const int whole = k <= 3 ? 10 : k <= 6 ? 100 : 1000;  // one to three digits of parts
    EXPECT_EQ(price(-k, 12 * whole + 3), 12 + 3 / two) << k;
  }
  const std::tuple<int, int, double> prices[] = {
      {-3, 1234, 123.5},   {-9, 12256, 12.5}, {-9, 65535, 65 + 535 / 512.0},
      {10, 65535, 655350}, {-22, 1, 0.05},    {-24, 1, 0.025},
      {-25, 1, 0.02},      {-32, 250, 1.25},  {-34, 250, 0.625},
      {-35, 250, 0.5}};
  for (const auto& [code, stored, expected] : prices) EXPECT_EQ(price(code, stored), expected) << code;
  for (const int code : {6, 9, 11, -10, -20, -21, -23, -26, -31, -33, -36, 32767, -32768})
    EXPECT_EQ(price(code, 12345), 0.0) << code;
}

TEST_F(TechTools, AddsTheHalfTickOfSomeMarkets) {
  for (const char* name : {"LC_Z.TTD", "fc_.ttd", "Lh_9.TTD", "PB_X.ttd"}) {
    EXPECT_EQ(price(2, 12342, name), 123.42 + 0.004999999888241291) << name;
    EXPECT_EQ(price(2, 12345, name), 123.45);
    EXPECT_EQ(price(3, 12342, name), 12.342) << "only hundredths";
  }
  for (const char* name : {"LC.TTD", "LCX_.TTD", "XC_.TTD", "L.TTD"})
    EXPECT_EQ(price(2, 12342, name), 123.42) << name;
}

}  // namespace
