// Every calculation, through the catalogue: the input chooses the entry, sizes, first valid indices,
// parameters, items, missing series, the state of the outputs, and which allocation fails.
#include <deque>

#include "input.h"
#include "support/catalogue_call.h"

namespace qvfuzz {
namespace {

struct Call {
  const QvCatalogueEntry& e;
  std::deque<BarSet> bars;
  std::deque<Series> inputs, outputs;
  std::vector<double> params;

  int run(int start) { return qvtest::callEntry(e, bars, inputs, outputs, params, start); }
};

void chooseParameters(Input& in, Call& call) {
  for (int k = 0; k < call.e.paramCount; ++k) {
    const QvCatalogueParam& p = call.e.params[k];
    double value = p.defaultValue;
    switch (in.choose(0, 5)) {
      case 0:
        value = in.choose(-1, 40);
        break;
      case 1:
        value = p.isInteger ? in.integer() : in.number();
        break;
      case 2:
        value = in.choose(0, 400) / 16.0;
        break;
      case 3:
        value = p.choiceCount ? in.choose(0, p.choiceCount - 1) : value;
        break;
      default:
        break;
    }
    call.params.push_back(value);
  }
}

// Which keeps earlier items, as qvVariableMA.
bool hasVariableAverage(const Call& call) {
  bool has = false;
  for (int k = 0; k < call.e.paramCount; ++k) {
    const double value = call.params[static_cast<std::size_t>(k)];
    has |= call.e.params[k].kind == QV_PARAM_METHOD && value >= 6 && value < 7;
  }
  return has;
}

constexpr double kUsed = 77.0;
constexpr int kUsedFirst = 90;

// The same data, cut to its first m bars, gives the same values for them.
void requireNoLookAhead(const Call& whole, int n, int m, int start, int status) {
  // Projections want a bar more than a period.
  if (std::strncmp(whole.e.name, "qvProjection", 12) == 0 && m <= std::max(start, 0) + whole.params[0] + 1)
    return;
  Call cut{whole.e, {}, {}, {}, whole.params};
  const auto copy = [&](const QvArray& from, QvArray& to) {
    if (!from.data) return;
    qvAllocArray(&to, std::min(m, from.size));
    std::memcpy(to.data, from.data, static_cast<std::size_t>(to.size) * sizeof(double));
    to.firstValid = from.firstValid;
  };
  for (const BarSet& b : whole.bars) {
    QvBars& to = cut.bars.emplace_back();
    for (int s = 0; s < qv::kSeriesCount; ++s) copy(qv::seriesOf(b, s), qv::seriesOf(to, s));
    to.barsize = to.datasize = m;
  }
  for (const Series& x : whole.inputs) copy(x, cut.inputs.emplace_back());
  cut.outputs.resize(whole.outputs.size());
  const int cutStatus = cut.run(start);
  if (cutStatus != 0 || status != 0) return;
  for (std::size_t k = 0; k < cut.outputs.size(); ++k) {
    if (whole.e.outputs[k].repaints) continue;
    const QvArray &part = cut.outputs[k], &all = whole.outputs[k];
    const int first = qvtest::kLeavesFirstValid.count(whole.e.name) ? std::max(start, 0) : all.firstValid;
    const int end = std::min(m - qvtest::endsShort(whole.e, all.firstValid, start, m), +part.size);
    for (int i = std::max(first, 0); i < end; ++i)
      QV_REQUIRE(sameBits(part.data[i], all.data[i]),
                 "%s looks ahead: output %d item %d of %d is %.17g in %d bars, not %.17g", whole.e.name,
                 static_cast<int>(k), i, n, part.data[i], m, all.data[i]);
  }
}

void calculate(Input& in) {
  Heap heap(in);
  const QvCatalogueEntry& e = *qvCatalogueItem(in.choose(0, qvCatalogueSize() - 1));
  Call call{e, {}, {}, {}, {}};
  chooseParameters(in, call);
  const int start = in.flip() ? 0 : in.flip() ? in.choose(0, 100) : in.integer();
  const bool isLong = in.seldom(16);
  const int n = isLong ? 6000 : in.flip() ? in.choose(0, 40) : in.choose(0, 700);
  const bool regular = in.flip();  // whole series, which the properties are about

  for (int k = 0; k < e.barsCount; ++k) {
    BarSet& b = call.bars.emplace_back(in, regular ? n : std::max(0, n + in.choose(-2, 2)));
    if (!regular) b.disturb(in);
  }
  for (int k = 0; k < e.inputCount; ++k) {
    Series& a = call.inputs.emplace_back();
    if (!regular && in.seldom(8)) continue;
    const int size = regular ? n : std::max(0, n + in.choose(-3, 3)), spare = regular ? 0 : in.choose(0, 3);
    a.allocate(size + spare);
    fill(in, a, size + spare);
    a.size = size;
    if (!regular && in.seldom(4)) a.firstValid = firstValid(in, n);
  }
  call.outputs.resize(static_cast<std::size_t>(e.outputCount));
  std::vector<QvArray> used(call.outputs.size());
  std::vector<bool> borrowed(call.outputs.size());
  for (std::size_t k = 0; k < call.outputs.size() && !regular; ++k) {
    Series& out = call.outputs[k];
    const int state = in.choose(0, 5);
    if (state == 1 || state == 2) {  // used before, smaller or larger
      out.allocate(std::max(0, n + in.choose(-4, 4)));
      std::fill_n(out.data, out.capacity, kUsed);
      out.firstValid = kUsedFirst;
      out.size = in.flip() ? out.capacity : in.choose(0, out.capacity);
    } else if (state == 3) {  // an input's own block, or that of another output
      const int from = in.choose(0, 9);
      const QvArray* other = from == 9 && k > 0                ? &call.outputs[0]
                             : from < 2 && from < e.inputCount ? &call.inputs[static_cast<std::size_t>(from)]
                             : e.barsCount > 0 && from - 2 >= 0 && from - 2 < 7
                                 ? &qv::seriesOf(call.bars[0], from - 2)
                                 : nullptr;
      if (other && other->data) {
        static_cast<QvArray&>(out) = *other;
        borrowed[k] = true;
      }
    }
    used[k] = out;
  }
  bool anyBorrowed = false;
  for (bool b : borrowed) anyBorrowed |= b;
  Snapshot inputs;
  for (const BarSet& b : call.bars) inputs.add(b);
  for (const Series& a : call.inputs) inputs.add(a);

  heap.arm();
  int status = 0;
  const auto run = [&] { status = call.run(start); };
  // The ranges of a random walk are sums over the whole look-back; of passes there may be 10,000.
  if (isLong && !heap.fails() && std::strcmp(e.name, "qvRWI") != 0 && std::strcmp(e.name, "qvT3") != 0)
    requireQuick(n, e.name, run);
  else
    run();
  Heap::disarm();

  QV_REQUIRE(status >= -10, "%s answers %d", e.name, status);
  QV_REQUIRE(status != QV_MALLOC || heap.fails(), "%s answers -3 with memory left", e.name);
  if (!anyBorrowed) inputs.require();
  int count = INT_MAX;  // of the items that are calculated
  for (const BarSet& b : call.bars) count = std::min(count, +b.barsize);
  for (const Series& a : call.inputs) count = std::min(count, +a.size);
  for (const Series& a : call.outputs) count = std::min(count, +a.size);
  for (std::size_t k = 0; k < call.outputs.size(); ++k) {
    const QvArray& out = call.outputs[k];
    require(out);
    QV_REQUIRE(used[k].data == nullptr || (out.data == used[k].data && out.capacity == used[k].capacity),
               "%s let go of its output", e.name);
    if (status == QV_INVALID_PARM && !borrowed[k] && used[k].data)
      for (int i = 0; i < out.capacity; ++i)
        QV_REQUIRE(out.data[i] == kUsed, "%s refused and wrote item %d", e.name, i);
    if (status != 0 || borrowed[k] || anyBorrowed || count < 1) continue;
    const bool aheadOfBars = std::strcmp(e.name, "qvIchimokuKinkoHyo") == 0 && (k == 2 || k == 3);
    for (int i = out.size; used[k].data && !aheadOfBars && i < out.capacity; ++i)
      QV_REQUIRE(out.data[i] == kUsed || out.data[i] == 0.0, "%s wrote item %d beyond size %d", e.name, i,
                 out.size);
    if (qvtest::kKeepsEarlierItems.count(e.name) || qvtest::kLeavesFirstValid.count(e.name) ||
        hasVariableAverage(call))
      continue;
    // The last item of a series too short may hold what was summed up so far. The averages of highs and of
    // lows each have the length of their series.
    const bool ofEach = std::strcmp(e.name, "qvMAHighLow") == 0;
    const int length = ofEach ? std::min(+(k ? call.bars[0].low : call.bars[0].high).size, +out.size) : count;
    const int partial = out.firstValid >= length ? length - 1 : -1;
    for (int i = 0; i < out.size && i < out.firstValid; ++i)
      QV_REQUIRE(i == partial || sameBits(out.data[i], 0.0), "%s wrote item %d below first valid %d: %.17g",
                 e.name, i, out.firstValid, out.data[i]);
  }
  // Of two sets the cut would be one by dates.
  if (regular && !heap.fails() && n > 1 && e.barsCount < 2)
    requireNoLookAhead(call, n, in.choose(1, n), start, status);

  const double tolerance = in.number();
  qvCatalogueSettle(&e, call.params.data(), tolerance);
  qvCatalogueFirstValidOf(&e, in.integer(), call.params.data(), start);
  qvCatalogueFirstValid(&e, call.params.data(), start);
  for (std::size_t k = 0; k < call.outputs.size(); ++k)
    if (borrowed[k]) static_cast<QvArray&>(call.outputs[k]) = QvArray{};
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::Input in(data, size);
  qvfuzz::calculate(in);
  return 0;
}
