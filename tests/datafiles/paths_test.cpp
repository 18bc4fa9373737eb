// Joined paths.
#include <gtest/gtest.h>

#ifdef __unix__
#include <sys/stat.h>
#endif

#include <filesystem>
#include <string>

#include "datafiles/paths.h"
#include "platform/platform.h"
#include "support/files.h"

namespace {

using namespace qv::datafiles;
using qvtest::ScratchDir;

TEST(JoinedPath, PutsASeparatorWhereTheDirectoryNeedsOne) {
  const std::string separator = joinPath("d", "").text + 1, d = std::string(254, 'd'), most = d.substr(1);
  EXPECT_EQ(separator, std::string(1, std::filesystem::path::preferred_separator));
  // 255 characters in all; a directory of 254 leaves no room for a separator.
  const std::string cases[][3] = {{" \t\r\f\ndata \n", " \ta b\t ", "data" + separator + "a b"},
                                  {"c:", "a", "c:a"},
                                  {"data\\", "a", "data\\a"},
                                  {"data/", "a", "data/a"},
                                  {most, "ab", most + separator + "a"},
                                  {d, "ab", d + "a"},
                                  {"d", most.substr(3) + "   x", "d" + separator + most.substr(3)}};
  for (const auto& [directory, name, joined] : cases)
    EXPECT_EQ(joinPath(directory.c_str(), name.c_str()).text, joined);
}

#ifdef __unix__
// A pipe without a writer would wait for one; a directory and a device are no files to read from.
TEST(InputFiles, AreRegularOnes) {
  const ScratchDir dir;
  ASSERT_EQ(mkfifo((dir / "pipe.csv").c_str(), 0600), 0);
  std::filesystem::create_directory(dir / "folder.csv");
  std::filesystem::create_symlink("/dev/zero", dir / "zeros.csv");
  std::filesystem::create_symlink("loop.csv", dir / "loop.csv");
  for (const char* name : {"pipe.csv", "PIPE.csv", "folder.csv", "zeros.csv", "loop.csv", "none.csv"})
    EXPECT_FALSE(InputFile(dir.path().c_str(), name).ok()) << name;
  dir.write("file", "abc");
  std::filesystem::create_symlink("file", dir / "link.csv");
  char bytes[4];
  EXPECT_EQ(InputFile(dir.path().c_str(), "link.csv").read(bytes, 4), 3u);
}

// Of names that differ by case alone the first of the alphabet, which the system's order is not.
TEST(InputFiles, AreFoundInAnyCase) {
  const ScratchDir dir;
  const std::string names[] = {"ABC.x", "ABc.x", "AbC.x", "Abc.x", "aBC.x", "aBc.x", "abC.x", "abc.x"};
  for (const std::string& name : names) dir.write(name, "");
  for (const std::string& name : names) {
    EXPECT_EQ(InputFile(dir.path().c_str(), name.c_str()).path(), dir / name);
    EXPECT_EQ(InputFile(dir.path().c_str(), "abc.X").path(), dir / name);
    std::filesystem::remove(dir / name);
  }
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  dir.write("File", "");
  EXPECT_STREQ(InputFile("", "fILE").path(), "File");
  EXPECT_STREQ(InputFile("", "none").path(), "none");
  std::filesystem::current_path(before);
  EXPECT_FALSE(InputFile((dir / "none/").c_str(), "").ok());
  int year, month, day;
  EXPECT_FALSE(qv::platform::modificationDate((dir / "none").c_str(), &year, &month, &day));
}
#endif

}  // namespace
