// Whether two builds give the same bits: a line with the digest of all results of each function, and one over
// all of them.
//
//   qv_digest DATA [--narrow] [LIST]
//
// DATA is the folder of the bundled data. --narrow: the loops of processors without wide registers. With a
// LIST, a file of such lines, only those that differ are printed, and the exit code is 1 where one does.
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "digest.h"
#include "kernels/lanes.h"

namespace {

using namespace qvtest;

std::vector<Bar> roughBars() {
  std::vector<Bar> bars;
  Numbers numbers(7);
  double close = 100;
  for (int i = 0; i < 900; ++i) {
    Bar b{};
    const bool halted = i % 300 > 250, ties = i % 300 < 60;
    b.date = 36526 + i + (i % 5 == 0 ? 1 : 0);
    b.open = halted ? close : ties ? numbers.whole(99, 102) : close + numbers.number(-2, 2);
    close = halted ? close : ties ? numbers.whole(99, 102) : b.open + numbers.number(-3, 3);
    b.close = close;
    b.high = std::max(b.open, b.close) + (halted || ties ? 0 : numbers.number(0, 1));
    b.low = std::min(b.open, b.close) - (halted || ties ? 0 : numbers.number(0, 1));
    b.volume = i % 11 ? numbers.whole(0, 100000) : 0;
    b.openInterest = numbers.whole(0, 500);
    bars.push_back(b);
  }
  bars[400].high = bars[400].close = 1e12;
  bars[500].close = kNaN;
  bars[620].low = -kInf;
  bars[700].close = bars[700].open = bars[700].low = 0;
  return bars;
}

// Text lines of all functions, then the total.
std::map<std::string, std::string> linesOf(const Digests& digests) {
  std::map<std::string, std::string> lines;
  Digest total;
  const auto text = [](std::uint64_t v) {
    char line[17];
    std::snprintf(line, sizeof line, "%016" PRIx64, v);
    return std::string(line);
  };
  for (const auto& [name, digest] : digests) {
    lines[name] = text(digest.value());
    total.addBits(digest.value());
  }
  lines["total"] = text(total.value());
  return lines;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> files;
  for (int k = 1; k < argc; ++k) {
    if (!std::strcmp(argv[k], "--narrow"))
      qv::wideLoops = false;
    else
      files.emplace_back(argv[k]);
  }
  if (files.empty() || files.size() > 2) {
    std::fprintf(stderr, "usage: qv_digest DATA [--narrow] [LIST]\n");
    return 2;
  }

  Data data;
  qv::check(qvFILEread("TXT", &data.prices, (files[0] + "/text").c_str(), "SPX.CSV", 0, -1), "SPX.CSV");
  data.rough = Bars(roughBars());
  Digests digests;
  digestCalculations(data, digests);
  digestFunctions(data, digests);
  digestRuns(data, digests);
  const auto lines = linesOf(digests);

  if (files.size() == 1) {
    for (const auto& [name, digest] : lines) std::printf("%s %s\n", name.c_str(), digest.c_str());
    return 0;
  }
  auto left = lines;
  bool differs = false;
  std::ifstream list(files[1]);
  for (std::string name, digest; list >> name >> digest; left.erase(name))
    if (const auto own = lines.find(name); own == lines.end() || own->second != digest) {
      std::printf("%s differs\n", name.c_str());
      differs = true;
    }
  for (const auto& line : left) std::printf("%s is not in the list\n", line.first.c_str());
  return differs || !left.empty();
}
