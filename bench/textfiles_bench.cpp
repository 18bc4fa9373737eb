// Reading a text price file of a million lines (about 50 MB) that the system has in memory: bytes per
// second on one core.
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "support.h"

namespace {

// Written once, removed at the end of the program.
class MillionLines {
 public:
  MillionLines() {
    directory_ =
        std::filesystem::temp_directory_path() / ("qvbench-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(directory_);
    std::FILE* file = std::fopen((directory_ / "prices.csv").string().c_str(), "wb");
    if (!file) return;
    const QvBars& bars = qvbench::barSets(qvbench::kMillion).front();
    for (int i = 0; i < qvbench::kMillion; ++i) {
      char date[20];
      qvFormatDate(bars.date.data[i], "yyyy/mm/dd", date);
      std::fprintf(file, "%s,%.2f,%.2f,%.2f,%.2f,%.0f\n", date, bars.open.data[i], bars.high.data[i],
                   bars.low.data[i], bars.close.data[i], 1000 * bars.volume.data[i]);
    }
    std::fclose(file);
    bytes_ = std::filesystem::file_size(directory_ / "prices.csv");
  }
  ~MillionLines() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }

  std::string directory() const { return directory_.string(); }
  std::int64_t bytes() const { return static_cast<std::int64_t>(bytes_); }

 private:
  std::filesystem::path directory_;
  std::uintmax_t bytes_ = 0;
};

const MillionLines& millionLines() {
  static const MillionLines file;
  return file;
}

template <typename Read>
void timeReading(benchmark::State& state, Read read) {
  const MillionLines& file = millionLines();
  for (auto _ : state)
    if (read(file.directory()) != 0) state.SkipWithError("the file could not be read");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * file.bytes());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * qvbench::kMillion);
}

void TextRead(benchmark::State& state) {
  const QvTxtInfo info = {1, 0, 2, 3, 4, 5, 6, 0, 0, 0, {','}};
  QvBars bars{};
  timeReading(state, [&](const std::string& directory) {
    return qvTXTread(&bars, directory.c_str(), "prices.csv", &info, 0, -1);
  });
  qvFreeBars(&bars);
}
BENCHMARK(TextRead)->Unit(benchmark::kMillisecond);

void TextReadLastHundred(benchmark::State& state) {
  const QvTxtInfo info = {1, 0, 2, 3, 4, 5, 6, 0, 0, 0, {','}};
  QvBars bars{};
  timeReading(state, [&](const std::string& directory) {
    return qvTXTread(&bars, directory.c_str(), "prices.csv", &info, -1, 100);
  });
  qvFreeBars(&bars);
}
BENCHMARK(TextReadLastHundred)->Unit(benchmark::kMillisecond);

void TextReadArray(benchmark::State& state) {
  QvArray closes{};
  timeReading(state, [&](const std::string& directory) {
    return qvTXTreadarray(&closes, directory.c_str(), "prices.csv", ",", 0, 5, 0, -1);
  });
  qvFreeArray(&closes);
}
BENCHMARK(TextReadArray)->Unit(benchmark::kMillisecond);

}  // namespace
