// Numbers of the Microsoft Binary Format.
#include <gtest/gtest.h>

#include <cmath>

#include "support/vendor_files.h"

namespace {

using qvtest::kNaN;

std::string toMBF(float value) {
  unsigned char bytes[4];
  EXPECT_EQ(qvIEEEtoMS(&value, bytes), 0);
  return {reinterpret_cast<char*>(bytes), 4};
}

std::string toIEEE(const std::string& mbf) {
  float value;
  EXPECT_EQ(qvMStoIEEE(reinterpret_cast<const unsigned char*>(mbf.data()), &value), 0);
  std::string bytes(4, '\0');
  std::memcpy(bytes.data(), &value, 4);
  return bytes;
}

const std::string kZero(4, '\0');

TEST(MBF, KnowsItsSimplestNumbers) {
  EXPECT_EQ(toIEEE({"\x00\x00\x00\x81", 4}), std::string("\x00\x00\x80\x3F", 4)) << "1";
  EXPECT_EQ(toMBF(1.0f), std::string("\x00\x00\x00\x81", 4));
  EXPECT_EQ(toIEEE({"\x00\x00\x80\x81", 4}), std::string("\x00\x00\x80\xBF", 4)) << "-1";
  EXPECT_EQ(toMBF(0.0f), kZero);
  EXPECT_EQ(toMBF(-0.0f), kZero);
  EXPECT_EQ(toIEEE({"\xFF\xFF\xFF\x00", 4}), kZero) << "an exponent of 0 is zero";
}

// A number is 0.5 * (1 + mantissa / 2^23) * 2^(exponent - 128).
TEST(MBF, ConvertsEveryExponentBothWays) {
  std::mt19937 random(1);
  for (int exponent = 3; exponent <= 255; ++exponent)  // 1 and 2 are no normal IEEE numbers
    for (const bool negative : {false, true})
      for (std::int64_t k = 0; k < 40; ++k) {
        const std::int64_t mantissa = k == 0 ? 0 : k == 1 ? 0x7FFFFF : random() & 0x7FFFFF;
        const std::string mbf =
            qvtest::little(mantissa | (negative ? 0x800000 : 0), 3) + qvtest::little(exponent, 1);
        const double value = (negative ? -1 : 1) *
                             std::ldexp(0.5 * (1 + static_cast<double>(mantissa) / 0x800000), exponent - 128);
        EXPECT_EQ(toIEEE(mbf), qvtest::ieee(value)) << exponent << ' ' << mantissa;
        EXPECT_EQ(toMBF(static_cast<float>(value)), mbf) << exponent << ' ' << mantissa;
      }
}

TEST(MBF, WrapsExponentsThatDoNotFit) {
  // MBF exponents 1 and 2 become 255 (not finite) and 0 (below the normal numbers).
  EXPECT_EQ(toIEEE({"\x00\x00\x00\x01", 4}), std::string("\x00\x00\x80\x7F", 4));
  EXPECT_EQ(toIEEE({"\x01\x00\x80\x01", 4}), std::string("\x01\x00\x80\xFF", 4)) << "a signalling NaN stays";
  EXPECT_EQ(toIEEE({"\x03\x00\x80\x02", 4}), std::string("\x03\x00\x00\x80", 4));
  // The IEEE exponents 254 and 255 become 0 and 1, those of denormal numbers 2.
  EXPECT_EQ(toMBF(std::ldexp(1.5f, 127)), std::string("\x00\x00\x40\x00", 4));
  EXPECT_EQ(toMBF(-std::numeric_limits<float>::infinity()), std::string("\x00\x00\x80\x01", 4));
  EXPECT_EQ(toMBF(std::numeric_limits<float>::denorm_min()), std::string("\x01\x00\x00\x02", 4));
  EXPECT_EQ(toMBF(static_cast<float>(kNaN)).back(), '\x01');
}

TEST(MBF, WorksInPlaceAndRefusesNull) {
  float value = 12.5f;
  auto* bytes = reinterpret_cast<unsigned char*>(&value);
  EXPECT_EQ(qvIEEEtoMS(&value, bytes), 0);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), 4), qvtest::mbf(12.5));
  EXPECT_EQ(qvMStoIEEE(bytes, &value), 0);
  EXPECT_EQ(value, 12.5f);
  EXPECT_EQ(qvIEEEtoMS(nullptr, bytes), -1);
  EXPECT_EQ(qvIEEEtoMS(&value, nullptr), -1);
  EXPECT_EQ(qvMStoIEEE(nullptr, &value), -1);
  EXPECT_EQ(qvMStoIEEE(bytes, nullptr), -1);
}

}  // namespace
