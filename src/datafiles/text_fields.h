// What stands in a line of text: its columns, and the numbers in them.
#pragma once

#include <array>
#include <string_view>

namespace qv::datafiles {

// The usual conversions: leading blanks, an optional sign, then as much as reads as a number; 0 when
// nothing does. Independent of the caller's locale. Infinities, not-a-numbers and hexadecimal
// numbers are taken as strtod takes them; integers that do not fit saturate.
double decimalValue(std::string_view text) noexcept;
int integerValue(std::string_view text) noexcept;

// The columns of one line: the runs of characters between delimiters. Several delimiters in a row
// count as one, so no column is empty. A zero byte ends the line.
class Columns {
 public:
  static constexpr int kMost = 127;  // of a line of 254 characters

  explicit Columns(std::string_view delimiters) noexcept;

  // Finds the first `wanted` columns of a line, as many as it has. The line must outlive their use.
  void split(std::string_view line, int wanted) noexcept;

  // Column 1 is the first. A column that the line does not have is empty.
  std::string_view operator[](int number) const noexcept {
    return number >= 1 && number <= count_ ? columns_[static_cast<std::size_t>(number - 1)]
                                           : std::string_view{};
  }

 private:
  enum class Kind : unsigned char { kText, kDelimiter, kEnd };
  std::array<Kind, 256> kinds_{};
  std::array<std::string_view, kMost> columns_;
  int count_ = 0;
};

}  // namespace qv::datafiles
