// A digest of results: two builds of the library whose digests are equal give the same bits.
#pragma once

#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/series.h"

namespace qvtest {

class Digest {
 public:
  void addBits(std::uint64_t bits) {
    for (int byte = 0; byte < 8; ++byte) state_ = (state_ ^ ((bits >> 8 * byte) & 0xff)) * 0x100000001b3u;
  }
  // Every not-a-number is the same: processors differ in the sign of those that they make.
  void add(double v) { addBits(v == v ? std::bit_cast<std::uint64_t>(v) : 0x7ff8000000000000u); }
  void add(int v) { addBits(static_cast<std::uint32_t>(v)); }
  void add(const char* text) {
    for (; *text; ++text) addBits(static_cast<unsigned char>(*text));
    addBits(0);
  }
  void add(const QvArray& a) {
    add(a.size), add(a.firstValid);
    for (int i = 0; a.data && i < a.size; ++i) add(a.data[i]);
  }
  void add(const QvBars& b) {
    add(b.barsize);
    for (const QvArray* a : {&b.date, &b.open, &b.high, &b.low, &b.close, &b.volume, &b.openInterest})
      add(*a);
  }
  std::uint64_t value() const { return state_; }

 private:
  std::uint64_t state_ = 0xcbf29ce484222325u;
};

using Digests = std::map<std::string, Digest>;  // by the function's name

// Numbers that are the same everywhere: multiples of 1/64, so that arithmetic with them has no rounding.
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}
  int whole(int from, int to) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return from + static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(to - from + 1));
  }
  double number(int from, int to) { return whole(from * 64, to * 64) / 64.0; }

 private:
  std::uint64_t state_;
};

// The bundled prices, and bars of what breaks careless code: halts, ties, gaps, zeros, wild and missing
// items.
struct Data {
  qv::Bars prices, rough;
};

void digestCalculations(const Data& data, Digests& digests);
void digestFunctions(const Data& data, Digests& digests);
void digestRuns(const Data& data, Digests& digests);

}  // namespace qvtest
