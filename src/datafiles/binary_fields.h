// Fields of binary records, decoded byte by byte: integers little-endian on every machine, texts of
// fixed width that may lack a terminator.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "datafiles/texts.h"

namespace qv::datafiles {

using Byte = unsigned char;

constexpr int unsigned16(const Byte* field) noexcept {
  return field[0] | field[1] << 8;
}
constexpr int signed16(const Byte* field) noexcept {
  return static_cast<std::int16_t>(unsigned16(field));
}
constexpr int unsigned24(const Byte* field) noexcept {
  return unsigned16(field) | field[2] << 16;
}
constexpr std::uint32_t unsigned32(const Byte* field) noexcept {
  return static_cast<std::uint32_t>(unsigned24(field)) | std::uint32_t{field[3]} << 24;
}
constexpr std::int32_t signed32(const Byte* field) noexcept {
  return static_cast<std::int32_t>(unsigned32(field));
}
constexpr double single(const Byte* field) noexcept {
  return double{std::bit_cast<float>(unsigned32(field))};
}

// Ends at a zero byte or with the field, without trailing blanks.
inline std::string_view textField(const Byte* field, std::size_t width) noexcept {
  const std::string_view text(reinterpret_cast<const char*>(field), width);
  return trimmedEnd(text.substr(0, text.find('\0')));
}

}  // namespace qv::datafiles
