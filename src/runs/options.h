// Positions of two options by name, and what options are worth.
#pragma once

#include <string>
#include <vector>

#include "qvlib60.hpp"

namespace qv::runs {

struct OptionTerms {
  double underlying, rate, volatility;  // rate and volatility in percent a year
  double days;                          // to expiry
};

// A position by its legs: which is bought and which written, at the first and the second strike.
struct OptionPosition {
  const char* name;
  int(QVCALL* profile)(QvOption*) noexcept;
  int types[2];  // QV_OPTION_CALL, QV_OPTION_PUT
  int strikes;
  bool written[2];
  bool unlimitedProfit, unlimitedLoss;
};

struct OptionProfile {
  const OptionPosition* position;
  QvOption option;
  double premiums[2];
};

// A European call or put, by put-call parity over years of 360 days.
double optionValue(const OptionTerms& terms, int type, double strike);

// Throws for a name that is none, and offers the nearest or all.
const OptionPosition& findOptionPosition(const std::string& name);

// Premiums that are not given are values. Throws where they cannot be known, for strikes that do not fit, and
// where the position has no profile.
OptionProfile profileOf(const OptionPosition& position, const OptionTerms& terms,
                        const std::vector<double>& strikes, const std::vector<double>& premiums);

}  // namespace qv::runs
