// Reading a million bars of each vendor format from a file that the system has in memory: bars per second
// on one core. CompuTrac headers count no further than 32767; one with a negative count, which leaves the
// number of records to the size of the file, holds the million.
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "support.h"

namespace {

std::string little(std::int64_t value, int bytes) {
  std::string text;
  for (int k = 0; k < bytes; ++k) text += static_cast<char>(value >> 8 * k & 0xFF);
  return text;
}

std::string ieee(double value) {
  return little(std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
}

std::string mbf(double value) {
  const auto single = static_cast<float>(value);
  unsigned char bytes[4];
  qvIEEEtoMS(&single, bytes);
  return {reinterpret_cast<const char*>(bytes), 4};
}

double vendorDate(double date) {
  int y, m, d;
  qvDateToYMD(date, &y, &m, &d, nullptr, nullptr, nullptr);
  return (y - 1900) * 10000 + m * 100 + d;
}

// One directory with a file of each format, written once and removed at the end of the program.
class MillionRecords {
 public:
  MillionRecords() {
    directory_ =
        std::filesystem::temp_directory_path() / ("qvbench-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(directory_);
    std::string xmaster(150 * 3, '\0');
    xmaster.replace(10, 2, little(2, 2));
    addXmaster(xmaster, 1, "DAILY", 0x7F);
    addXmaster(xmaster, 2, "TICKS", 0xFF);
    write("XMASTER", xmaster);
    std::string mapinfo(71 * 2, '\0');
    mapinfo.replace(45, 2, little(1, 2));
    mapinfo.replace(71, 11, std::string("TICKS\0\0\0S\0008", 11));
    mapinfo.replace(71 + 45, 3, little(32767, 2) + "D");
    write("MAPINFO.DAT", mapinfo);

    std::string daily(28, '\0'), ticks(32, '\0'), dowJones, teleChart(48, ' '), techTools(16, '\0');
    daily.replace(2, 2, little(-1, 2));
    ticks.replace(2, 2, little(-1, 2));
    techTools.replace(0, 2, little(-3, 2));
    const QvBars& b = qvbench::barSets(qvbench::kMillion).front();
    for (int i = 0; i < qvbench::kMillion; ++i) {
      const int date = 20000 + i / 40;
      const double o = b.open.data[i], h = b.high.data[i], l = b.low.data[i], c = b.close.data[i];
      const auto volume = static_cast<std::int64_t>(b.volume.data[i]);
      const std::string day = mbf(vendorDate(date)),
                        rest = mbf(o) + mbf(h) + mbf(l) + mbf(c) + mbf(b.volume.data[i]) + mbf(i);
      daily += day + rest;
      ticks += day + mbf(93000 + i % 40) + rest;
      dowJones +=
          little(date - 7305, 2) + little(i, 4) + little(volume, 4) + ieee(h) + ieee(l) + ieee(c) + ieee(o);
      teleChart += day + mbf(h) + mbf(l) + mbf(c) + mbf(b.volume.data[i]) + mbf(o);
      techTools += little(date, 2);
      for (const double price : {o, h, l, c}) techTools += little(std::llround(price * 8), 2);
      techTools += little(volume, 3) + little(i, 3);
    }
    write("F1.MWD", daily);
    write("F2.MWD", ticks);
    write("TICKS.SQD", dowJones);
    write("TICKS.NDX", teleChart);
    write("TICKS.TTD", techTools);
  }
  ~MillionRecords() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  std::string directory() const { return directory_.string(); }

 private:
  static void addXmaster(std::string& xmaster, int number, const std::string& symbol, int flags) {
    const auto at = static_cast<std::size_t>(150 * number);
    xmaster.replace(at + 1, symbol.size(), symbol);
    xmaster.replace(at + 65, 2, little(number, 2));
    xmaster.replace(at + 70, 1, little(flags, 1));
  }
  void write(const char* name, const std::string& bytes) const {
    std::ofstream(directory_ / name, std::ios::binary) << bytes;
  }

  std::filesystem::path directory_;
};

const MillionRecords& millionRecords() {
  static const MillionRecords files;
  return files;
}

template <typename Target, typename Read>
void readMillion(benchmark::State& state, Target& target, Read read) {
  const std::string directory = millionRecords().directory();
  for (auto _ : state)
    if (read(&target, directory.c_str()) != 0) state.SkipWithError("the file could not be read");
  qvbench::countBars(state, qvbench::kMillion);
}

void VendorRead(benchmark::State& state, decltype(&qvCTread) read, const char* name) {
  QvBars bars{};
  readMillion(state, bars, [&](QvBars* b, const char* directory) {
    const int status = read(b, directory, name, 0, qvbench::kMillion);
    return status ? status : b->barsize != qvbench::kMillion;
  });
  qvFreeBars(&bars);
}
BENCHMARK_CAPTURE(VendorRead, CompuTracDaily, qvCTread, "DAILY")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(VendorRead, CompuTracIntraday, qvCTread, "TICKS")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(VendorRead, DowJones, qvDJread, "TICKS")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(VendorRead, TeleChart, qvTCread, "TICKS")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(VendorRead, TechTools, qvTTread, "TICKS")->Unit(benchmark::kMillisecond);

void CompuTracReadArray(benchmark::State& state) {
  QvArray closes{};
  readMillion(state, closes, [](QvArray* a, const char* directory) {
    return qvCTreadarray(a, directory, "TICKS", "cl", 0, qvbench::kMillion);
  });
  qvFreeArray(&closes);
}
BENCHMARK(CompuTracReadArray)->Unit(benchmark::kMillisecond);

}  // namespace
