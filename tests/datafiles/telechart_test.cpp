// TeleChart: file names, listings and what its records do not have.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

std::string teleChartFile(int records, int step, const std::string& description = "Acme Industries") {
  return padded(description, 22) + gap(26) + recordsOf("DHLCVO", records, step, mbfField);
}

struct TeleChart : VendorTest {
  TeleChart() : VendorTest(kFormat) {}
  inline static const VendorFormat& kFormat = vendorFormat(
      "TeleChart", "TC", qvTCread, qvTCfindrec, qvTClist, Files{}, "ACME.NDX", "DOHLCV",
      [](int step) { return teleChartFile(6, step); }, "Acme Industries", "Intraday");
};

TEST_F(TeleChart, LeavesTheOpenInterestAsItIs) {
  dir.write("ACME.NDX", vendor.data(1));
  ASSERT_EQ(read(), 0);
  EXPECT_EQ(itemsOf(bars.openInterest), Items(6, 0.0)) << "of a new set";
  qvFreeBars(&bars);
  fillWithOldFile(bars, 6);
  ASSERT_EQ(qvTCread(&bars, path.c_str(), "ACME", 0, -1), 0);
  EXPECT_EQ(itemsOf(bars.openInterest), Items(6, 777.0));
}

TEST_F(TeleChart, FindsFilesByTheirNames) {
  dir.write("LONGNAMEOFIT.NDX", teleChartFile(4000, 1, std::string(22, 'd')));
  dir.write("other", teleChartFile(1, 1));
  ASSERT_EQ(read(" LongNameOfIt \t", 10, 1), 0);
  EXPECT_STREQ(bars.name, "LongNameOfIt.ND") << "fifteen characters";
  EXPECT_STREQ(bars.symbol, "LongNameOfIt");
  EXPECT_EQ(bars.description, std::string(22, 'd'));
  EXPECT_EQ(bars.begindate, kMonday + 10) << "of the first bar read";
  EXPECT_EQ(bars.enddate, kMonday + 3999);
  EXPECT_EQ(status("longnameofit.ndx"), 0);
  EXPECT_EQ(barOf(bars, 3999), expectedBar("DOHLCV", 3999)) << "beyond the first block";
  for (const char* name : {"other", "LONGNAMEOFIT.", "."}) EXPECT_EQ(status(name), -2) << name;
}

TEST_F(TeleChart, ListsFilesInNameOrder) {
  dir.write("b.ndx", teleChartFile(8, 1, "Beta"));
  dir.write("A.NDX", teleChartFile(3, 31));
  dir.write("c.NDX", "too short");
  EXPECT_EQ(listed(), padded("A.NDX        A                Acme Industries", 79) +
                          "Monthly   2000/01/03 2000/03/05\n" +
                          padded("b.ndx        b                Beta", 79) +
                          "Intraday  2000/01/03 2000/01/10\n" + padded("c.NDX        c", 79) +
                          "Unknown   Unknown    Unknown\n");
}

}  // namespace
