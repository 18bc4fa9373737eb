// The text layout: whatever a layout file holds, what was read is written so that it reads back the same, and
// text files are read by any layout record.
#include "input.h"
#include "scratch.h"

namespace qvfuzz {
namespace {

bool same(const QvTxtInfo& a, const QvTxtInfo& b) {
  return std::memcmp(&a, &b, offsetof(QvTxtInfo, delimiters)) == 0 &&
         std::strncmp(a.delimiters, b.delimiters, sizeof a.delimiters) == 0;
}

void readLayout(const uint8_t* data, std::size_t size) {
  static const Scratch dir;
  Input in(data, size);
  Heap heap(in);
  const bool raw = in.flip(), damaged = in.flip();
  const int start = in.integer(), count = in.choose(0, 3) ? in.choose(-1, 40) : in.integer();
  const double date = in.number();
  QvTxtInfo info;
  std::memset(&info, 0x5A, sizeof info);
  if (raw) {
    int32_t* const fields[] = {
        &info.dateColumn,  &info.timeColumn,   &info.openColumn,         &info.highColumn, &info.lowColumn,
        &info.closeColumn, &info.volumeColumn, &info.openInterestColumn, &info.dateFormat, &info.skip};
    for (int32_t* field : fields) *field = damaged ? in.integer() : in.choose(0, 9);
    const std::string delimiters = in.text(sizeof info.delimiters);
    std::memset(info.delimiters, 0, sizeof info.delimiters);
    std::memcpy(info.delimiters, delimiters.data(), delimiters.size());
  } else {
    const std::string layout = in.text(600);
    dir.write("layout.txt", reinterpret_cast<const uint8_t*>(layout.data()), layout.size());
    heap.arm();
    const int status = qvTXTreadinfo(dir.path(), "LAYOUT.TXT", &info);
    Heap::disarm();
    QV_REQUIRE(status == 0 || (status == QV_MALLOC && heap.fails()), "%d", status);
    if (status != 0) return;
    QvTxtInfo again{};
    // A second line of delimiters may leave a backslash before a "t", which stands for a tab; a carriage
    // return at the end of the line belongs to the line.
    if (std::memchr(info.delimiters, '\\', sizeof info.delimiters)) return;
    if (std::memchr(info.delimiters, '\r', sizeof info.delimiters)) return;
    QV_REQUIRE(qvTXTwriteinfo(dir.path(), "again.txt", &info) == 0, "not written");
    QV_REQUIRE(qvTXTreadinfo(dir.path(), "again.txt", &again) == 0 && same(info, again),
               "not the same layout");
  }
  const std::string text = in.rest();
  dir.write("data.csv", reinterpret_cast<const uint8_t*>(text.data()), text.size());
  heap.arm();
  requireQuick(static_cast<int>(text.size()) + 2000, "reading", [&] {
    BarSet bars;
    const int status = qvTXTread(&bars, dir.path(), "data.csv", &info, start, count);
    QV_REQUIRE(status <= 0 && status >= -9, "%d", status);
    QV_REQUIRE(bars.barsize >= 0 && bars.barsize <= bars.datasize, "%d of %d", bars.barsize, bars.datasize);
    double found = 0;
    QV_REQUIRE(qvTXTfindrec(dir.path(), "data.csv", &info, date, &found) >= -9, "finder");
    Series array;
    qvTXTreadarray(&array, dir.path(), "data.csv", info.delimiters[15] ? ",;" : info.delimiters, info.skip,
                   info.closeColumn, start, count);
    require(array);
  });
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::readLayout(data, size);
  return 0;
}
