// Vendor files written byte by byte, and the properties that the readers of all formats share.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "expect.h"
#include "files.h"
#include "series.h"

namespace qvtest {

// ---- Bytes ----------------------------------------------------------------------------------------

inline std::string little(std::int64_t value, int bytes) {
  std::string text;
  for (int k = 0; k < bytes; ++k) text += static_cast<char>(value >> 8 * k & 0xFF);
  return text;
}

// Sign, exponent and mantissa of a number, put together anew: value = 0.1mmm... * 2^(exponent - 128).
inline std::string mbf(double value) {
  if (value == 0) return std::string(4, '\0');
  int exponent;
  const auto mantissa = static_cast<std::int64_t>(std::ldexp(std::frexp(std::fabs(value), &exponent), 24));
  return little(mantissa - 0x800000 + (value < 0 ? 0x800000 : 0), 3) + little(exponent + 128, 1);
}

inline std::string ieee(double value) {
  const auto single = static_cast<float>(value);
  std::uint32_t bits;
  std::memcpy(&bits, &single, sizeof bits);
  return little(bits, 4);
}

inline std::string padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

// A record of `size` bytes with the given fields, every other byte a 'x' that no reader may look at.
struct FieldBytes {
  std::size_t offset;
  std::string bytes;
};
inline std::string record(std::size_t size, std::initializer_list<FieldBytes> fields) {
  std::string text(size, 'x');
  for (const FieldBytes& f : fields) text.replace(f.offset, f.bytes.size(), f.bytes);
  return text;
}

// (year - 1900) * 10000 + month * 100 + day, and hhmmss.
inline double vendorDate(double date) {
  int y, m, d;
  qvDateToYMD(date, &y, &m, &d, nullptr, nullptr, nullptr);
  return (y - 1900) * 10000 + m * 100 + d;
}

// ---- Bar sets -------------------------------------------------------------------------------------

inline void expectConsistent(const QvBars& b) {
  for (const QvArray* a : {&b.date, &b.open, &b.high, &b.low, &b.close, &b.volume, &b.openInterest}) {
    EXPECT_EQ(a->size, b.barsize);
    EXPECT_EQ(a->capacity, b.datasize);
    EXPECT_TRUE(a->data || a->capacity == 0);
  }
  EXPECT_GE(b.barsize, 0);
  EXPECT_LE(b.barsize, b.datasize);
}

// The seven numbers of a bar, in the order of the series.
inline std::vector<double> barOf(const QvBars& b, int i) {
  std::vector<double> values;
  for (const QvArray* a : {&b.date, &b.open, &b.high, &b.low, &b.close, &b.volume, &b.openInterest})
    values.push_back(qvGetArrayItem(a, i));
  return values;
}

// A bar set as an earlier file might have left it: nothing in it may show after the next read.
inline void fillWithOldFile(QvBars& b, int capacity) {
  std::memset(b.path, 'z', reinterpret_cast<char*>(&b + 1) - b.path);
  qvAllocBars(&b, capacity);
  for (QvArray* a : {&b.date, &b.open, &b.high, &b.low, &b.close, &b.volume, &b.openInterest}) {
    std::fill_n(a->data, capacity, 777.0);
    a->firstValid = 2;
  }
  b.reccnt = -5;
}

inline std::string infoBytes(const QvBars& b) {
  const char* begin = reinterpret_cast<const char*>(&b.reccnt);
  return {begin, reinterpret_cast<const char*>(&b + 1)};
}

// The file "list" after its two header lines.
inline std::string linesOfListing(const ScratchDir& dir) {
  const std::string text = dir.read("list");
  return text.substr(text.find('\n', text.find('\n') + 1) + 1);
}

// ---- What all readers share -----------------------------------------------------------------------

using Read = std::function<int(QvBars*, int start, int count)>;

// `read` reads a file of six records that have the closes 1 to 6 and all seven series.
inline void expectRecordRange(const Read& read, bool storesOpenInterest = true) {
  struct Range {
    int start, count;
    std::vector<double> fresh, inFour;  // the closes read into an empty set, and into four bars
    int allocated;
  };
  const std::vector<double> all{1, 2, 3, 4, 5, 6};
  const Range ranges[] = {
      {0, -1, all, {1, 2, 3, 4}, 6},
      {2, -1, {3, 4, 5, 6}, {3, 4, 5, 6}, 4},
      {5, INT_MIN, {6}, {6}, 1},
      {2, 3, {3, 4, 5}, {3, 4, 5}, 3},
      {4, 5, {5, 6}, {5, 6}, 5},
      {1, 50, {2, 3, 4, 5, 6}, {2, 3, 4, 5}, 50},
      {-1, 2, {5, 6}, {5, 6}, 2},
      {-1, -1, all, {3, 4, 5, 6}, 6},
      {-7, 50, all, {3, 4, 5, 6}, 50},
      {INT_MIN, INT_MIN, all, {3, 4, 5, 6}, 6},
      {0, 0, {}, {}, 0},
      {-1, 0, {}, {}, 0},
      {5, 0, {}, {}, 0},
  };
  for (const Range& r : ranges) {
    SCOPED_TRACE(std::to_string(r.start) + " " + std::to_string(r.count));
    Bars bars, used;
    ASSERT_EQ(read(&bars, r.start, r.count), 0);
    EXPECT_EQ(itemsOf(bars.close), r.fresh);
    EXPECT_EQ(bars.datasize, r.allocated);
    EXPECT_EQ(bars.reccnt, 6);
    expectConsistent(bars);
    fillWithOldFile(used, 4);
    ASSERT_EQ(read(&used, r.start, r.count), 0);
    EXPECT_EQ(itemsOf(used.close), r.inFour);
    EXPECT_EQ(used.datasize, 4);
    EXPECT_TRUE(r.count == 0 || used.close.firstValid == 0);
    expectConsistent(used);
    Bars same;  // the same bars into a set of four that is new: nothing may differ
    qvAllocBars(&same, 4);
    ASSERT_EQ(read(&same, r.start, r.count), 0);
    EXPECT_EQ(infoBytes(used), infoBytes(same));
    for (int i = 0; i < used.barsize; ++i) {
      auto a = barOf(used, i), b = barOf(same, i);
      if (!storesOpenInterest) a[6] = b[6];
      EXPECT_EQ(a, b);
    }
  }
  for (const int start : {6, 7, INT_MAX})
    for (const int count : {-1, 0, 1, INT_MAX}) {
      Bars bars, before;
      EXPECT_EQ(read(&bars, start, count), -9);
      EXPECT_EQ(std::memcmp(&bars, &before, sizeof(QvBars)), 0) << "untouched";
    }
  Bars broken;
  qvAllocBars(&broken, 2);
  double* volume = std::exchange(broken.volume.data, nullptr);
  EXPECT_EQ(read(&broken, 0, 1), -1) << "a bar set that lacks a series";
  broken.volume.data = volume;
}

// Dates and expected numbers; -9 where nothing is found. found: the date of the record found.
struct Finding {
  double date;
  int number;
  double found;
};
using Find = std::function<int(double, double*)>;
inline void expectFindings(const Find& find, std::initializer_list<Finding> findings) {
  for (const Finding& f : findings) {
    double found = -77;
    EXPECT_EQ(find(f.date, &found), f.number) << f.date;
    EXPECT_EQ(found, f.number < 0 ? -77 : f.found) << f.date;
    EXPECT_EQ(find(f.date, nullptr), f.number) << f.date;
  }
}

// Whatever stands in the files: an error code, or fewer bars in a consistent set.
inline void expectSurvives(const Read& read, const Find& find) {
  for (const auto& [start, count] : {std::pair{0, -1}, {-1, 3}, {2, 2}, {2, -1}, {0, 0}, {-3, -1}}) {
    Bars bars, used;
    fillWithOldFile(used, 3);
    const int status = read(&bars, start, count);
    EXPECT_LE(status, 0);
    EXPECT_GE(status, -9);
    expectConsistent(bars);
    EXPECT_GE(bars.reccnt, 0);
    EXPECT_EQ(read(&used, start, count), status);
    expectConsistent(used);
    EXPECT_EQ(used.datasize, 3);
  }
  for (const double date : {36528.0, 36530.5, 0.0, 1e300, kNaN}) {
    double found;
    EXPECT_GE(find(date, &found), -9);
  }
}

// Runs `check` with the file cut at every byte, then with random bytes in it, then leaves it whole.
inline void withDamage(const ScratchDir& dir, const std::string& name, const std::function<void()>& check) {
  const std::string whole = dir.read(name);
  for (std::size_t n = 0; n < whole.size() && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE(name + " cut at " + std::to_string(n));
    dir.write(name, whole.substr(0, n));
    check();
  }
  std::mt19937 random(static_cast<unsigned>(whole.size()));
  for (int k = 0; k < 120 && !testing::Test::HasFailure(); ++k) {
    SCOPED_TRACE(name + " garbled " + std::to_string(k));
    std::string bytes = whole;
    for (auto changes = k % 3 ? 1 + random() % 8 : bytes.size() * 2; changes > 0; --changes)
      bytes[random() % bytes.size()] = k % 2 ? static_cast<char>(random()) : "\0\xFF\x7F\x80"[random() % 4];
    dir.write(name, bytes);
    check();
  }
  dir.write(name, whole);
}

}  // namespace qvtest
