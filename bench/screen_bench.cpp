// A screen of 2,000 text files of 1,000 bars, which the system has in memory: files per second, reading
// included, by the number of threads.
#include "runs/screen.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "support.h"

namespace {

constexpr int kFiles = 2000, kBars = 1000;

// Written once, removed at the end of the program: as a data site writes them, or without a header line and
// with a layout file.
class PriceFiles {
 public:
  explicit PriceFiles(bool withLayout) {
    directory_ =
        std::filesystem::temp_directory_path() / ("qvbench-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(directory_);
    if (withLayout)
      std::ofstream(directory_ / "txtinfo.txt")
          << "delimit = ,\nskip = 1\ndt = 1\nop = 2\nhi = 3\nlo = 4\ncl = 5\n"
             "vol = 6\ndtformat = YMD\n";
    const QvBars& bars = qvbench::barSets(qvbench::kMillion).front();
    for (int f = 0; f < kFiles; ++f) {
      const std::string name = std::to_string(10000 + f) + ".csv";
      std::FILE* file = std::fopen((directory_ / name).string().c_str(), "wb");
      if (!file) return;
      std::fputs("Date,Open,High,Low,Close,Volume\n", file);
      for (int i = 0; i < kBars; ++i) {
        const int from = f * 400 + i;
        char date[20];
        qvFormatDate(bars.date.data[i], "yyyy-mm-dd", date);
        std::fprintf(file, "%s,%.2f,%.2f,%.2f,%.2f,%.0f\n", date, bars.open.data[from], bars.high.data[from],
                     bars.low.data[from], bars.close.data[from], 1000 * bars.volume.data[from]);
      }
      std::fclose(file);
    }
  }
  ~PriceFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  std::string directory() const { return directory_.string(); }

 private:
  std::filesystem::path directory_;
};

template <bool withLayout>
void Screen(benchmark::State& state) {
  static const PriceFiles files(withLayout);
  qv::runs::ScreenOptions options;
  options.where = "rsi(14) < 30 and close > sma(200)";
  options.jobs = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const auto found = qv::runs::screen(qv::runs::sourcesOf(files.directory()), options);
    if (found.read != kFiles) state.SkipWithError("not all files could be read");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFiles);
}

BENCHMARK(Screen<false>)->Name("ScreenCsv")->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Screen<true>)->Name("ScreenText")->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
