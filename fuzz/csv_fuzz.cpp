// CSV files: any text becomes bars, rows that were left out with their reasons, or an error that names the
// file.
#include "input.h"
#include "runs/csv.h"

namespace qvfuzz {
namespace {

void read(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  qv::runs::LoadOptions options;
  options.dates = static_cast<qv::runs::DateOrder>(in.choose(0, 3));
  options.decimal = static_cast<qv::runs::DecimalSign>(in.choose(0, 2));
  options.adjusted = in.flip();
  const std::string text = in.rest();
  requireQuick(static_cast<int>(text.size()) + 500, "reading", [&] {
    try {
      const qv::runs::Loaded loaded = qv::runs::readCsv("file.csv", text, options);
      const QvBars& b = loaded.bars;
      QV_REQUIRE(b.barsize > 0 && loaded.lines.size() == static_cast<std::size_t>(b.barsize), "%d bars",
                 b.barsize);
      int later = 0;  // a file that is newest first is turned round; others stay in their order
      for (int i = 0; i < b.barsize; ++i) {
        QV_REQUIRE(std::isfinite(b.close.data[i]), "bar %d: %g", i, b.close.data[i]);
        if (i > 0) later += (b.date.data[i - 1] < b.date.data[i]) - (b.date.data[i - 1] > b.date.data[i]);
      }
      QV_REQUIRE(later >= 0, "%d more steps back than forth", -later);
    } catch (const qv::Error& e) {
      QV_REQUIRE(std::strstr(e.what(), "file.csv"), "%s", e.what());
    }
  });
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::read(data, size);
  return 0;
}
