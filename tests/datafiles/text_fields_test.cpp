// Numbers in text files.
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>

#include "datafiles/text_fields.h"

namespace {

using namespace qv::datafiles;

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

}  // namespace
