// Vendor files written byte by byte, and the properties that the readers of all formats share.
#pragma once

#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>

#include "core/calculation.h"
#include "expect.h"
#include "files.h"
#include "series.h"

namespace qvtest {

constexpr int kMonday = 36528;  // 3 January 2000

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
  return little(std::bit_cast<std::int32_t>(static_cast<float>(value)), 4);
}

inline std::string padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

// Bytes that no reader may look at.
inline std::string gap(std::size_t width) {
  return std::string(width, 'x');
}

// (year - 1900) * 10000 + month * 100 + day.
inline double vendorDate(double date) {
  int y, m, d;
  qvDateToYMD(date, &y, &m, &d, nullptr, nullptr, nullptr);
  return (y - 1900) * 10000 + m * 100 + d;
}

// ---- Bar sets -------------------------------------------------------------------------------------

inline void expectConsistent(const QvBars& b) {
  for (int k = 0; k < qv::kSeriesCount; ++k) {
    const QvArray& a = qv::seriesOf(b, k);
    EXPECT_TRUE(a.size == b.barsize && a.capacity == b.datasize && (a.data || a.capacity == 0)) << k;
  }
  EXPECT_TRUE(b.barsize >= 0 && b.barsize <= b.datasize);
}

// The numbers of a bar, in the order of the series.
inline Items barOf(const QvBars& b, int i, int series = qv::kSeriesCount) {
  Items values;
  for (int k = 0; k < series; ++k) values.push_back(qvGetArrayItem(&qv::seriesOf(b, k), i));
  return values;
}

// A bar set as an earlier file might have left it: nothing in it may show after the next read.
inline void fillWithOldFile(QvBars& b, int capacity) {
  std::fill(b.path, reinterpret_cast<char*>(&b + 1), 'z');
  qvAllocBars(&b, capacity);
  for (int k = 0; k < qv::kSeriesCount; ++k) {
    std::fill_n(qv::seriesOf(b, k).data, capacity, 777.0);
    qv::seriesOf(b, k).firstValid = 2;
  }
  b.reccnt = -5;
}

// ---- What all readers share -----------------------------------------------------------------------

using Read = std::function<int(QvBars*, int start, int count)>;

// `read` reads a file of six records that have the closes 1 to 6, into the first `series` of a set.
inline void expectRecordRange(const Read& read, int series = qv::kSeriesCount) {
  Bars all;
  ASSERT_EQ(read(&all, 0, -1), 0);
  EXPECT_EQ(itemsOf(all.close), (Items{1, 2, 3, 4, 5, 6}));
  // Start, count, the closes of the first and last bar.
  int ranges[][4] = {{0, -1, 1, 6},      {1, -1, 2, 6}, {5, INT_MIN, 6, 6}, {2, 3, 3, 5},
                     {1, 50, 2, 6},      {-1, 2, 5, 6}, {-1, -1, 1, 6},     {-7, 50, 1, 6},
                     {INT_MIN, 1, 6, 6}, {0, 0, 1, 0},  {-1, 0, 1, 0}};
  for (auto [start, count, first, last] : ranges)
    for (const int room : {0, 4}) {
      SCOPED_TRACE(std::to_string(start) + " " + std::to_string(count));
      Bars bars;
      if (room) {
        fillWithOldFile(bars, room);
        (start < 0 ? first : last) = start < 0 ? std::max(first, last - 3) : std::min(last, first + 3);
      }
      ASSERT_EQ(read(&bars, start, count), 0);
      ASSERT_EQ(bars.barsize, last - first + 1);
      for (int i = 0; i < bars.barsize; ++i)
        EXPECT_EQ(barOf(bars, i, series), barOf(all, first - 1 + i, series));
      EXPECT_EQ(bars.datasize, room ? room : count < 0 ? bars.barsize : count);
      EXPECT_EQ(bars.reccnt, 6);
      for (int k = 0; count != 0 && k < 7; ++k) EXPECT_EQ(qv::seriesOf(bars, k).firstValid, 0);
      expectConsistent(bars);
    }
  Bars untouched;
  for (const int start : {6, INT_MAX}) EXPECT_EQ(read(&untouched, start, start == 6 ? 0 : -1), -9);
  EXPECT_TRUE(!untouched.date.data && !untouched.reccnt);
  double* volume = std::exchange(all.volume.data, nullptr);
  EXPECT_EQ(read(&all, 0, 1), -1) << "a bar set that lacks a series";
  all.volume.data = volume;
}

// Dates, the numbers of the records expected (-9 where nothing is found) and their dates.
using Find = std::function<int(double, double*)>;
inline void expectFindings(const Find& find, const std::vector<std::tuple<double, int, double>>& findings) {
  for (const auto& [date, number, recordDate] : findings) {
    double found = -77;
    EXPECT_EQ(find(date, &found), number) << date;
    EXPECT_EQ(found, number < 0 ? -77 : recordDate) << date;
    EXPECT_EQ(find(date, nullptr), number) << date;
  }
}

// Whatever stands in the files: an error code, or fewer bars in a consistent set.
inline void expectSurvives(const Read& read, const Find& find) {
  for (const auto& [start, count] : {std::pair{0, -1}, {-1, 3}, {2, 2}, {-3, -1}}) {
    Bars bars;
    const int status = read(&bars, start, count);
    EXPECT_TRUE(status <= 0 && status >= -9 && bars.reccnt >= 0) << status;
    expectConsistent(bars);
  }
  double found;
  for (const double date : {36528.0, 36530.5, 1e300, kNaN}) EXPECT_GE(find(date, &found), -9);
}

// Runs `check` with the file cut at fifty places, then with random bytes in it, then leaves it whole.
inline void withDamage(const ScratchDir& dir, const std::string& name, const std::function<void()>& check) {
  const std::string whole = dir.read(name);
  std::mt19937 random(static_cast<unsigned>(whole.size()));
  for (std::size_t k = 0; k < 110 && !testing::Test::HasFailure(); ++k) {
    std::string bytes = k < 50 ? whole.substr(0, whole.size() * k / 50) : whole;
    for (auto changes = k < 50 ? 0 : k % 3 ? 1 + random() % 8 : bytes.size() * 2; changes > 0; --changes)
      bytes[random() % bytes.size()] = k % 2 ? static_cast<char>(random()) : "\0\xFF\x7F\x80"[random() % 4];
    SCOPED_TRACE(name + ": " + testing::PrintToString(bytes));
    dir.write(name, bytes);
    check();
  }
  dir.write(name, whole);
}

}  // namespace qvtest
