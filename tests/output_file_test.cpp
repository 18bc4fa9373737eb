#include "core/output_file.h"

#include <gtest/gtest.h>

#include "support/files.h"

namespace {

using qv::OutputFile;
using qvtest::ScratchDir;

TEST(OutputFile, TruncatesOrAppends) {
  const ScratchDir dir;
  for (const auto& [text, append] : {std::pair{"one\n", false}, {"two\n", false}, {"three\n", true}}) {
    OutputFile out((dir / "report.txt").c_str(), append);
    ASSERT_TRUE(out.ok());
    std::fputs(text, out.stream());
  }
  EXPECT_EQ(dir.read("report.txt"), "two\nthree\n");
}

TEST(OutputFile, KnowsStandardOutputInAnyCaseAndLeavesItOpen) {
  for (const char* name : {"STDOUT", "stdout", "StdOut"}) {
    OutputFile out(name, false);
    EXPECT_EQ(out.stream(), stdout) << name;
  }
  testing::internal::CaptureStdout();
  std::fputs("still open", OutputFile("stdout", true).stream());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "still open");
}

TEST(OutputFile, MayTreatThatNameAsAFile) {
  const ScratchDir dir;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  {
    OutputFile out("stdout", false, qv::StdoutName::kFile);
    ASSERT_TRUE(out.ok());
    std::fputs("a file", out.stream());
  }
  std::filesystem::current_path(before);
  EXPECT_EQ(dir.read("stdout"), "a file");
}

TEST(OutputFile, AFileThatCannotBeOpenedIsNotOk) {
  const ScratchDir dir;
  EXPECT_FALSE(OutputFile(nullptr, false).ok());
  EXPECT_FALSE(OutputFile("", false).ok());
  EXPECT_FALSE(OutputFile((dir / "no/such/directory.txt").c_str(), true).ok());
  EXPECT_FALSE(OutputFile(dir.path().c_str(), false).ok()) << "a directory";
}

#ifdef __linux__
TEST(OutputFile, TellsWhenTheTextCouldNotBeWritten) {
  OutputFile full("/dev/full", false);
  ASSERT_TRUE(full.ok());
  std::fputs("lost", full.stream());
  EXPECT_FALSE(full.finish());
}
#endif

}  // namespace
