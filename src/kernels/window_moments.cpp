// Sliding deviations, covariances and least-squares lines.
//
// The sums run over distances from an anchor, an item that every window of the block contains: the last
// one. So nothing large is ever squared and cancelled, and a window of equal items has zero sums.
#include <array>
#include <cmath>

#include "kernels/window_blocks.h"

namespace qv::window {

namespace {

template <int kTerms>
using Sums = std::array<double, static_cast<std::size_t>(kTerms)>;

// Running sums of terms(j), a Sums, for items n - 1 .. 0 and 0 .. n - 1; one row for each term.
template <std::size_t kTerms>
struct PlainSums {
  std::array<double, kTerms> sums{};

  template <typename Terms>
  void add(int j, Terms terms, Rows rows) noexcept {
    const std::array<double, kTerms> added = terms(j);
    for (std::size_t t = 0; t < kTerms; ++t) rows[static_cast<int>(t)][j] = sums[t] += added[t];
  }
};

// The same with the rounding errors summed beside. Where the anchor stands apart from the rest of its
// window, the squares about the mean are a p-th of those about the anchor, and the errors of p plain
// additions would show p times over. Sums that overflow stay as they are: their error is no number.
template <std::size_t kTerms>
struct CorrectedSums {
  std::array<double, kTerms> sums{}, errors{};

  template <typename Terms>
  void add(int j, Terms terms, Rows rows) noexcept {
    const std::array<double, kTerms> added = terms(j);
    for (std::size_t t = 0; t < kTerms; ++t) {
      const double sum = sums[t] + added[t], taken = sum - sums[t];
      errors[t] += (sums[t] - (sum - taken)) + (added[t] - taken);
      sums[t] = sum;
      rows[static_cast<int>(t)][j] = std::fabs(errors[t]) < kInfinity ? sum + errors[t] : sum;
    }
  }
};

// Up to this many items plain sums keep well within 1e-10, whatever the data.
constexpr int kPlainItems = 4096;

// Out of line: inlined side by side, the two kinds take each other's registers, and blocks of a few
// items cost twice as much.
template <typename Sums, typename Terms>
[[gnu::noinline]] void addBackwards(int n, Terms terms, Rows rows) noexcept {
  Sums sums;
  for (int j = n - 1; j >= 0; --j) sums.add(j, terms, rows);
}

template <typename Sums, typename Terms>
[[gnu::noinline]] void addForwards(int n, Terms terms, Rows rows) noexcept {
  Sums sums;
  for (int j = 0; j < n; ++j) sums.add(j, terms, rows);
}

template <std::size_t kTerms, typename Terms>
void sumBackwards(int n, Terms terms, Rows rows) noexcept {
  if (n <= kPlainItems)
    addBackwards<PlainSums<kTerms>>(n, terms, rows);
  else
    addBackwards<CorrectedSums<kTerms>>(n, terms, rows);
}

template <std::size_t kTerms, typename Terms>
void sumForwards(int n, Terms terms, Rows rows) noexcept {
  if (n <= kPlainItems)
    addForwards<PlainSums<kTerms>>(n, terms, rows);
  else
    addForwards<CorrectedSums<kTerms>>(n, terms, rows);
}

// A statistic that is a function of sums over its window: statistic.terms(i) of item i, and
// statistic.of(sum, n), where sum(t) is the sum of term t; statistic.guard(results, n) has the last word.
template <typename Statistic>
struct FromSums {
  static constexpr int kTerms = Statistic::kTerms, kSuffixRows = kTerms, kPrefixRows = kTerms;
  static constexpr double kNone = 0.0;
  Statistic statistic;
  int period;
  double* out;

  void load(int, int, Rows) const noexcept {}
  void anchorAt(int i) noexcept { statistic.anchorAt(i); }
  void suffixes(int i, int n, Rows rows) const noexcept {
    const Statistic s = statistic;
    sumBackwards<kTerms>(
        n, [=](int j) { return s.terms(i + j); }, rows);
  }
  void prefixes(int i, int n, Rows rows) const noexcept {
    const Statistic s = statistic;
    sumForwards<kTerms>(
        n, [=](int j) { return s.terms(i + j); }, rows);
  }
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    finishRows(statistic, n, period, suffix.data, suffix.length, prefix.data, prefix.length, out + i);
    statistic.guard(out + i, n);
  }
  void finishCut(int i, int n, Rows prefix) const noexcept {
    for (int j = 0; j < n; ++j) out[i + j] = statistic.of([=](int t) { return prefix[t][j]; }, j + 1.0);
    statistic.guard(out + i, n);
  }

 private:
  static void finishRows(const Statistic s, int n, double period, const double* __restrict suffix,
                         std::ptrdiff_t suffixLength, const double* __restrict prefix,
                         std::ptrdiff_t prefixLength, double* __restrict result) noexcept {
    for (int j = 0; j < n; ++j)
      result[j] =
          s.of([=](int t) { return suffix[t * suffixLength + j] + prefix[t * prefixLength + j]; }, period);
  }
};

template <typename Statistic>
int slideSums(const Statistic& statistic, const Range& r, double* out) noexcept {
  return slide(FromSums<Statistic>{statistic, r.period, out}, r);
}

// n times the sum of products about the means; of an item with itself rounding must not push it below
// zero.
double aboutMeans(double sumA, double sumB, double products, double n) noexcept {
  return n * products - sumA * sumB;
}
double aboutMean(double sum, double squares, double n) noexcept {
  const double about = aboutMeans(sum, sum, squares, n);
  return 0.0 > about ? 0.0 : about;
}

struct Deviation {
  static constexpr int kTerms = 2;
  const double* x;
  double lost;  // degrees of freedom
  double anchor = 0.0;

  void anchorAt(int i) noexcept { anchor = x[i]; }
  Sums<kTerms> terms(int i) const noexcept {
    const double d = x[i] - anchor;
    return {d, d * d};
  }
  template <typename Sum>
  double of(Sum sum, double n) const noexcept {
    return std::sqrt(aboutMean(sum(0), sum(1), n) / (n * (n - lost)));
  }
  void guard(double*, int) const noexcept {}
};

struct Pair {
  const double *a, *b;
  double anchorA = 0.0, anchorB = 0.0;

  void anchorAt(int i) noexcept {
    anchorA = a[i];
    anchorB = b[i];
  }
};

struct Covariance : Pair {
  static constexpr int kTerms = 3;

  Sums<kTerms> terms(int i) const noexcept {
    const double da = a[i] - anchorA, db = b[i] - anchorB;
    return {da, db, da * db};
  }
  template <typename Sum>
  double of(Sum sum, double n) const noexcept {
    return aboutMeans(sum(0), sum(1), sum(2), n) / (n * (n - 1.0));
  }
  void guard(double*, int) const noexcept {}
};

struct Correlation : Pair {
  static constexpr int kTerms = 5;
  double lost;

  Sums<kTerms> terms(int i) const noexcept {
    const double da = a[i] - anchorA, db = b[i] - anchorB;
    return {da, db, da * da, db * db, da * db};
  }
  template <typename Sum>
  double of(Sum sum, double n) const noexcept {
    const double deviations =
        std::sqrt(aboutMean(sum(0), sum(2), n)) * std::sqrt(aboutMean(sum(1), sum(3), n));
    const double covariance = aboutMeans(sum(0), sum(1), sum(4), n) * ((n - lost) / (n - 1.0));
    return covariance / deviations;
  }
  // No coefficient is infinite: it has been divided by a deviation of zero or of no number. In a loop of
  // its own, for a division behind a condition would not become vector code.
  void guard(double* __restrict results, int n) const noexcept {
    for (int j = 0; j < n; ++j) results[j] = std::fabs(results[j]) < kInfinity ? results[j] : 0.0;
  }
};

// Sums of the distances from the anchor, plain and times the number of items that the anchor is away.
struct Line {
  static constexpr int kTerms = 2, kSuffixRows = 3, kPrefixRows = 3;
  static constexpr double kNone = 0.0;
  const double* y;
  int period;
  double *slope, *intercept;
  double anchor = 0.0;

  void load(int, int, Rows) const noexcept {}
  void anchorAt(int i) noexcept { anchor = y[i]; }
  void suffixes(int i, int n, Rows rows) const noexcept {
    const double *from = y + i, base = anchor;
    sumBackwards<kTerms>(
        n, [=](int j) { return termsOf(from[j] - base, j - (n - 1)); }, rows);
    std::fill_n(rows[2], n, anchor);
  }
  void prefixes(int i, int n, Rows rows) const noexcept {
    const double *from = y + i, base = anchor;
    sumForwards<kTerms>(
        n, [=](int j) { return termsOf(from[j] - base, j + 1); }, rows);
    double* __restrict items = rows[2];
    for (int j = 0; j < n; ++j) items[j] = j + 1;
  }
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    const double* __restrict plain = suffix[0], * __restrict moment = suffix[1], * __restrict base = suffix[2];
    const double* __restrict morePlain = prefix[0], * __restrict moreMoment = prefix[1], * __restrict items = prefix[2];
    const double p = period;
    if (slope) {
      for (int j = 0; j < n; ++j)
        slope[i + j] = slopeOf(plain[j] + morePlain[j], moment[j] + moreMoment[j], p, items[j] - (p - 1.0));
    }
    if (intercept) {
      for (int j = 0; j < n; ++j) {
        const double sum = plain[j] + morePlain[j];
        const double rise = slopeOf(sum, moment[j] + moreMoment[j], p, items[j] - (p - 1.0));
        intercept[i + j] = interceptOf(base[j], sum, rise, p);
      }
    }
  }
  void finishCut(int i, int n, Rows prefix) const noexcept {
    for (int j = 0; j < n; ++j) {
      const double items = j + 1.0, rise = slopeOf(prefix[0][j], prefix[1][j], items, 1.0);
      if (slope) slope[i + j] = rise;
      if (intercept) intercept[i + j] = interceptOf(anchor, prefix[0][j], rise, items);
    }
  }

 private:
  static Sums<kTerms> termsOf(double d, int away) noexcept { return {d, away * d}; }
  // `oldest`: how far the window's first item is from the anchor. One item has no slope: 0, not 0 / 0.
  static double slopeOf(double sum, double moment, double n, double oldest) noexcept {
    const double centre = oldest + (n - 1.0) / 2.0;
    return (moment - centre * sum) / (n > 1.0 ? n * (n * n - 1.0) / 12.0 : 1.0);
  }
  static double interceptOf(double anchor, double sum, double rise, double n) noexcept {
    return anchor + (sum / n - rise * ((n + 1.0) / 2.0));
  }
};

}  // namespace

int deviation(const double* in, Range r, bool sample, double* out) noexcept {
  return slideSums(Deviation{in, sample ? 1.0 : 0.0}, r, out);
}

int covariance(const double* a, const double* b, Range r, double* out) noexcept {
  return slideSums(Covariance{{a, b}}, r, out);
}

int correlation(const double* a, const double* b, Range r, bool sample, double* out) noexcept {
  return slideSums(Correlation{{a, b}, sample ? 1.0 : 0.0}, r, out);
}

int regressionLine(const double* in, Range r, double* slope, double* intercept) noexcept {
  return slide(Line{in, r.period, slope, intercept}, r);
}

}  // namespace qv::window
