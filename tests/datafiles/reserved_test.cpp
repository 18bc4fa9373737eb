// Formats whose functions exist, but have no reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/files.h"
#include "support/series.h"

namespace {

using qvtest::Bars;

struct ReservedFormats : testing::Test {
  const qvtest::ScratchDir dir;
  const std::string path = dir.path(), output = dir / "output";
};

TEST_F(ReservedFormats, AreReadAsUnknownAndTouchNothing) {
  Bars bars, before;
  double found = 5;
  for (const auto& read : {qvCSIread, qvFSread, qvAIQread})
    EXPECT_EQ(read(&bars, path.c_str(), "a", 0, -1), -10);
  for (const auto& findrec : {qvCSIfindrec, qvFSfindrec, qvAIQfindrec})
    EXPECT_EQ(findrec(path.c_str(), "a", 1, &found), -10);
  EXPECT_EQ(found, 5);
  EXPECT_EQ(std::memcmp(&bars, &before, sizeof(QvBars)), 0);
}

TEST_F(ReservedFormats, AreListedWithoutFiles) {
  for (const auto& list : {qvCSIlist, qvFSlist, qvAIQlist}) {
    EXPECT_EQ(list(path.c_str(), output.c_str(), 0), 0);
    EXPECT_EQ(std::ranges::count(dir.read("output"), '\n'), 2);
    EXPECT_EQ(list(path.c_str(), path.c_str(), 0), -2) << "a directory";
    EXPECT_EQ(list(nullptr, "STDOUT", 0), -1);
    EXPECT_EQ(list("", nullptr, 0), -1);
  }
}

}  // namespace
