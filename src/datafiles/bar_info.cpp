#include "datafiles/bar_info.h"

#include "datafiles/texts.h"

namespace qv::datafiles {

namespace {

template <int N>
const char* nameOf(const char* const (&names)[N], int code) noexcept {
  return code >= 0 && code < N ? names[code] : "Unknown";
}

}  // namespace

QvBars newBarInfo(int fileType, int records, const char* directory) noexcept {
  QvBars info{};
  info.filetype = fileType;
  info.reccnt = records;
  copyText(info.path, trimmed(directory));
  return info;
}

int frequencyOf(int records, double firstDate, double lastDate) noexcept {
  if (firstDate == lastDate) return QV_FREQ_UNKNOWN;
  const double perDay = records / (lastDate - firstDate);
  if (perDay > 1.0) return QV_FREQ_INTRADAY;
  if (perDay > 0.66) return QV_FREQ_DAILY;
  if (perDay > 0.13) return QV_FREQ_WEEKLY;
  if (perDay > 0.03) return QV_FREQ_MONTHLY;
  if (perDay > 0.009) return QV_FREQ_QUARTERLY;
  if (perDay > 0.002) return QV_FREQ_YEARLY;
  return QV_FREQ_UNKNOWN;
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
