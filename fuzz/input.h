// What the bytes of a fuzz input stand for: numbers of all kinds, series, bar sets; and what must hold
// afterwards.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/calculation.h"
#include "core/guarded_heap.h"
#include "core/memory.h"
#include "qvlib60.h"

namespace qvfuzz {

// A broken rule ends the run like a crash; what it was about stands on standard error.
#define QV_REQUIRE(condition, ...)                                                 \
  do {                                                                             \
    if (!(condition)) {                                                            \
      std::fprintf(stderr, "%s:%d: not so: %s: ", __FILE__, __LINE__, #condition); \
      std::fprintf(stderr, __VA_ARGS__);                                           \
      std::fputc('\n', stderr);                                                    \
      std::abort();                                                                \
    }                                                                              \
  } while (false)

inline bool sameBits(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

class Input {
 public:
  Input(const uint8_t* data, std::size_t size) : bytes_(data, size) {}

  // from .. to, both included; single bytes come from the input's end, texts from its beginning.
  int choose(int from, int to) { return bytes_.ConsumeIntegralInRange<int>(from, to); }
  bool flip() { return bytes_.ConsumeBool(); }
  // True one time in n.
  bool seldom(int n) { return choose(0, n - 1) == n - 1; }
  bool empty() { return bytes_.remaining_bytes() == 0; }
  std::size_t left() { return bytes_.remaining_bytes(); }

  // Texts end with the input or at a backslash that is followed by another character.
  std::string text(std::size_t longest) { return bytes_.ConsumeRandomLengthString(longest); }
  // Without zero bytes: what a char* can hold.
  std::string cText(std::size_t longest) {
    std::string s = text(longest);
    return s.c_str();
  }
  std::string rest() { return bytes_.ConsumeRemainingBytesAsString(); }

  int integer() {
    static constexpr int kOdd[] = {0, -1, 1, INT_MIN, INT_MAX, INT_MIN + 1, INT_MAX - 1, 2, 3, 1 << 30};
    switch (choose(0, 3)) {
      case 0:
        return kOdd[choose(0, std::size(kOdd) - 1)];
      case 1:
        return choose(-8, 300);
      case 2:
        return choose(0, 30);
      default:
        return bytes_.ConsumeIntegral<int>();
    }
  }
  double number() {
    static constexpr double kOdd[] = {0.0,           -0.0,  1.0,     -1.0,     HUGE_VAL,
                                      -HUGE_VAL,     NAN,   DBL_MAX, -DBL_MAX, DBL_MIN,
                                      5e-324,        1e300, -1e300,  1e-300,   2147483648.0,
                                      -2147483649.0, 0.5,   100.0,   1e8,      9007199254740992.0,
                                      0.001,         1e15};
    switch (choose(0, 3)) {
      case 0:
        return kOdd[choose(0, std::size(kOdd) - 1)];
      case 1:
        return choose(-1000, 1000) / 8.0;
      case 2:
        return choose(0, 1 << 20) / 1024.0;
      default:
        return fromBits();
    }
  }
  double fromBits() {
    const auto bits = bytes_.ConsumeIntegral<std::uint64_t>();
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
  }

 private:
  FuzzedDataProvider bytes_;
};

// ---- Series -----------------------------------------------------------------------------------------

// A record over exactly as many items as it says, so that a step beyond is found.
class Series : public QvArray {
 public:
  Series() : QvArray{} {}
  Series(const Series&) = delete;
  Series& operator=(const Series&) = delete;
  ~Series() { qvFreeArray(this); }

  void allocate(int n) {
    qvFreeArray(this);
    QV_REQUIRE(qvAllocArray(this, n) == 0, "%d items", n);
  }
};

// A series that is missing has the size of its set.
inline void require(const QvArray& a) {
  QV_REQUIRE(a.data ? a.size <= a.capacity : a.capacity == 0, "size %d capacity %d", a.size, a.capacity);
}

// A shape, then single items of the input's choice. 200 bars a second from here on would be too slow: the
// shape comes from a seed.
inline void fill(Input& in, QvArray& a, int n) {
  enum { kWalk, kFlat, kTies, kOffset, kRising, kFalling, kZeros, kWild, kShapes };
  const int shape = in.choose(0, kShapes - 1);
  std::minstd_rand random(static_cast<unsigned>(in.choose(1, 255)));
  const auto unit = [&] { return static_cast<double>(random()) / 1073741824.0 - 1.0; };
  double walk = 100.0;
  for (int i = 0; i < n; ++i) {
    const double u = unit();
    walk += u;
    const double shapes[] = {walk,
                             42.125,
                             std::floor(4 * u),
                             1e8 + 0.01 * std::floor(10 * u),
                             1.0 + i,
                             2.0 * n - i,
                             u < 0 ? 0.0 : walk,
                             u > 0.9 ? NAN : u < -0.9 ? HUGE_VAL : u > 0.8 ? 1e308 : walk};
    a.data[i] = shapes[shape];
  }
  for (int k = in.choose(0, 5); k > 0 && n > 0; --k) a.data[in.choose(0, n - 1)] = in.number();
}

inline int firstValid(Input& in, int n) {
  return in.flip() ? 0 : in.flip() ? in.choose(0, n) : in.integer();
}

// ---- Bar sets ---------------------------------------------------------------------------------------

class BarSet : public QvBars {
 public:
  BarSet() : QvBars{} {}
  BarSet(const BarSet&) = delete;
  BarSet& operator=(const BarSet&) = delete;
  ~BarSet() { qvFreeBars(this); }

  // n bars, mostly ones that a market could have had.
  BarSet(Input& in, int n) : QvBars{} { fill(in, n); }
  void fill(Input& in, int n) {
    QV_REQUIRE(qvAllocBars(this, n) == 0, "%d bars", n);
    const bool market = in.choose(0, 3) > 0;
    std::minstd_rand random(static_cast<unsigned>(in.choose(1, 255)));
    const auto unit = [&] { return static_cast<double>(random()) / 2147483648.0; };
    const double step = in.flip() ? 1.0 : in.choose(1, 400) / 96.0;
    double price = 100.0, day = 36526.0;
    for (int i = 0; i < n; ++i) {
      const double begins = price + unit() - 0.5;
      price = std::fmax(1.0, begins + 2 * unit() - 1.0);
      date.data[i] = day += step;
      open.data[i] = begins;
      close.data[i] = price;
      high.data[i] = std::fmax(begins, price) + unit();
      low.data[i] = std::fmin(begins, price) - unit();
      volume.data[i] = std::floor(1000 + 9000 * unit());
      openInterest.data[i] = std::floor(500 + 1000 * unit());
    }
    for (int s = 0; !market && s < qv::kSeriesCount; ++s)
      if (in.flip()) qvfuzz::fill(in, qv::seriesOf(*this, s), n);
    for (int k = in.choose(0, 6); k > 0 && n > 0; --k)
      qv::seriesOf(*this, in.choose(0, qv::kSeriesCount - 1)).data[in.choose(0, n - 1)] = in.number();
  }
  // What else a well-formed record may hold.
  void disturb(Input& in) {
    for (int k = in.choose(0, 3); k > 0; --k) {
      QvArray& a = qv::seriesOf(*this, in.choose(0, qv::kSeriesCount - 1));
      switch (in.choose(0, 3)) {
        case 0:
          qvFreeArray(&a);
          break;
        case 1:
          a.firstValid = firstValid(in, barsize);
          break;
        case 2:
          a.size = in.choose(-1, a.capacity);
          break;
        default:
          if (const int n = in.choose(0, 20); a.capacity > 0 && n <= a.capacity) {
            qvFreeArray(&a);
            qvAllocArray(&a, n);
          }
      }
    }
    if (in.seldom(4)) barsize = in.choose(-1, datasize);
  }
};

// ---- What must stay as it was -----------------------------------------------------------------------

class Snapshot {
 public:
  void add(const QvArray& a) {
    kept_.push_back(
        {&a, a, a.data ? std::vector<double>(a.data, a.data + a.capacity) : std::vector<double>()});
  }
  void add(const QvBars& b) {
    for (int s = 0; s < qv::kSeriesCount; ++s) add(qv::seriesOf(b, s));
  }
  void require() const {
    for (const Kept& k : kept_) {
      QV_REQUIRE(std::memcmp(k.array, &k.record, sizeof k.record) == 0, "an input's record was changed");
      QV_REQUIRE(
          k.items.empty() || std::memcmp(k.record.data, k.items.data(), k.items.size() * sizeof(double)) == 0,
          "an input's items were changed");
    }
  }

 private:
  struct Kept {
    const QvArray* array;
    QvArray record;
    std::vector<double> items;
  };
  std::vector<Kept> kept_;
};

// ---- Around every input -----------------------------------------------------------------------------

// One of the next allocations fails, in one input of four; all blocks must be back at the end.
class Heap {
 public:
  explicit Heap(Input& in) : live_(qv::memory::liveBlocks()), fails_(in.seldom(4) ? in.choose(1, 40) : 0) {}
  ~Heap() {
    qv::memory::failAllocation(0);
    QV_REQUIRE(qv::memory::liveBlocks() == live_, "%ld blocks, then %ld", live_, qv::memory::liveBlocks());
  }
  // From here on: after the input's own records are made.
  void arm() const { qv::memory::failAllocation(fails_); }
  static void disarm() { qv::memory::failAllocation(0); }
  bool fails() const { return fails_ != 0; }

 private:
  const long live_, fails_;
};

// Counts of the input's choice ask for more bars than there is memory: more than this is refused.
inline const bool kBounded = (qv::memory::largestGiven.store(std::size_t{1} << 24), true);

inline double processorSeconds() {
  timespec t;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// The quickest of three runs stays below the bound: a fixed multiple of the number of items.
template <typename Run>
void requireQuick(int items, const char* what, Run run) {
  const double bound = 0.005 + 20e-6 * items;  // a hundred times what a bar costs under the sanitizers
  for (int trial = 0; trial < 3; ++trial) {
    const double begin = processorSeconds();
    run();
    if (processorSeconds() - begin <= bound) return;
  }
  QV_REQUIRE(false, "%s takes too long for %d items", what, items);
}

}  // namespace qvfuzz
