// The rooms under the data files: joined paths, lines, columns and numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include "datafiles/line_reader.h"
#include "datafiles/paths.h"
#include "datafiles/text_fields.h"
#include "support/files.h"

namespace {

using namespace qv::datafiles;
using qvtest::ScratchDir;

TEST(JoinedPath, PutsASeparatorWhereTheDirectoryNeedsOne) {
#ifdef _WIN32
  const std::string separator = "\\";
#else
  const std::string separator = "/";
  EXPECT_STREQ(joinPath("data/", "a").text, "data/a");
#endif
  const auto d = [](std::size_t n) { return std::string(n, 'd'); };
  const std::string cases[][3] = {
      {"data", "a", "data" + separator + "a"},
      {" \t\r\f\ndata \n", " \ta b\t ", "data" + separator + "a b"},
      {"c:", "a", "c:a"},
      {"data\\", "a", "data\\a"},
      {"", "a", "a"},
      {" ", " ", ""},
      {"data", "", "data" + separator},
      // 255 characters in all; a directory of 254 leaves no room for a separator.
      {d(253), "ab", d(253) + separator + "a"},
      {d(254), "ab", d(254) + "a"},
      {d(300), "ab", d(255)},
      {"d", d(250) + "   x", "d" + separator + d(250)},
  };
  for (const auto& [directory, name, joined] : cases)
    EXPECT_EQ(joinPath(directory.c_str(), name.c_str()).text, joined);
}

// Character by character: carriage returns before a newline or the end fall away, a line ends with its
// newline or after `longest` characters.
std::vector<std::string> linesOf(std::string text, std::size_t longest) {
  text = text.substr(0, text.find('\x1A'));
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text.find_first_not_of('\r', i);
    if (text[i] != '\r' || (end != text.npos && text[end] != '\n')) plain += text[i];
  }
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < plain.size(); i += lines.back().size())
    lines.push_back(plain.substr(i, std::min(plain.find('\n', i) - i + 1, longest)));
  return lines;
}

TEST(LineReader, AgreesWithLinesTakenCharacterByCharacter) {
  std::mt19937 random(7);
  const ScratchDir dir;
  for (int k = 0; k < 12; ++k) {
    std::string text;
    const int longest = k < 6 ? 3 : 600;
    for (const std::size_t size = k % 3 == 0 ? 100 : 400'000; text.size() < size;) {
      text.append(random() % static_cast<unsigned>(longest), 'a');
      text += std::string(random() % 3, '\r') + (random() % 8 ? "\n" : "b");
    }
    if (k == 5) text.insert(300'000, "\x1A");
    if (k == 8) text.insert(100'000, 300'000, 'c');
    if (k == 11)
      text.insert(100'000, std::string(50'000, 'd') + std::string(2'000, '\r') + std::string(90'000, 'e'));
    dir.write("a", text);
    const std::vector<std::string> expected = linesOf(text, kDataLine);

    InputFile file(dir.path().c_str(), "A");
    ASSERT_TRUE(file.ok());
    LineReader reader(file, kDataLine);
    ASSERT_TRUE(reader.ok());
    std::vector<std::int64_t> positions{0};
    Line line;
    const auto whole = [&line] { return std::string(line.text) + (line.endsWithNewline ? "\n" : ""); };
    std::size_t n = 0;
    for (; reader.next(line); ++n) {
      ASSERT_LT(n, expected.size()) << k;
      ASSERT_EQ(whole(), expected[n]) << k << ' ' << n;
      positions.push_back(reader.position());
    }
    EXPECT_EQ(n, expected.size()) << k;
    EXPECT_FALSE(reader.failed());
    for (const std::size_t at : {n / 2, std::size_t{0}, n - 1, n / 3}) {  // back and forth
      reader.seek(positions[at]);
      ASSERT_TRUE(reader.next(line));
      EXPECT_EQ(whole(), expected[at]) << k << ' ' << at;
    }
    reader.seek(positions[n]);
    EXPECT_FALSE(reader.next(line));
  }
}

TEST(Columns, AreTheRunsBetweenDelimiters) {
  const struct {
    std::string delimiters, line;
    int last;
    std::vector<std::string> columns;  // from the first on
  } cases[] = {
      {",\t", ",,a,\tb c,", 5, {"a", "b c", ""}},
      {",\t", "a,b,c", 2, {"a", "b", ""}},
      {",\t", {"a\0,b", 4}, 2, {"a", ""}},  // a zero byte ends the line
      {"", "a,b", 2, {"a,b", ""}},
  };
  for (const auto& c : cases) {
    Columns columns(c.delimiters.c_str());
    columns.split(c.line, c.last);
    for (int k = 0; const std::string& column : c.columns) EXPECT_EQ(columns[++k], column) << c.line;
    EXPECT_EQ(columns[0], "");
    EXPECT_EQ(columns[-1], "");
  }
  std::string most;
  while (most.size() < 254) most += "x,";
  Columns columns(",");
  columns.split(most, INT_MAX);
  EXPECT_EQ(columns[127], "x");
}

void expectAsStrtod(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr), got = decimalValue(text);
  EXPECT_TRUE(std::memcmp(&expected, &got, sizeof got) == 0 || (expected != expected && got != got) ||
              (expected == 0.0 && got == 0.0))
      << '"' << text << "\" " << expected << ' ' << got;
}

TEST(TextNumbers, AreReadAsStrtodReadsThem) {
  // Separated by '|'.
  std::istringstream texts(
      "| |0|-0|12| \t\n\v\f\r+12.5x|+-1|-+1|--1|++1|+|-|.|.5|5.|-.5e1|1e|1e+|1e5|1E-5|1e+5|1d5|1,5|1.2.3|"
      "1e400|-1e400|1e-400|-1e-400|4.9e-324|2e-324|1e99999999999999999999|1e-99999999999999999999|"
      "0e99999999999999999999|inf|-Infinity|+inf|infinit|nan|NaN(12)|nan(|0x|0x1F|-0X.8p1|0xg|0x-1|0xinf|"
      "0x1p9999|0x1p-9999|x|0.1|123456789012345678901234567890");
  for (std::string text; std::getline(texts, text, '|');) expectAsStrtod(text);
  for (const char* exponent : {"", "e10", "e200", "e-400", "e-700"}) {
    expectAsStrtod(std::string(240, '9') + exponent);
    expectAsStrtod("0." + std::string(238, '0') + "1" + exponent);
  }
  std::mt19937 random(3);
  for (int k = 0; k < 20'000; ++k) {
    std::string text;
    for (auto n = random() % 12; n > 0; --n) text += "00123456789+-..eExXpPinfaN() "[random() % 29];
    expectAsStrtod(text);
  }
}

TEST(TextNumbers, IntegersSaturate) {
  const std::pair<const char*, int> cases[] = {{"", 0},
                                               {"x", 0},
                                               {" +12abc", 12},
                                               {"-7", -7},
                                               {"+-7", 0},
                                               {"--7", 0},
                                               {"2147483647", INT_MAX},
                                               {"2147483648", INT_MAX},
                                               {"-2147483648", INT_MIN},
                                               {"-99999999999", INT_MIN},
                                               {"3.9", 3}};
  for (const auto& [text, value] : cases) EXPECT_EQ(integerValue(text), value) << text;
}

}  // namespace
