// Exponential and power, the same bits on every machine: those of the C library differ between libraries, and
// within one where the processor has fused steps. The methods and polynomials are those published with FDLIBM
// (Sun Microsystems, 1993); the error is below one unit of the last place, and a power of integers that a
// double can hold is exact.
#pragma once

namespace qv {

double exponentialOf(double x) noexcept;
double powerOf(double base, double exponent) noexcept;

}  // namespace qv
