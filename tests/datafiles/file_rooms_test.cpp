// The rooms under the data files: joined paths, lines, columns and numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "datafiles/binary_fields.h"
#include "datafiles/line_reader.h"
#include "datafiles/paths.h"
#include "datafiles/text_fields.h"
#include "support/vendor_files.h"

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
                                  {most, "ab", most + separator + "a"},
                                  {d, "ab", d + "a"},
                                  {"d", most.substr(3) + "   x", "d" + separator + most.substr(3)}};
  for (const auto& [directory, name, joined] : cases)
    EXPECT_EQ(joinPath(directory.c_str(), name.c_str()).text, joined);
}

// Character by character: carriage returns before a newline or the end fall away, a line ends with its
// newline or after kDataLine characters.
std::vector<std::string> linesOf(std::string text) {
  text = text.substr(0, text.find('\x1A'));
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text.find_first_not_of('\r', i);
    if (text[i] != '\r' || (end != text.npos && text[end] != '\n')) plain += text[i];
  }
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < plain.size(); i += lines.back().size())
    lines.push_back(plain.substr(i, std::min(plain.find('\n', i) - i + 1, kDataLine)));
  return lines;
}

TEST(LineReader, AgreesWithLinesTakenCharacterByCharacter) {
  std::mt19937 random(7);
  const ScratchDir dir;
  for (int k = 0; k < 12; ++k) {
    SCOPED_TRACE(k);
    std::string text;
    const unsigned longest = k < 6 ? 3 : 600;
    for (const std::size_t size = k % 3 == 0 ? 100 : 400'000; text.size() < size;) {
      text.append(random() % longest, 'a');
      text += std::string(random() % 3, '\r') + (random() % 8 ? "\n" : "b");
    }
    if (k == 5) text.insert(300'000, "\x1A");
    if (k == 8) text.insert(100'000, 300'000, 'c');
    if (k == 11)
      text.insert(100'000, std::string(50'000, 'd') + std::string(2'000, '\r') + std::string(90'000, 'e'));
    dir.write("a", text);

    InputFile file(dir.path().c_str(), "A");
    ASSERT_TRUE(file.ok());
    LineReader reader(file, kDataLine);
    ASSERT_TRUE(reader.ok());
    std::vector<std::int64_t> positions{0};
    std::vector<std::string> lines;
    Line line;
    const auto whole = [&line] { return std::string(line.text) + (line.endsWithNewline ? "\n" : ""); };
    while (reader.next(line)) {
      lines.push_back(whole());
      positions.push_back(reader.position());
    }
    ASSERT_TRUE(lines == linesOf(text));
    const std::size_t n = lines.size();
    for (const std::size_t at : {n / 2, std::size_t{0}, n, n - 1, n / 3}) {  // back and forth
      reader.seek(positions[at]);
      EXPECT_EQ(reader.next(line), at < n);
      EXPECT_TRUE(at == n || whole() == lines[at]) << at;
    }
    EXPECT_FALSE(reader.failed());
  }
}

void expectAsStrtod(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr), got = decimalValue(text);
  EXPECT_TRUE(got == expected || (expected != expected && got != got)) << '"' << text << "\" " << got;
}

TEST(TextNumbers, AreReadAsStrtodReadsThem) {
  // Separated by '|'.
  std::istringstream texts(
      "| \t\n\v\f\r+12.5x|1e|1E-5|1e400|-1e400|1e-400|4.9e-324|2e-324|1e99999999999999999999|-Infinity|"
      "1e-99999999999999999999|0e99999999999999999999|+inf|infinit|nan|NaN(12)|nan(|0x|-0X.8p1|0xg|0x-1|"
      "0x1p9999|0x1p-9999");
  for (std::string text; std::getline(texts, text, '|');) expectAsStrtod(text);
  std::mt19937 random(3);
  for (int k = 0; k < 20'000; ++k) {
    std::string text;
    for (auto n = random() % 12; n > 0; --n) text += "00123456789+-..eExXpPinfaN() "[random() % 29];
    expectAsStrtod(text);
  }
  // What fits no int; other integers are in the layouts of text files.
  EXPECT_EQ(integerValue("2147483648"), INT_MAX);
  EXPECT_EQ(integerValue("-99999999999"), INT_MIN);
  EXPECT_EQ(integerValue("+-7"), 0);
}

// ---- Numbers of the Microsoft Binary Format -----------------------------------------------------------

// The bytes of a number, converted in place.
template <typename From, typename To>
std::string converted(int(QVCALL* convert)(const From*, To*) noexcept, std::string number) {
  char* bytes = number.data();
  EXPECT_EQ(convert(reinterpret_cast<const From*>(bytes), reinterpret_cast<To*>(bytes)), 0);
  return number;
}

void expectPair(const std::string& ms, const std::string& ieee) {
  EXPECT_EQ(converted(qvMStoIEEE, ms), ieee);
  EXPECT_EQ(converted(qvIEEEtoMS, ieee + "next"), ms + "next");
}

TEST(MBF, ConvertsEveryExponentBothWaysAndWrapsThoseThatDoNotFit) {
  using qvtest::little;
  expectPair(little(0x81800000, 4), little(0xBF800000, 4));  // -1
  EXPECT_EQ(converted(qvIEEEtoMS, little(0x80000000, 4)), little(0, 4)) << "-0 is 0";
  EXPECT_EQ(converted(qvMStoIEEE, little(0x00FFFFFF, 4)), little(0, 4)) << "an exponent of 0 is zero";
  // MBF exponents 1 and 2 become 255 (not finite; a signalling NaN stays) and 0 (below the normal numbers).
  expectPair(little(0x01800001, 4), little(0xFF800001, 4));
  expectPair(little(0x02800003, 4), little(0x80000003, 4));
  EXPECT_EQ(converted(qvIEEEtoMS, little(0x7F400000, 4)), little(0x00400000, 4))
      << "1.5 * 2^127: exponent 254 becomes 0";
  for (int exponent = -125; exponent <= 127; ++exponent)
    for (const double fraction : {0.5, -0.7, 1 - 0x1p-24}) {
      const double value = static_cast<float>(std::ldexp(fraction, exponent));
      expectPair(qvtest::mbf(value), qvtest::ieee(value));
    }
  float value = 0;
  Byte bytes[4] = {};
  for (const int status : {qvIEEEtoMS(nullptr, bytes), qvIEEEtoMS(&value, nullptr),
                           qvMStoIEEE(nullptr, &value), qvMStoIEEE(bytes, nullptr)})
    EXPECT_EQ(status, -1);
}

}  // namespace
