// Streams: what updates in any pieces give is what the call over the whole series gives, and a saved block
// may hold any bytes, also behind a checksum that fits them.
#include "input.h"
#include "support/catalogue_call.h"

namespace qvfuzz {
namespace {

constexpr int kBars = 90;

class Stream {
 public:
  Stream() = default;
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { qvStreamClose(stream); }
  QvStream* stream = nullptr;
};

// The same numbers for every series that a stream may ask for.
struct Feed {
  std::vector<double> items;
  std::vector<std::vector<double>> outputs;

  std::vector<const double*> from(int i) const { return std::vector<const double*>(24, items.data() + i); }
  std::vector<double*> into(int i) {
    std::vector<double*> at;
    for (auto& out : outputs) at.push_back(out.data() + i);
    return at;
  }
};

std::uint64_t checksumOf(const std::vector<unsigned char>& bytes, std::size_t count) {
  std::uint64_t sum = 0xCBF29CE484222325u;
  for (std::size_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * 0x100000001B3u;
  return sum;
}

void loadAnything(std::vector<unsigned char> block, Feed& feed, const Heap& heap) {
  if (block.size() < 8) return;
  const std::uint64_t sum = checksumOf(block, block.size() - 8);
  for (std::size_t k = 0; k < 8; ++k) block[block.size() - 8 + k] = static_cast<unsigned char>(sum >> 8 * k);
  Stream loaded;
  heap.arm();
  const int status = qvStreamLoad(block.data(), static_cast<int>(block.size()), &loaded.stream);
  Heap::disarm();
  QV_REQUIRE(status == 0 || status == QV_FILE_READ || status == QV_UNKNOWN || status == QV_MALLOC, "%d",
             status);
  QV_REQUIRE((status == 0) == (loaded.stream != nullptr), "%d", status);
  if (status != 0) return;
  feed.outputs.assign(static_cast<std::size_t>(qvStreamOutputCount(loaded.stream)),
                      std::vector<double>(kBars));
  for (int i = 0; i + 7 <= kBars; i += 7)
    qvStreamUpdate(loaded.stream, feed.from(i).data(), 7, feed.into(i).data());
  qvStreamPeek(loaded.stream, feed.from(0).data(), feed.into(0).data());
  qvStreamReplaceLast(loaded.stream, feed.from(1).data(), feed.into(0).data());
  std::vector<unsigned char> again(
      static_cast<std::size_t>(std::max(0, qvStreamSave(loaded.stream, nullptr, 0))));
  qvStreamSave(loaded.stream, again.data(), static_cast<int>(again.size()));
}

void stream(const uint8_t* data, std::size_t size) {
  Input in(data, size);
  const Heap heap(in);
  Series source;
  source.allocate(kBars);
  fill(in, source, kBars);
  Feed feed{{source.data, source.data + kBars}, {}};
  if (in.seldom(4)) {
    std::vector<unsigned char> block = {'Q', 'V', 'S', 'T', 1, 0, 0, 0};
    const std::string rest = in.rest();
    block.insert(block.end(), rest.begin(), rest.end());
    block.resize(block.size() + 8);
    loadAnything(block, feed, heap);
    return;
  }
  const QvCatalogueEntry& e = *qvCatalogueItem(in.choose(0, qvCatalogueSize() - 1));
  std::vector<double> params;
  for (int k = 0; k < e.paramCount; ++k)
    params.push_back(in.choose(0, 2) ? e.params[k].defaultValue : in.flip() ? in.choose(0, 30) : in.number());
  const int start = in.flip() ? 0 : in.choose(0, 20);
  Stream s;
  heap.arm();
  const int status = qvStreamOpen(&e, params.data(), start, &s.stream);
  Heap::disarm();
  QV_REQUIRE((status == 0) == (s.stream != nullptr), "%s: %d", e.name, status);
  if (status != 0) return;
  feed.outputs.assign(static_cast<std::size_t>(e.outputCount), std::vector<double>(kBars));
  // Two sets are matched by their dates, which rise in what a stream is given.
  const bool compared = e.barsCount <= 1;
  for (int i = 0; i < kBars;) {
    const int count = std::min(in.choose(1, 40), kBars - i);
    if (in.flip()) qvStreamPeek(s.stream, feed.from(0).data(), feed.into(i).data());
    QV_REQUIRE(qvStreamUpdate(s.stream, feed.from(i).data(), count, feed.into(i).data()) == 0, "%s", e.name);
    if (in.seldom(4))
      qvStreamReplaceLast(s.stream, feed.from(i + count - 1).data(), feed.into(i + count - 1).data());
    i += count;
  }
  BarSet bars;
  QV_REQUIRE(qvAllocBars(&bars, kBars) == 0, "memory");
  for (int k = 0; k < qv::kSeriesCount; ++k) std::copy_n(source.data, kBars, qv::seriesOf(bars, k).data);
  const QvBars* const sets[] = {&bars, &bars};
  const QvArray* const inputs[] = {&source, &source, &source, &source};
  std::vector<Series> outputs(static_cast<std::size_t>(e.outputCount));
  std::vector<QvArray*> out;
  for (Series& o : outputs) out.push_back(&o);
  if (compared && qvCatalogueCall(&e, sets, inputs, out.data(), params.data(), start) == 0)
    for (std::size_t k = 0; k < out.size(); ++k) {
      const int first = qvStreamFirstValid(s.stream, static_cast<int>(k));
      const int end = e.outputs[k].repaints ? 0 : kBars - qvtest::endsShort(e, first, start, kBars);
      for (int i = first; i >= 0 && i < end; ++i)
        QV_REQUIRE(sameBits(feed.outputs[k][static_cast<std::size_t>(i)], out[k]->data[i]),
                   "%s: output %d of bar %d is %.17g in a stream, not %.17g", e.name, static_cast<int>(k), i,
                   feed.outputs[k][static_cast<std::size_t>(i)], out[k]->data[i]);
    }
  std::vector<unsigned char> block(static_cast<std::size_t>(std::max(0, qvStreamSave(s.stream, nullptr, 0))));
  qvStreamSave(s.stream, block.data(), static_cast<int>(block.size()));
  for (int k = in.choose(0, 6); k > 0 && !block.empty(); --k)
    block[static_cast<std::size_t>(in.choose(0, static_cast<int>(block.size()) - 1))] =
        static_cast<unsigned char>(in.flip() ? 255 * in.choose(0, 1) : in.choose(0, 255));
  if (in.seldom(4)) block.resize(static_cast<std::size_t>(in.choose(0, static_cast<int>(block.size()))));
  loadAnything(block, feed, heap);
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::stream(data, size);
  return 0;
}
