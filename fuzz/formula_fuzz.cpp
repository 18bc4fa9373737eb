// Formulas: any text is read or refused with a reason, and what was read can be evaluated over any bars.
#include "input.h"

namespace qvfuzz {
namespace {

void evaluate(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  const Heap heap(in);
  const int n = in.choose(0, 7) ? in.choose(1, 80) : in.choose(0, 2000);
  BarSet bars(in, n);
  const bool regular = in.choose(0, 3) > 0;
  if (!regular) bars.disturb(in);
  const int room = in.seldom(8) ? in.choose(-1, 20) : 200, used = in.choose(0, 3),
            cut = in.choose(1, std::max(1, n));
  const double values[] = {in.number(), in.number(), in.number()};
  const std::string text = in.rest().c_str();

  std::vector<char> error(static_cast<std::size_t>(std::max(1, room)), '?');
  heap.arm();
  QvFormula* f = qvFormulaOpen(text.c_str(), error.data(), room);
  Heap::disarm();
  if (room > 0) {
    const void* end = std::memchr(error.data(), 0, error.size());
    QV_REQUIRE(end && (room < 2 || (f != nullptr) == (error[0] == 0)), "%s", error.data());
  }
  if (!f) return;
  for (int k = 0; k < qvFormulaParameterCount(f); ++k)
    QV_REQUIRE(qvFormulaParameter(f, qvFormulaParameterName(f, k), values[k % 3]) == 0, "%s",
               qvFormulaParameterName(f, k));
  QvFormulaNeeds needs{};
  const int known = qvFormulaNeeds(f, 0.001, &needs);
  Series out;
  if (used == 1) {
    out.allocate(std::max(0, n - 1));
    std::fill_n(out.data, out.capacity, 77.0);
  }
  Snapshot inputs;
  inputs.add(bars);
  int status = 0;
  heap.arm();
  const auto run = [&] { status = qvFormulaEval(f, &bars, &out); };
  // A call in a formula may be any calculation: as many as its text has room for.
  if (heap.fails() || text.find("rwi") != text.npos || text.find("RWI") != text.npos)
    run();
  else
    requireQuick((n + 100) * static_cast<int>(1 + text.size() / 4), text.c_str(), run);
  Heap::disarm();
  inputs.require();
  require(out);
  QV_REQUIRE(status == 0 || status == QV_INVALID_PARM || (status == QV_MALLOC && heap.fails()), "%s: %d",
             text.c_str(), status);
  if (status == 0)
    for (int i = 0; i < out.size && i < out.firstValid; ++i)
      QV_REQUIRE(out.data[i] == 0.0, "%s: item %d below first valid %d", text.c_str(), i, out.firstValid);
  if (status == 0 && known == 0 && !needs.repaints && regular && used == 0 && !heap.fails() && n > 0) {
    BarSet fewer;
    QV_REQUIRE(qvAllocBars(&fewer, cut) == 0, "memory");
    for (int s = 0; s < qv::kSeriesCount; ++s)
      std::memcpy(qv::seriesOf(fewer, s).data, qv::seriesOf(bars, s).data,
                  static_cast<std::size_t>(cut) * sizeof(double));
    Series part;
    if (qvFormulaEval(f, &fewer, &part) == 0)
      for (int i = std::max({0, +out.firstValid, +part.firstValid}); i < cut; ++i)  // some need one bar more
        QV_REQUIRE(sameBits(out.data[i], part.data[i]), "%s looks ahead: item %d of %d bars", text.c_str(), i,
                   cut);
  }
  qvFormulaClose(f);
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::evaluate(data, size);
  return 0;
}
