// Joined paths.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "datafiles/paths.h"

namespace {

using namespace qv::datafiles;

TEST(JoinedPath, PutsASeparatorWhereTheDirectoryNeedsOne) {
  const std::string separator = joinPath("d", "").text + 1, d = std::string(254, 'd'), most = d.substr(1);
  EXPECT_EQ(separator, std::string(1, std::filesystem::path::preferred_separator));
  // 255 characters in all; a directory of 254 leaves no room for a separator.
  const std::string cases[][3] = {{" \t\r\f\ndata \n", " \ta b\t ", "data" + separator + "a b"},
                                  {"c:", "a", "c:a"},
                                  {"data\\", "a", "data\\a"},
                                  {most, "ab", most + separator + "a"},
                                  {d, "ab", d + "a"},
                                  {"d", most.substr(3) + "   x", "d" + separator + most.substr(3)}};
  for (const auto& [directory, name, joined] : cases)
    EXPECT_EQ(joinPath(directory.c_str(), name.c_str()).text, joined);
}

}  // namespace
