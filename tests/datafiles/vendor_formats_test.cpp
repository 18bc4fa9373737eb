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
  expectBar(3, expectedBar(vendor.fields, 5));
}

TEST_P(EveryVendorFormat, FillsTheBarInformation) {
  fillWithOldFile(bars, 3);
  ASSERT_EQ(vendor.read(&bars, (" " + path + "\t").c_str(), "ACME", 1, 0), 0);
  EXPECT_EQ(bars.filetype, qvFILEtype(vendor.type));
  ASSERT_EQ(qvFILEprintinfo(&bars, list.c_str(), 0), 0);
  const std::string info = dir.read("list");
  EXPECT_EQ(info.substr(0, info.find("\nfiletype ")),
            "barsize      0\ndatasize     3\nreccnt       6\npath         " + path + "\nname         " +
                vendor.dataFile + "\nsymbol       ACME\ndescription  " + vendor.description + vendor.cusip +
                "\nbegindate    2000/01/03\nenddate      2000/01/08\nfrequency    " + vendor.frequency +
                "\ndatatype     " + vendor.dataType);
}

TEST_P(EveryVendorFormat, TakesTheRecordRange) {
  expectRecordRange(reader, series);
  dir.write(vendor.dataFile, vendor.data(1) + "rest");  // of a broken record
  expectRecordRange(reader, series);
}

TEST_P(EveryVendorFormat, FindsTheRecordOfADateOrTheNextOne) {
  dir.write(vendor.dataFile, vendor.data(3));
  constexpr double m = kMonday;
  expectFindings(finder, {{m, 0, m},
                          {m + 1, 1, m + 3},
                          {m + 10, 4, m + 12},
                          {m + 15, 5, m + 15},
                          {m - 1, -9, 0},
                          {m + 16, -9, 0},
                          {kNaN, -9, 0}});
  EXPECT_EQ(qvFILEfindrec(vendor.type, path.c_str(), "acme", m + 8, nullptr), 3);
}

TEST_P(EveryVendorFormat, FindsInAFileThatIsNewestFirst) {
  dir.write(vendor.dataFile, vendor.data(-3));
  constexpr double m = kMonday;
  expectFindings(finder, {{m, 0, m},
                          {m - 1, 0, m},
                          {m - 3, 1, m - 3},
                          {m - 10, 3, m - 9},
                          {m - 15, 5, m - 15},
                          {m - 16, -9, 0},
                          {m + 1, -9, 0},
                          {kNaN, -9, 0}});
}

TEST_P(EveryVendorFormat, IsListed) {
  const std::string line = padded(vendor.dataFile, 13) + padded("ACME", 17) + padded(vendor.description, 49) +
                           padded(vendor.frequency, 10) + "2000/01/03 2000/01/08\n";
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

TEST(VendorData, AgreesWithTheTextFile) {
  const std::string data = QV_DATA_DIR "/";
  Bars text, expected;
  ASSERT_EQ(qvFILEread("TXT", &text, (data + "text").c_str(), "SPX.CSV", 0, -1), 0);
  ASSERT_EQ(qvGroupBarsDate(&text, &expected, 2, 0, qvYMDtoDate(2000, 12, 31, 0, 0, 0)), 0);
  // Prices in TechTools files are rounded to tenths, the others and the volumes to single precision.
  for (const auto& [type, folder, name] : {std::tuple{"CT", "computrac", "spx"},
                                           {"DJ", "dowjones", "spx7"},
                                           {"TC", "telechart", "SPX"},
                                           {"TT", "techtools", "SPX"}}) {
    Bars bars;
    ASSERT_EQ(qvFILEread(type, &bars, (data + folder).c_str(), name, 0, -1), 0);
    ASSERT_EQ(itemsOf(bars.date), itemsOf(expected.date)) << type;
    EXPECT_EQ(bars.frequency, 2);
    for (int i = 0; i < bars.barsize; ++i)
      for (int k = 1; k <= 5; ++k) {
        const double stored = qv::seriesOf(expected, k).data[i],
                     value = k == 5 ? std::round(stored / 1000) : stored;
        const double tolerance = k < 5 && type == std::string("TT") ? 0.05 + 1e-9 : value * 6e-8;
        EXPECT_NEAR(qv::seriesOf(bars, k).data[i], value, tolerance) << type << k << ' ' << i;
      }
  }
}

}  // namespace
