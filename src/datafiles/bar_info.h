// The descriptive block of a bar set that a reader fills.
#pragma once

#include <string_view>

#include "qvlib60/core.h"

namespace qv::datafiles {

// The file-type codes of the bar information and of the front.
enum FileType {
  kUnknownFile = 0,
  kCSI = 1,
  kCompuTrac = 2,
  kDowJones = 3,
  kFutureSource = 4,
  kTeleChart = 5,
  kTechTools = 6,
  kText = 7,
  kAIQ = 8,
};

// Its other codes, from 0 on.
enum Frequency { kUnknownFrequency, kIntraday, kDaily, kWeekly, kMonthly, kQuarterly, kYearly };
enum DataType { kUnknownData, kBond, kCommodity, kMutualFund, kOption, kStock, kIndex };

// The frequency of a file that does not tell it, by its records per calendar day. Unknown when the
// first date is the last.
int frequencyOf(int records, double firstDate, double lastDate) noexcept;

// A bar set without storage whose information is all cleared but for file type, record count and
// directory. A reader completes it and hands it to qvCopyBarInfo, so that nothing of a file read before
// stays, and so that the caller's texts may be those of the bar set that is read into.
QvBars newBarInfo(FileType type, int records, const char* directory) noexcept;

// The names of the stored codes; those that do not exist are "Unknown".
const char* fileTypeName(int code) noexcept;
const char* frequencyName(int code) noexcept;
const char* dataTypeName(int code) noexcept;
const char* optionTypeName(int code) noexcept;

}  // namespace qv::datafiles
