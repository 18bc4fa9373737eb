// What the readers of all vendor formats promise alike, over one directory of each; the bundled directories.
#include <gtest/gtest.h>

#include "datafiles/bar_info.h"
#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

class EveryVendorFormat : public VendorTest, public testing::WithParamInterface<VendorFormat> {
 protected:
  EveryVendorFormat() : VendorTest(GetParam()) {
    for (const auto& [name, bytes] : vendor.directory) dir.write(name, bytes);
    dir.write(vendor.dataFile, vendor.data(1));
  }
  const Read reader = [this](QvBars* b, int start, int count) {
    return vendor.read(b, path.c_str(), "ACME", start, count);
  };
};

TEST_P(EveryVendorFormat, ReadsItsBars) {
  expectBars(vendor.fields, 6);
  ASSERT_EQ(qvFILEread(vendor.type, &bars, path.c_str(), "acme", 2, -1), 0);
  EXPECT_EQ(barOf(bars, 3), expectedBar(vendor.fields, 5));
}

TEST_P(EveryVendorFormat, FillsTheBarInformation) {
  Bars expected;
  fillWithOldFile(bars, 3);
  expected.reccnt = 6;
  std::strcpy(expected.path, path.c_str());
  std::strcpy(expected.name, vendor.dataFile);
  std::strcpy(expected.description, vendor.description);
  std::strcpy(expected.symbol, "ACME");
  std::strcpy(expected.cusip, vendor.cusip);
  expected.begindate = kMonday;
  expected.enddate = kMonday + 5;
  expected.filetype = qvFILEtype(vendor.type);
  expected.frequency = vendor.frequency;
  expected.datatype = vendor.dataType;
  ASSERT_EQ(vendor.read(&bars, (" " + path + "\t").c_str(), "ACME", 1, 0), 0);
  EXPECT_EQ(bars.barsize, 0);
  EXPECT_EQ(infoBytes(bars), infoBytes(expected));
}

TEST_P(EveryVendorFormat, TakesTheRecordRange) {
  expectRecordRange(reader);
  dir.write(vendor.dataFile, vendor.data(1) + "rest");  // of a broken record
  expectRecordRange(reader);
}

TEST_P(EveryVendorFormat, FindsTheRecordOfADateOrTheNextOne) {
  dir.write(vendor.dataFile, vendor.data(3));
  constexpr double m = kMonday;
  const std::vector<Finding> findings = {
      {m, 0, m},      {m + 1, 1, m + 3}, {m + 3, 1, m + 3}, {m + 10, 4, m + 12}, {m + 15, 5, m + 15},
      {m - 1, -9, 0}, {m + 16, -9, 0},   {-1e300, -9, 0},   {1e300, -9, 0},      {kNaN, -9, 0}};
  expectFindings(finder, findings);
  EXPECT_EQ(qvFILEfindrec(vendor.type, path.c_str(), "acme", m + 8, nullptr), 3);
}

TEST_P(EveryVendorFormat, IsListed) {
  const std::string line = padded(vendor.dataFile, 13) + padded("ACME", 17) + padded(vendor.description, 49) +
                           (vendor.frequency == 1 ? "Intraday" : "Daily   ") + "  2000/01/03 2000/01/08\n";
  const std::string once = listed();
  EXPECT_TRUE(once.ends_with(line)) << once;
  EXPECT_EQ(listed(), once);
  EXPECT_TRUE(listed(0, 1).starts_with(once + "File Name "));
  EXPECT_EQ(vendor.list(path.c_str(), path.c_str(), 0), -2);
}

TEST_P(EveryVendorFormat, AnswersWhatIsMissing) {
  for (const std::string& name : {std::string("NONE"), std::string(""), std::string(5000, 'x')})
    EXPECT_EQ(status(name.c_str()), vendor.directory.empty() ? -2 : -8);
  std::filesystem::remove(dir / vendor.dataFile);
  EXPECT_EQ(status(), -2);
  std::filesystem::create_directory(dir / vendor.dataFile);
  EXPECT_EQ(status(), -2);
  EXPECT_EQ(bars.date.data, nullptr);
  for (const int answer :
       {vendor.read(nullptr, "", "a", 0, 1), vendor.read(&bars, nullptr, "a", 0, 1),
        vendor.read(&bars, "", nullptr, 0, 1), vendor.find(nullptr, "a", 1, nullptr),
        vendor.find("", nullptr, 1, nullptr), vendor.list(nullptr, "STDOUT", 0), vendor.list("", nullptr, 0)})
    EXPECT_EQ(answer, -1);
}

TEST_P(EveryVendorFormat, SurvivesDamagedFiles) {
  std::vector<std::string> names{vendor.dataFile};
  for (const auto& [name, bytes] : vendor.directory) names.push_back(name);
  for (const std::string& name : names)
    withDamage(dir, name, [&] {
      expectSurvives(reader, finder);
      std::filesystem::remove(list);
      EXPECT_GE(vendor.list(path.c_str(), list.c_str(), 0), -4);
    });
}

TEST_P(EveryVendorFormat, AnswersExhaustedMemory) {
  expectAnswersExhaustedMemory("read", [&] { return read(); });
  expectAnswersExhaustedMemory("list", [&] { return vendor.list(path.c_str(), list.c_str(), 0); });
  if (!vendor.directory.empty()) expectAnswersExhaustedMemory("find", [&] { return find(kMonday); });
}

INSTANTIATE_TEST_SUITE_P(, EveryVendorFormat, testing::ValuesIn(vendorFormats()),
                         testing::PrintToStringParamName());

TEST(FileFrequency, FollowsFromTheRecordsPerDay) {
  // Records in the 1000 days from the first date to the last.
  const std::pair<int, int> frequencies[] = {{1001, 1}, {1000, 2}, {661, 2}, {660, 3}, {131, 3}, {130, 4},
                                             {31, 4},   {30, 5},   {10, 5},  {9, 6},   {3, 6},   {2, 0}};
  for (const auto& [records, frequency] : frequencies)
    EXPECT_EQ(qv::datafiles::frequencyOf(records, kMonday, kMonday + 1000), frequency) << records;
  EXPECT_EQ(qv::datafiles::frequencyOf(50, kMonday, kMonday), 0);
  EXPECT_EQ(qv::datafiles::frequencyOf(50, kMonday, kMonday - 49), 0) << "backwards";
}

// ---- The bundled directories against the text file that they were made from

const std::string kData = QV_DATA_DIR "/";

// Type, directory, security, frequency, fields (the others are 0), and the ticks to which prices are rounded;
// 0: to single precision.
const std::tuple<const char*, std::string, std::string, int, std::string, double> kFiles[] = {
    {"CT", "computrac", "SPX HLC", 2, "HLCV", 0},   {"CT", "computrac", "SPXW@W", 3, "OHLCV", 0},
    {"CT", "computrac", "f256.mwd", 4, "OHLCV", 0}, {"DJ", "dowjones", "spx7", 2, "OHLCV", 0},
    {"DJ", "dowjones", "spx8", 3, "OHLCV", 0},      {"TC", "telechart", "spxm", 4, "OHLCV", 0},
    {"TT", "techtools", "SPXQ", 2, "OHLCV", 0.25},  {"TT", "techtools", "XSP", 2, "OHLCV", 0.01}};

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
