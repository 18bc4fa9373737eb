// Single-precision numbers of the Microsoft Binary Format, as 32 bits: the exponent (bias 129; 0 means
// that the number is 0) in the highest byte, then the sign, then the mantissa as in IEEE singles, whose
// exponent (bias 127) stands between sign and mantissa.
#pragma once

#include "datafiles/binary_fields.h"

namespace qv::datafiles {

inline constexpr std::uint32_t kSignBit = 0x80000000;
inline constexpr std::uint32_t kMantissaBits = 0x007FFFFF;

// Exponents wrap: an MBF exponent of 1 becomes the IEEE exponent 255 of infinities and not-a-numbers.
constexpr std::uint32_t ieeeOfMBF(std::uint32_t mbf) noexcept {
  const std::uint32_t exponent = mbf >> 24;
  if (exponent == 0) return 0;
  return (mbf << 8 & kSignBit) | ((exponent - 2) & 0xFF) << 23 | (mbf & kMantissaBits);
}

constexpr std::uint32_t mbfOfIEEE(std::uint32_t ieee) noexcept {
  if ((ieee & ~kSignBit) == 0) return 0;
  const std::uint32_t exponent = ieee >> 23 & 0xFF;
  return ((exponent + 2) & 0xFF) << 24 | (ieee & kSignBit) >> 8 | (ieee & kMantissaBits);
}

constexpr double mbfSingle(const Byte* field) noexcept {
  return double{std::bit_cast<float>(ieeeOfMBF(unsigned32(field)))};
}

}  // namespace qv::datafiles
