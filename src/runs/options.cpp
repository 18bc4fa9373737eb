#include "runs/options.h"

#include <cmath>

#include "core/nearest.h"

namespace qv::runs {

namespace {

constexpr int kCall = QV_OPTION_CALL, kPut = QV_OPTION_PUT;
constexpr OptionPosition kPositions[] = {
    {"bull-call", qvBullCall, {kCall, kCall}, 2, {false, true}, false, false},
    {"bull-put", qvBullPut, {kPut, kPut}, 2, {false, true}, false, false},
    {"bear-call", qvBearCall, {kCall, kCall}, 2, {true, false}, false, false},
    {"bear-put", qvBearPut, {kPut, kPut}, 2, {true, false}, false, false},
    {"long-straddle", qvLongStraddle, {kCall, kPut}, 1, {false, false}, true, false},
    {"short-straddle", qvShortStraddle, {kCall, kPut}, 1, {true, true}, false, true},
    {"long-strangle", qvLongStrangle, {kCall, kPut}, 2, {false, false}, true, false},
    {"short-strangle", qvShortStrangle, {kCall, kPut}, 2, {true, true}, false, true},
};

}  // namespace

double optionValue(const OptionTerms& t, int type, double strike) {
  const QvOptionLeg leg = {0.0, strike, kCall, t.days};
  const double variance = t.volatility * t.volatility / 1e4;
  const double call = qvBlackScholes(&leg, t.underlying, t.rate, variance, 0.0);
  if (type == kCall) return call;
  return call - t.underlying + strike * std::exp(-t.rate / 100.0 * t.days / 360.0);
}

const OptionPosition& findOptionPosition(const std::string& name) {
  NearestWord nearest(name);
  std::string names = "call, put";
  for (const OptionPosition& p : kPositions) {
    if (name == p.name) return p;
    nearest.offer(p.name);
    names += std::string(", ") + p.name;
  }
  throw Error(
      name,
      std::string("no such position") +
          (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?" : "; there are " + names),
      QV_INVALID_PARM);
}

OptionProfile profileOf(const OptionPosition& p, const OptionTerms& terms, const std::vector<double>& strikes,
                        const std::vector<double>& premiums) {
  if (std::cmp_not_equal(strikes.size(), p.strikes))
    throw Error("strikes",
                std::to_string(p.strikes) + (p.strikes == 1 ? " strike" : " strikes") + " for a " + p.name,
                QV_INVALID_PARM);
  OptionProfile made{&p, {}, {}};
  qvOptionInit(&made.option);
  made.option.underlying = terms.underlying;
  int bought = 0, written = 0;
  for (std::size_t k = 0; k < 2; ++k) {
    const double strike = strikes[std::min(k, strikes.size() - 1)];
    const bool isKnown = k < premiums.size() || (terms.volatility > 0.0 && terms.days > 0);
    if (!isKnown)
      throw Error("premiums are missing", "give one for each option, or days and volatility",
                  QV_INVALID_PARM);
    made.premiums[k] = k < premiums.size() ? premiums[k] : optionValue(terms, p.types[k], strike);
    const QvOptionLeg leg = {made.premiums[k], strike, p.types[k], terms.days};
    (p.written[k] ? made.option.written[written++] : made.option.bought[bought++]) = leg;
  }
  check(p.profile(&made.option), p.name);
  return made;
}

}  // namespace qv::runs
