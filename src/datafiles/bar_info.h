// The descriptive block of a bar set that a reader fills.
#pragma once

#include <string_view>

#include "qvlib60/core.h"

namespace qv::datafiles {

// The frequency of a file that does not tell it, by its records per calendar day. Unknown when the
// first date is the last.
int frequencyOf(int records, double firstDate, double lastDate) noexcept;

// A bar set without storage whose information is all cleared but for file type, record count and
// directory. A reader completes it and hands it to qvCopyBarInfo, so that nothing of a file read before
// stays, and so that the caller's texts may be those of the bar set that is read into.
QvBars newBarInfo(int fileType, int records, const char* directory) noexcept;

// The names of the stored codes; those that do not exist are "Unknown".
const char* fileTypeName(int code) noexcept;
const char* frequencyName(int code) noexcept;
const char* dataTypeName(int code) noexcept;
const char* optionTypeName(int code) noexcept;

}  // namespace qv::datafiles
