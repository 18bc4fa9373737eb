// A file for each security and no directory file: TechTools and TeleChart.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

TEST(SecurityFiles, MayEndInTheirHeaderOrFirstRecord) {
  const ScratchDir dir;
  const std::tuple<const char*, const char*, int, int> sizes[] = {
      {"TT", "a.ttd", 1, -4},  {"TT", "a.ttd", 2, -9},  {"TT", "a.ttd", 31, -9}, {"TT", "a.ttd", 32, 0},
      {"TC", "a.ndx", 47, -4}, {"TC", "a.ndx", 48, -9}, {"TC", "a.ndx", 71, -9}, {"TC", "a.ndx", 72, 0}};
  for (const auto& [type, file, size, answer] : sizes) {
    Bars bars;
    dir.write(file, std::string(static_cast<std::size_t>(size), '\0'));
    EXPECT_EQ(qvFILEread(type, &bars, dir.path().c_str(), "a", 0, -1), answer) << type << size;
    EXPECT_EQ(qvFILEfindrec(type, dir.path().c_str(), "a", 0, nullptr), answer) << "a date as of no record";
    EXPECT_EQ(qvFILEread(type, &bars, dir.path().c_str(), "a", -1, -1), answer == -4 ? -4 : 0);
  }
}

TEST(SecurityFiles, OfMoreRecordsThanAnyMarketHadAreNone) {
  const ScratchDir dir;
  for (const auto& [type, file, size] : {std::tuple{"TT", "a.ttd", 16}, {"TC", "a.ndx", 24}}) {
    dir.write(file, std::string(100, '\0'));
    for (const auto& [records, answer] : {std::pair{(1 << 22) + 1, 0}, {1 << 28, -4}}) {
      std::filesystem::resize_file(dir / file,
                                   static_cast<std::uintmax_t>(records) * static_cast<unsigned>(size));
      Bars bars;
      EXPECT_EQ(qvFILEread(type, &bars, dir.path().c_str(), "a", 0, 3), answer) << type << records;
      EXPECT_EQ(bars.barsize, answer == 0 ? 3 : 0);
    }
  }
}

}  // namespace
