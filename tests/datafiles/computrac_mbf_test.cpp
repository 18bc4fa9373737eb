// Numbers of the Microsoft Binary Format.
#include <gtest/gtest.h>

#include <cmath>

#include "datafiles/binary_fields.h"
#include "support/vendor_files.h"

namespace {

using namespace qv::datafiles;

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
