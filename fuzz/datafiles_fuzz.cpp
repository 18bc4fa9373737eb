// Readers, finders and listers over a directory whose files are the input. Twelve bytes choose the format,
// the security and the records; then come the files of that format in the order below, each with its length
// in two bytes before it (the last one to the end of the input).
#include "input.h"
#include "scratch.h"

namespace qvfuzz {
namespace {

struct Vendor {
  const char* type;
  const char* files[5];
  const char* securities[4];
};
constexpr Vendor kVendors[] = {
    {"CT", {"MASTER", "XMASTER", "F1.DAT", "F1.DOP", "F256.MWD"}, {"F1.DAT", "F256.MWD", "IBM@D", "SPX"}},
    {"DJ", {"MAPINFO.DAT", "SPX0.XQD", "SPX8.XQW"}, {"SPX0", "SPX8.XQW", "SPX", ">"}},
    {"TC", {"SPX.NDX", "B.NDX"}, {"SPX", "B.NDX", "b", ""}},
    {"TT", {"SPX.TTD", "FC_A.TTD"}, {"SPX", "fc_a", "SPX.TTD", "."}},
    {"TXT", {"txtinfo.txt", "A.CSV", "B.PRN"}, {"A.CSV", "b.prn", "txtinfo.txt", "A"}},
    {"CSI", {"A"}, {"A", "A", "A", "A"}},
};

class Reader {
 public:
  Reader(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  int byte() { return size_ > 0 ? (--size_, *data_++) : 0; }
  int small() {
    static constexpr int kOdd[] = {0, -1, 1, 2, 3, 7, 60, 100000, INT_MAX, INT_MIN, -2, -7};
    return kOdd[byte() % std::size(kOdd)];
  }
  void file(const Scratch& dir, const char* name, bool last) {
    std::size_t length = size_;
    if (!last && size_ >= 2) {
      length = static_cast<std::size_t>(data_[0] | data_[1] << 8);
      data_ += 2, size_ -= 2;
    }
    length = std::min(length, size_);
    if (length > 0) dir.write(name, data_, length);
    data_ += length, size_ -= length;
  }

 private:
  const uint8_t* data_;
  std::size_t size_;
};

void requireConsistent(const QvBars& b) {
  for (int k = 0; k < qv::kSeriesCount; ++k) {
    const QvArray& a = qv::seriesOf(b, k);
    QV_REQUIRE(a.size == b.barsize && a.capacity == b.datasize && (a.data || a.capacity == 0),
               "series %d: %d %d, %d %d", k, a.size, a.capacity, b.barsize, b.datasize);
  }
  QV_REQUIRE(b.barsize >= 0 && b.barsize <= b.datasize && b.reccnt >= 0, "%d of %d, %d", b.barsize,
             b.datasize, b.reccnt);
  QV_REQUIRE(std::memchr(b.path, 0, sizeof b.path) && std::memchr(b.name, 0, sizeof b.name) &&
                 std::memchr(b.description, 0, sizeof b.description) &&
                 std::memchr(b.symbol, 0, sizeof b.symbol) && std::memchr(b.cusip, 0, sizeof b.cusip),
             "a text without an end");
}

void readFiles(const uint8_t* data, std::size_t size) {
  static const Scratch dir;
  dir.clear();
  Reader in(data, size);
  const Vendor& vendor = kVendors[in.byte() % std::size(kVendors)];
  const char* security = vendor.securities[in.byte() % 4];
  const int start = in.small(), count = in.small(), room = in.byte(), fails = in.byte();
  const int dateHigh = in.byte(), dateLow = in.byte(), field = in.byte(), column = in.byte();
  in.byte(), in.byte();
  const auto total = static_cast<int>(size);
  for (std::size_t k = 0; k < std::size(vendor.files) && vendor.files[k]; ++k)
    in.file(dir, vendor.files[k], k + 1 == std::size(vendor.files) || !vendor.files[k + 1]);

  const long live = qv::memory::liveBlocks();
  const std::string listing = dir / "listing";
  const double date = dateHigh == 255   ? NAN
                      : dateHigh == 254 ? 1e300
                                        : dateHigh * 256.0 + dateLow + dateLow / 256.0;
  requireQuick(total + 2000, "reading", [&] {
    BarSet bars;
    if (room % 4 == 1) qvAllocBars(&bars, room / 4);
    if (fails % 4 == 3) qv::memory::failAllocation(fails / 4);
    const int status = qvFILEread(vendor.type, &bars, dir.path(), security, start, count);
    qv::memory::failAllocation(0);
    QV_REQUIRE(status <= 0 && status >= -10, "%d", status);
    requireConsistent(bars);

    double found = -77;
    if (fails % 4 == 2) qv::memory::failAllocation(fails / 4);
    const int number = qvFILEfindrec(vendor.type, dir.path(), security, date, &found);
    qv::memory::failAllocation(0);
    // What the front gives where nothing is found is 0.
    QV_REQUIRE(number >= -10 && (number >= 0 || found == 0.0 || found == -77), "%d %g", number, found);

    if (fails % 4 == 1) qv::memory::failAllocation(fails / 4);
    const int listed = qvFILElist(vendor.type, dir.path(), listing.c_str(), 0);
    qv::memory::failAllocation(0);
    QV_REQUIRE(listed <= 0 && listed >= -10, "%d", listed);
    if (status == 0) qvFILEprintinfo(&bars, listing.c_str(), 1);

    Series array;
    if (vendor.type[0] == 'C' && vendor.type[1] == 'T') {
      static constexpr const char* kFields[] = {"dt", "op", "hi", "lo", "cl", "vol", "oi", "?"};
      qvCTreadarray(&array, dir.path(), security, kFields[field % 8], start, count);
    } else if (vendor.type[0] == 'T' && vendor.type[1] == 'X') {
      qvTXTreadarray(&array, dir.path(), security, field % 2 ? "," : " \t;", field % 5, column % 16 - 2,
                     start, count);
    }
    require(array);
  });
  QV_REQUIRE(qv::memory::liveBlocks() == live, "blocks leaked");
}

}  // namespace
}  // namespace qvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  qvfuzz::readFiles(data, size);
  return 0;
}
