// Two neighbouring bars side by side, and loops that are compiled for several instruction sets.
//
// Formulas that are written for any Number take a double, two of them (Two) or four (Four, in wide.cpp); all
// operations are the processor's own for each item, so that one item, two or four at a time give the same
// bits. The compiler knows vector types on every processor and takes them apart where there is no register
// for them.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(QV_FOUR_LANES)
#include <immintrin.h>
#endif

namespace qv {

#ifndef QV_INLINE
#define QV_INLINE inline __attribute__((always_inline))
#endif
#define QV_LAMBDA __attribute__((always_inline))  // behind the parameters of a lambda

typedef double Two __attribute__((vector_size(16)));
typedef double TwoAnywhere __attribute__((vector_size(16), aligned(8), may_alias));

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

QV_INLINE Two loadTwo(const double* p) noexcept {
  return *reinterpret_cast<const TwoAnywhere*>(p);
}
QV_INLINE void storeTwo(double* p, Two v) noexcept {
  *reinterpret_cast<TwoAnywhere*>(p) = v;
}
QV_INLINE Two twice(double d) noexcept {
  return Two{d, d};
}
// The last item of a and the first of b: b, one bar earlier.
QV_INLINE Two oneBack(Two a, Two b) noexcept {
  return __builtin_shufflevector(a, b, 1, 2);
}

// What kernels that are written for Two or Four, as Lanes, take beside. The pairs of lanes are the lower and
// the upper one, of Two both the same.
template <typename Lanes>
inline constexpr int kLanes = sizeof(Lanes) / sizeof(double);
template <typename Lanes>
QV_INLINE Lanes load(const double* p) noexcept;
template <typename Lanes>
QV_INLINE Lanes inAllPairs(Two pair) noexcept;
template <>
QV_INLINE double load<double>(const double* p) noexcept {
  return *p;
}
QV_INLINE void store(double* p, double v) noexcept {
  *p = v;
}
template <>
QV_INLINE Two load<Two>(const double* p) noexcept {
  return loadTwo(p);
}
template <>
QV_INLINE Two inAllPairs<Two>(Two pair) noexcept {
  return pair;
}
QV_INLINE void store(double* p, Two v) noexcept {
  storeTwo(p, v);
}
QV_INLINE Two lower(Two v) noexcept {
  return v;
}
QV_INLINE Two upper(Two v) noexcept {
  return v;
}
// b two bars earlier; a one bar and two bars later, where b follows it.
QV_INLINE Two twoBack(Two a, Two) noexcept {
  return a;
}
QV_INLINE Two oneOn(Two a, Two b) noexcept {
  return __builtin_shufflevector(a, b, 1, 2);
}
QV_INLINE Two twoOn(Two, Two b) noexcept {
  return b;
}

// The lower pair of a, where there is another one with b above it.
QV_INLINE Two withUpper(Two a, Two) noexcept {
  return a;
}

template <typename Number>
QV_INLINE Number all(double d) noexcept {
  return Number{} + d;
}
template <>
QV_INLINE Two all<Two>(double d) noexcept {
  return twice(d);
}
template <>
QV_INLINE double all<double>(double d) noexcept {
  return d;
}

#if defined(QV_FOUR_LANES)
typedef double Four __attribute__((vector_size(32)));
typedef double FourAnywhere __attribute__((vector_size(32), aligned(8), may_alias));

template <>
QV_INLINE Four load<Four>(const double* p) noexcept {
  return *reinterpret_cast<const FourAnywhere*>(p);
}
QV_INLINE void store(double* p, Four v) noexcept {
  *reinterpret_cast<FourAnywhere*>(p) = v;
}
template <>
QV_INLINE Four all<Four>(double d) noexcept {
  return Four{d, d, d, d};
}
QV_INLINE Two lower(Four v) noexcept {
  return __builtin_shufflevector(v, v, 0, 1);
}
QV_INLINE Two upper(Four v) noexcept {
  return __builtin_shufflevector(v, v, 2, 3);
}
QV_INLINE Four four(Two lower, Two upper) noexcept {
  return __builtin_shufflevector(lower, upper, 0, 1, 2, 3);
}
template <>
QV_INLINE Four inAllPairs<Four>(Two pair) noexcept {
  return four(pair, pair);
}
QV_INLINE Four oneBack(Four a, Four b) noexcept {
  return __builtin_shufflevector(a, b, 3, 4, 5, 6);
}
QV_INLINE Four twoBack(Four a, Four b) noexcept {
  return __builtin_shufflevector(a, b, 2, 3, 4, 5);
}
QV_INLINE Four oneOn(Four a, Four b) noexcept {
  return __builtin_shufflevector(a, b, 1, 2, 3, 4);
}
QV_INLINE Four twoOn(Four a, Four b) noexcept {
  return __builtin_shufflevector(a, b, 2, 3, 4, 5);
}
QV_INLINE Four withUpper(Four a, Four b) noexcept {
  return __builtin_shufflevector(a, b, 0, 1, 4, 5);
}
QV_INLINE Four root(Four x) noexcept {
  return (Four)_mm256_sqrt_pd((__m256d)x);
}
#endif

QV_INLINE double root(double x) noexcept {
  return std::sqrt(x);
}
QV_INLINE Two root(Two x) noexcept {
#if defined(__SSE2__)
  return (Two)_mm_sqrt_pd((__m128d)x);
#else
  return Two{std::sqrt(x[0]), std::sqrt(x[1])};
#endif
}
// The larger one, b where they are equal or a is no number; b only where it is a number.
template <typename Number>
QV_INLINE Number larger(Number a, Number b) noexcept {
  return a > b ? a : b;
}
// Not below zero; a number that is none stays.
template <typename Number>
QV_INLINE Number notNegative(Number x) noexcept {
  return x < all<Number>(0.0) ? all<Number>(0.0) : x;
}
template <typename Number>
QV_INLINE Number magnitude(Number x) noexcept {
  return x < all<Number>(0.0) ? -x : x;
}

// The smaller and the larger one, b where they are equal or one is no number; and a where x > y, else b. Of a
// single number in a chain that cannot run abreast, where the compiler would make a branch that nobody can
// predict.
#if defined(__SSE2__)
// The number in its register; nothing is known of the lane beside it.
QV_INLINE __m128d inRegister(double x) noexcept {
#if defined(__clang__)
  return _mm_set_sd(x);
#else  // without clearing that lane, which takes its time
  __m128d v;
  __asm__("" : "=x"(v) : "0"(x));
  return v;
#endif
}
QV_INLINE double smallerOne(double a, double b) noexcept {
  return _mm_cvtsd_f64(_mm_min_sd(inRegister(a), inRegister(b)));
}
QV_INLINE double largerOne(double a, double b) noexcept {
  return _mm_cvtsd_f64(_mm_max_sd(inRegister(a), inRegister(b)));
}
QV_INLINE double whereAbove(double x, double y, double a, double b) noexcept {
  const __m128d above = _mm_cmplt_sd(inRegister(y), inRegister(x));
  return _mm_cvtsd_f64(_mm_or_pd(_mm_and_pd(above, inRegister(a)), _mm_andnot_pd(above, inRegister(b))));
}
#else
QV_INLINE double smallerOne(double a, double b) noexcept {
  return a < b ? a : b;
}
QV_INLINE double largerOne(double a, double b) noexcept {
  return a > b ? a : b;
}
QV_INLINE double whereAbove(double x, double y, double a, double b) noexcept {
  return x > y ? a : b;
}
#endif

// f(j) for j = 0 .. count - 1, as vector code of the widest registers that the machine has. f is a formula
// of item j alone, which may overwrite an item that it reads. On Windows the wide form is left out: the
// compiler aligns the stack there to less than its registers need.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(_WIN32) && !defined(__AVX2__)
#define QV_WIDE_LOOPS 1
#else
#define QV_WIDE_LOOPS 0
#endif

// Whether loops run in the wide form; the results are the same. Found out when the library is loaded; tests
// set it to compare the forms.
extern bool wideLoops;

#if defined(__clang__)
#define QV_INDEPENDENT _Pragma("clang loop vectorize(assume_safety) interleave(enable)")
#else
#define QV_INDEPENDENT _Pragma("GCC ivdep")
#endif

#if QV_WIDE_LOOPS
template <typename F>
[[gnu::target("avx2"), gnu::noinline]] void eachWide(int count, F f) noexcept {
  QV_INDEPENDENT
  for (int j = 0; j < count; ++j) f(j);
}
#endif

template <typename F>
QV_INLINE void each(int count, F f) noexcept {
  if (count == 1) return f(0);  // an update's
#if QV_WIDE_LOOPS
  if (wideLoops && count >= 4) return eachWide(count, f);
#endif
  QV_INDEPENDENT
  for (int j = 0; j < count; ++j) f(j);
}

}  // namespace qv
