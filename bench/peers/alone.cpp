// What is measured for the library alone: the order system bar by bar, and the reader of text files.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>

#include "program.h"
#include "timing.h"

namespace qvpeers {

namespace {

constexpr int kBars = 200'000;

double timed(const std::function<void()>& call) {
  return interleave({{call}}, kBars, options.rounds, options.budget).best[0];
}

// Ten bars a day from 1970 on, or with times 78 five-minute bars a day from 2010 on. Answers the size in
// bytes.
long writeText(const char* name, const Data& d, bool withTimes) {
  std::FILE* file = std::fopen(name, "w");
  if (!file) return 0;
  std::fputs(withTimes ? "Date,Time,Open,High,Low,Close,Volume\n" : "Date,Open,High,Low,Close,Volume\n",
             file);
  for (int i = 0; i < d.n; ++i) {
    const std::time_t day = std::time_t{withTimes ? 14610 + i / 78 : i / 10} * 86400;
    std::tm parts{};
    gmtime_r(&day, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d", &parts);
    std::fprintf(file, "%s,", text);
    const int minute = 9 * 60 + 35 + i % 78 * 5;
    if (withTimes) std::fprintf(file, "%02d:%02d,", minute / 60, minute % 60);
    std::fprintf(file, "%.2f,%.2f,%.2f,%.2f,%.0f\n", d.bars.open.data[i], d.bars.high.data[i],
                 d.bars.low.data[i], d.bars.close.data[i], d.bars.volume.data[i]);
  }
  const long bytes = std::ftell(file);
  std::fclose(file);
  return bytes;
}

void measureReading(const char* name, bool withTimes) {
  const Data& d = dataOf(kBars, "walk");
  const long bytes = writeText(name, d, withTimes);
  const int first = withTimes ? 3 : 2;
  QvTxtInfo layout{1, withTimes ? 2 : 0, first, first + 1, first + 2, first + 3, first + 4, 0, 0, 1, ","};
  QvBars bars{};
  QV_CALL(qvAllocBars, &bars, d.n);
  const auto read = [&] { return QV_CALL(qvTXTread, &bars, ".", name, &layout, 0, -1); };
  const int status = read();
  if (status != 0 || bars.barsize != d.n ||
      std::fabs(bars.close.data[d.n - 1] - d.bars.close.data[d.n - 1]) > 0.0051) {
    findings.failed.insert("qvTXTread returned " + std::to_string(status));
  } else {
    const double ns = timed([&] { read(); });
    std::printf("qvTXTread, %d lines with %s %9.1f MB/s    (%.0f ns/line, %.1f MB, file in the page cache)\n",
                kBars, withTimes ? "date, time, OHLC, volume" : "date, OHLC, volume      ",
                static_cast<double>(bytes) / (ns * d.n) * 1e3, ns, static_cast<double>(bytes) / 1e6);
  }
  QV_CALL(qvFreeBars, &bars);
  std::filesystem::remove(name);
}

}  // namespace

void measureOrders() {
  const std::string needed =
      "qvOrderSystemInit,qvOrderSystemReset,qvOrderSystemClose,qvProcessOrders,qvBuyToOpen,qvSellToClose";
  if (!chosen("", needed) || !present(needed)) return;
  running("qvProcessOrders");
  Data& d = dataOf(kBars, "walk");
  for (const bool busy : {false, true}) {
    QvOrderSystem system{};
    if (QV_CALL(qvOrderSystemInit, &system, "bench", &d.bars) != 0) {
      findings.failed.insert("qvOrderSystemInit");
      return;
    }
    system.pyramiding = 1;  // else every second entry is refused
    int bars = 0;
    const double ns = timed([&] {
      QV_CALL(qvOrderSystemReset, &system);
      for (bars = 0; QV_CALL(qvProcessOrders, &system) == 1; ++bars) {
        if (!busy) continue;
        QV_CALL(qvSellToClose, &system, "out", "", 1, 0.0, 1, 1);
        QV_CALL(qvBuyToOpen, &system, "in", 1, 0.0, 1, 1);
      }
    });
    std::printf(
        "%-58s %9.2f ns/bar  (%d bars, %d trades)\n",
        busy ? "qvProcessOrders, one entry and one exit placed per bar" : "qvProcessOrders, no orders", ns,
        bars, system.tradeCount);
    QV_CALL(qvOrderSystemClose, &system);
  }
}

void measureTextFile() {
  const std::string needed = "qvTXTread,qvAllocBars,qvFreeBars";
  if (!chosen("", needed) || !present(needed)) return;
  running("qvTXTread");
  // Plain file names in the scratch folder: joining paths is not what is timed.
  const auto home = std::filesystem::current_path();
  std::filesystem::current_path(options.scratch);
  for (const bool withTimes : {false, true}) measureReading(withTimes ? "TIMED.CSV" : "DAILY.CSV", withTimes);
  std::filesystem::current_path(home);
}

}  // namespace qvpeers
