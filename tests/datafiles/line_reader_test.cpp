// Lines of files.
#include <gtest/gtest.h>

#include <random>

#include "datafiles/line_reader.h"
#include "support/vendor_files.h"

namespace {

using namespace qv::datafiles;
using qvtest::ScratchDir;

// Character by character: carriage returns before a newline or the end fall away, a line ends with its
// newline or after kDataLine characters.
std::vector<std::string> linesOf(std::string text) {
  text = text.substr(0, text.find('\x1A'));
  std::string plain;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of('\r', i), text.size());
    if (end < text.size() && text[end] != '\n') plain.append(end - i, '\r');
    if (end < text.size()) plain += text[end];
    i = end + 1;
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
    if (k == 7) text.insert(150'000, std::string(300'000, '\r') + "e");
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

}  // namespace
