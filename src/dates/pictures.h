// The pictures that listings and reports print dates with, by the process-wide default format.
#pragma once

namespace qv::dates {

enum class Picture {
  Date,           // "yyyy/mm/dd", at most 10 characters
  ShortYearTime,  // "yy/mm/dd hh:nn:ss", at most 17
  LongYearTime,   // "yyyy/mm/dd hh:nn:ss", at most 19
};

// Room for any of them with its terminator.
inline constexpr int kPictureRoom = 20;

// The picture in the field order of the current default format, for qvFormatDate.
const char* defaultPicture(Picture kind) noexcept;

}  // namespace qv::dates
