// TeleChart files: header and records.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

std::string dataFile(int records, int step, const std::string& description = "Acme Industries") {
  return padded(description, 22) + gap(26) + recordsOf("DHLCVO", records, step, mbfField);
}

struct TeleChart : VendorTest {
  TeleChart() : VendorTest(kFormat) {}
  inline static const VendorFormat& kFormat = vendorFormat(
      "TeleChart", "TC", qvTCread, qvTCfindrec, qvTClist, Files{}, "ACME.NDX", "DOHLCV",
      [](int step) { return dataFile(6, step); }, "Acme Industries", "Intraday");
};

TEST_F(TeleChart, FindsFilesByTheirNames) {
  dir.write("LONGNAMEOFIT.NDX", dataFile(12, 1, std::string(22, 'd')));
  dir.write("other", dataFile(1, 1));
  ASSERT_EQ(read(" LongNameOfIt \t", 10, 1), 0);
  EXPECT_STREQ(bars.name, "LongNameOfIt.ND") << "fifteen characters";
  EXPECT_STREQ(bars.symbol, "LongNameOfIt");
  EXPECT_EQ(bars.description, std::string(22, 'd'));
  EXPECT_EQ(bars.begindate, kMonday + 10) << "of the first bar read";
  EXPECT_EQ(bars.enddate, kMonday + 11);
  EXPECT_EQ(status("longnameofit.ndx"), 0);
  for (const char* name : {"other", "LONGNAMEOFIT.", "."}) EXPECT_EQ(status(name), -2) << name;
}

TEST_F(TeleChart, ReadsShortFiles) {
  for (const auto& [size, answer] : {std::pair{72, 0}, {48, -9}, {71, -9}, {47, -4}}) {
    dir.write("ACME.NDX", dataFile(1, 1).substr(0, static_cast<std::size_t>(size)));
    EXPECT_EQ(status(), answer) << size;
    EXPECT_EQ(read("ACME", -1, -1), answer == -4 ? -4 : 0) << size;
  }
}

TEST_F(TeleChart, ListsFilesInNameOrder) {
  dir.write("b.ndx", dataFile(8, 1, "Beta"));
  dir.write("A.NDX", dataFile(3, 31));
  dir.write("c.NDX", "too short");
  EXPECT_EQ(listed(), padded("A.NDX        A                Acme Industries", 79) +
                          "Monthly   2000/01/03 2000/03/05\n" +
                          padded("b.ndx        b                Beta", 79) +
                          "Intraday  2000/01/03 2000/01/10\n" + padded("c.NDX        c", 79) +
                          "Unknown   Unknown    Unknown\n");
}

}  // namespace
