// Dow Jones directories: lookup, record formats, and what the directory tells of a file.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

constexpr int kDayZero = 7305;

struct Entry {
  std::string symbol = "ACME";
  char type = 'S', format = '7';
  std::string description = "Acme Industries";
  char period = 'D';
  int records = 6;
  int first = kMonday, last = kMonday + 5;
};

std::string mapinfo(const std::vector<Entry>& entries, int more = 0) {
  std::string file = gap(45) + little(static_cast<int>(entries.size()) + more, 2) + gap(24);
  for (const Entry& e : entries)
    file += padded(e.symbol, 8) + e.type + gap(1) + e.format + gap(1) + little(e.first - kDayZero, 2) +
            little(e.last - kDayZero, 2) + gap(4) + padded(e.description, 15) + gap(10) +
            little(e.records, 2) + e.period + gap(13) + "004764106" + gap(1);
  return file;
}

std::string dataFile(const std::string& fields, int records, int step = 1) {
  return recordsOf(fields, records, step, [](char f, double value) {
    if (f == 'D') return little(static_cast<int>(value) - kDayZero, 2);
    return f == 'V' || f == 'I' ? little(static_cast<int>(value), 4) : ieee(value);
  });
}

struct DowJones : VendorTest {
  DowJones() : VendorTest(kFormat) {}
  inline static const VendorFormat& kFormat = vendorFormat(
      "DowJones", "DJ", qvDJread, qvDJfindrec, qvDJlist, Files{{"mapinfo.dat", mapinfo({{"OTHER"}, {}})}},
      "ACME.SQD", "DOHLCV", [](int step) { return dataFile("DVHLCO", 6, step); }, "Acme Industries", "Daily",
      "Stock", "\ncusip        004764106");

  void writeDirectory(const std::vector<Entry>& entries) const { dir.write("Mapinfo.DAT", mapinfo(entries)); }
};

TEST_F(DowJones, KnowsTypesPeriodsAndTenRecordFormats) {
  const std::tuple<char, const char*, char, int, char, int> kinds[] = {
      {'0', "DVHLC", 'B', 1, 'D', 2},  {'1', "DC", 'T', 1, 'W', 3},     {'2', "DVC", 'V', 2, 'M', 4},
      {'3', "DHLC", 'M', 3, 'd', 0},   {'4', "DVHLC", 'O', 4, 'Q', 0},  {'5', "DHLCO", 'S', 5, 'D', 2},
      {'6', "DIHLCO", 'W', 6, 'D', 2}, {'7', "DVHLCO", 'X', 6, 'D', 2}, {'8', "DIVHLCO", 'Y', 6, 'D', 2},
      {'9', "DIV", 'b', 0, 'M', 4}};
  for (const auto& [format, fields, type, dataType, period, frequency] : kinds) {
    writeDirectory({{"ACME", type, format, "", period}});
    dir.write(std::string("Acme.") + type + "q" + period, dataFile(fields, 6));
    expectBars(fields, 6);
    EXPECT_EQ(bars.frequency, frequency) << period;
    EXPECT_EQ(bars.datatype, dataType) << type;
  }
  for (const char format : {'/', ':', '\0', '\xFF'}) {
    writeDirectory({{"ACME", 'S', format}});
    EXPECT_EQ(status(), -4) << format;
  }
}

TEST_F(DowJones, OpensNoFileOfAnotherDirectory) {
  for (const std::string symbol : {"../ACME", "sub\\A", "c:A"}) {
    writeDirectory({{symbol}});
    dir.write("sub\\A.SQD", vendor.data(1));
    EXPECT_EQ(status("Acme Industries"), -2) << symbol;
  }
}

TEST_F(DowJones, StoresUnsignedDaysAndSignedVolumes) {
  writeDirectory({{"ACME", 'S', '2', "", 'D', 3, kDayZero, kDayZero + 65535}});
  dir.write("ACME.SQD", little(0, 2) + little(-5, 4) + ieee(1) + little(32000, 2) + little(INT_MAX, 4) +
                            ieee(-1e30) + little(65535, 2) + little(INT_MIN, 4) + ieee(0.1));
  ASSERT_EQ(read(), 0);
  EXPECT_EQ(itemsOf(bars.date), (Items{7305, 39305, 72840}));
  EXPECT_EQ(itemsOf(bars.volume), (Items{-5, INT_MAX, INT_MIN}));
  EXPECT_EQ(itemsOf(bars.close), (Items{1, -1e30f, 0.1f}));
  EXPECT_EQ((Items{bars.begindate, bars.enddate}), (Items{7305, 72840}));
}

TEST_F(DowJones, FindsASecurityByItsNames) {
  writeDirectory({{"ACME", 'B', '1', "Bond"},
                  {"ACME", 'S', '1', "Stock", 'W'},
                  {"acme", 'S', '1', "stock"},
                  {"12345678", 'M', '1', "Fifteen letters"},
                  {"A1B2", 'O', '1', "123456789012345"},
                  {"LC", 'v', '1', "Cattle"}});
  expectNames({{"ACME.BQD", {"acme", "Acme."}},
               {"ACME.SQW", {"ACME.s", "acme. xw", "acme.S?", "STOCK"}},
               {"acme.SQD", {"ACME.SQD", "acme.sxd", "stock. QD"}},
               {"12345678.MQD", {"+<>|=;\\/", "FIFTEEN LETTERS"}},
               {"A1B2.OQD", {"A+B+", "A/B\\", "+++++++++++++++"}},  // 0 follows 9
               {"", {"a1b+", "acme.M", "acme.SQM", "12345678 ", "LC.V"}}});
}

TEST_F(DowJones, CountsByTheDirectoryAndGoesOnToTheEndOfTheFile) {
  writeDirectory({{}});
  dir.write("ACME.SQD", dataFile("DVHLCO", 9));  // three records that the directory does not know
  ASSERT_EQ(read("ACME", 4, 100), 0);
  EXPECT_EQ(itemsOf(bars.close), (Items{5, 6, 7, 8, 9}));
  EXPECT_EQ(bars.reccnt, 6);
  ASSERT_EQ(read("ACME", -1, 2), 0);
  EXPECT_EQ(itemsOf(bars.close), (Items{5, 6}));
  EXPECT_EQ(find(kMonday + 6), -9);
  dir.write("ACME.SQD", dataFile("DVHLCO", 5));
  EXPECT_EQ(find(kMonday + 5), -4);
  writeDirectory({{"ACME", 'S', '7', "", 'D', -1}});
  EXPECT_EQ(status(), -9);
}

TEST_F(DowJones, AnswersADamagedDirectory) {
  EXPECT_EQ(status(), -2);
  EXPECT_EQ(listed(-2), "");
  dir.write("mapinfo.dat", std::string(70, '\0'));
  EXPECT_EQ(status(), -4);
  dir.write("mapinfo.dat", mapinfo({{}}, 1));
  EXPECT_EQ(status(), -2) << "found, but without a data file";
  EXPECT_EQ(status("OTHER"), -4);
  EXPECT_TRUE(listed(-4).starts_with("ACME.SQD     ACME             Acme Industries "));
}

}  // namespace
