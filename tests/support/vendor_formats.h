// The table of vendor formats, and the bars that their test files hold.
#pragma once

#include <deque>
#include <map>
#include <string>

#include "vendor_files.h"

namespace qvtest {

constexpr double kHalfPastNine = (9 * 3600 + 30 * 60 + 15) / 86400.0;

// A field of record `k` of the test files: Open High Low Close Volume open Interest.
inline double valueOf(char field, int k) {
  const double values[] = {k + 0.5, k + 2.0, k + 0.25, k + 1.0, 100.0 * k + 3, 1000.0 + k};
  return values[std::string("OHLCVI").find(field)];
}

// Records of these fields, with Dates `step` days apart, as encode(field, value) writes them.
template <typename Encode>
std::string recordsOf(const std::string& fields, int records, int step, Encode encode) {
  std::string text;
  for (int k = 0; k < records; ++k)
    for (const char f : fields)
      text += encode(f, f == 'D' ? kMonday + k * step : f == 'T' ? 93015 : valueOf(f, k));
  return text;
}
inline std::string mbfField(char field, double value) {
  return mbf(field == 'D' ? vendorDate(value) : value);
}

// The bar of record `k`, with Dates a day apart, at a Time of 9:30:15; what is not in `fields` is 0.
inline Items expectedBar(const std::string& fields, int k) {
  const auto has = [&](char f) { return fields.find(f) != fields.npos; };
  Items bar{(has('D') ? kMonday + k : 0) + (has('T') ? kHalfPastNine : 0)};
  for (const char f : {'O', 'H', 'L', 'C', 'V', 'I'}) bar.push_back(has(f) ? valueOf(f, k) : 0.0);
  return bar;
}

using Files = std::map<std::string, std::string>;  // names and contents

// A row of the table over which vendor_formats_test.cpp runs: a directory that holds the stock "ACME" with
// six records.
struct VendorFormat {
  const char *label, *type;
  int(QVCALL* read)(QvBars*, const char*, const char*, int, int) noexcept;
  int(QVCALL* find)(const char*, const char*, double, double*) noexcept;
  int(QVCALL* list)(const char*, const char*, int) noexcept;
  Files directory;
  const char* dataFile;
  std::string fields;
  std::function<std::string(int step)> data;  // `step` days from record to record
  std::string description, frequency, dataType = "Unknown", cusip = "";
};

inline void PrintTo(const VendorFormat& row, std::ostream* os) {
  *os << row.label;
}

inline std::deque<VendorFormat>& vendorFormats() {
  static std::deque<VendorFormat> rows;
  return rows;
}
template <typename... Facts>
const VendorFormat& vendorFormat(Facts... facts) {
  return vendorFormats().emplace_back(VendorFormat{facts...});
}

class VendorTest : public testing::Test {
 protected:
  explicit VendorTest(const VendorFormat& row) : vendor(row) {}

  const VendorFormat& vendor;
  const int series = vendor.read == qvTCread ? 6 : 7;  // that the reader writes
  const ScratchDir dir;
  const std::string path = dir.path(), list = dir / "list";
  Bars bars;

  // Into an empty bar set.
  int read(const char* name = "ACME", int start = 0, int count = -1) {
    qvFreeBars(&bars);
    return vendor.read(&bars, path.c_str(), name, start, count);
  }
  int find(double date, double* found = nullptr, const char* name = "ACME") const {
    return vendor.find(path.c_str(), name, date, found);
  }
  const Find finder = [this](double date, double* found) { return find(date, found); };
  // What the reader answers; the finder answers the same.
  int status(const char* name = "ACME") {
    const int answer = read(name);
    EXPECT_EQ(std::min(find(kMonday, nullptr, name), 0), answer) << name;
    return answer;
  }
  // The listing after its two header lines.
  std::string listed(int answer = 0, int append = 0) const {
    EXPECT_EQ(qvFILElist(vendor.type, path.c_str(), list.c_str(), append), answer);
    const std::string text = dir.read("list");
    return text.substr(text.find('\n', text.find('\n') + 1) + 1);
  }
  // Data files and the names that mean them; "" for names that mean none.
  void expectNames(const std::vector<std::pair<std::string, std::vector<std::string>>>& names) {
    for (const auto& [file, all] : names) {
      if (!file.empty()) dir.write(file, vendor.data(1));
      for (const std::string& name : all) {
        EXPECT_EQ(read(name.c_str(), 0, 0), file.empty() ? -8 : 0) << name;
        EXPECT_EQ(bars.name, file) << name;
      }
    }
  }
  void expectBar(int i, Items wanted) const {
    wanted.resize(static_cast<std::size_t>(series));
    EXPECT_EQ(barOf(bars, i, series), wanted) << i;
  }
  // Reads over the bars of an older file.
  void expectBars(const std::string& fields, int records) {
    SCOPED_TRACE(fields);
    qvFreeBars(&bars);
    fillWithOldFile(bars, 9);
    ASSERT_EQ(vendor.read(&bars, path.c_str(), "acme", 0, -1), 0);
    ASSERT_EQ(bars.barsize, records);
    for (int k = 0; k < records; ++k) expectBar(k, expectedBar(fields, k));
    expectConsistent(bars);
  }
};

}  // namespace qvtest
