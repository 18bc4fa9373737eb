#include "datafiles/bar_info.h"

#include "datafiles/texts.h"

namespace qv::datafiles {

namespace {

template <int N>
const char* nameOf(const char* const (&names)[N], int code) noexcept {
  return code >= 0 && code < N ? names[code] : "Unknown";
}

}  // namespace

QvBars newBarInfo(FileType type, int records, const char* directory) noexcept {
  QvBars info{};
  info.filetype = type;
  info.reccnt = records;
  copyText(info.path, trimmed(directory));
  return info;
}

int frequencyOf(int records, double firstDate, double lastDate) noexcept {
  if (firstDate == lastDate) return kUnknownFrequency;
  const double perDay = records / (lastDate - firstDate);
  if (perDay > 1.0) return kIntraday;
  if (perDay > 0.66) return kDaily;
  if (perDay > 0.13) return kWeekly;
  if (perDay > 0.03) return kMonthly;
  if (perDay > 0.009) return kQuarterly;
  if (perDay > 0.002) return kYearly;
  return kUnknownFrequency;
}

const char* fileTypeName(int code) noexcept {
  constexpr const char* kNames[] = {"Unknown",   "CSI",       "CompuTrac", "Dow Jones", "FutureSource",
                                    "TeleChart", "TechTools", "Text",      "AIQ"};
  return nameOf(kNames, code);
}

const char* frequencyName(int code) noexcept {
  constexpr const char* kNames[] = {"Unknown", "Intraday",  "Daily", "Weekly",
                                    "Monthly", "Quarterly", "Yearly"};
  return nameOf(kNames, code);
}

const char* dataTypeName(int code) noexcept {
  constexpr const char* kNames[] = {"Unknown", "Bond",  "Commodity", "Mutual Fund",
                                    "Option",  "Stock", "Index"};
  return nameOf(kNames, code);
}

const char* optionTypeName(int code) noexcept {
  constexpr const char* kNames[] = {" ", "Call", "Put"};
  return nameOf(kNames, code);
}

}  // namespace qv::datafiles
