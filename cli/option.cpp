// qv option: the price of an option, or the risk of a position of two.
#include <cmath>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/tool.h"
#include "core/nearest.h"

namespace qvcli {

namespace {

struct Options {
  std::string position;
  double underlying = 0.0, rate = 0.0, volatility = 0.0;
  std::vector<double> strikes, premiums;
  int days = 0;
  OutputOptions output;
};

// A position of two options by its legs: which is bought and which written, at the first and the second
// strike.
struct Position {
  const char* name;
  int(QVCALL* profile)(QvOption*);
  int types[2];  // QV_OPTION_CALL, QV_OPTION_PUT
  bool written[2];
  int strikes;
  bool unlimitedProfit, unlimitedLoss;
};
constexpr int kCall = QV_OPTION_CALL, kPut = QV_OPTION_PUT;
const Position kPositions[] = {
    {"bull-call", qvBullCall, {kCall, kCall}, {false, true}, 2, false, false},
    {"bull-put", qvBullPut, {kPut, kPut}, {false, true}, 2, false, false},
    {"bear-call", qvBearCall, {kCall, kCall}, {true, false}, 2, false, false},
    {"bear-put", qvBearPut, {kPut, kPut}, {true, false}, 2, false, false},
    {"long-straddle", qvLongStraddle, {kCall, kPut}, {false, false}, 1, true, false},
    {"short-straddle", qvShortStraddle, {kCall, kPut}, {true, true}, 1, false, true},
    {"long-strangle", qvLongStrangle, {kCall, kPut}, {false, false}, 2, true, false},
    {"short-strangle", qvShortStrangle, {kCall, kPut}, {true, true}, 2, false, true},
};

// The value of a call or a put that expires in so many days.
double valueOf(const Options& o, int type, double strike) {
  const QvOptionLeg leg = {0.0, strike, kCall, 0.0 + o.days};
  const double variance = o.volatility * o.volatility / 1e4;
  const double call = qvBlackScholes(&leg, o.underlying, o.rate, variance, 0.0);
  if (type == kCall) return call;
  // Put-call parity over the same years of 360 days.
  return call - o.underlying + strike * std::exp(-o.rate / 100.0 * o.days / 360.0);
}

double premiumOf(const Options& o, std::size_t leg, int type, double strike) {
  if (leg < o.premiums.size()) return o.premiums[leg];
  if (o.volatility > 0.0 && o.days > 0) return valueOf(o, type, strike);
  throw UsageError("premiums are missing: give --premium for each option, or --days and --volatility");
}

int price(const Options& o, int type) {
  if (o.strikes.size() != 1) throw UsageError("--strike: one strike for a " + o.position);
  if (o.days < 1 || !(o.volatility > 0.0)) throw UsageError("--days and --volatility are needed for a price");
  printRecord(o.output.form(), {{"option", o.position},
                                {"underlying", o.underlying, 2},
                                {"strike", o.strikes[0], 2},
                                {"days", static_cast<double>(o.days)},
                                {"rate %", o.rate, 2},
                                {"volatility %", o.volatility, 2},
                                {"value", valueOf(o, type, o.strikes[0]), 4}});
  return kDone;
}

int profile(const Options& o, const Position& p) {
  if (o.strikes.size() != static_cast<std::size_t>(p.strikes))
    throw UsageError("--strike: " + std::to_string(p.strikes) + (p.strikes == 1 ? " strike" : " strikes") +
                     " for a " + o.position);
  QvOption option;
  qvOptionInit(&option);
  option.underlying = o.underlying;
  int bought = 0, written = 0;
  std::vector<Field> fields = {{"position", o.position}, {"underlying", o.underlying, 2}};
  for (std::size_t k = 0; k < 2; ++k) {
    const double strike = o.strikes[std::min(k, o.strikes.size() - 1)];
    const QvOptionLeg leg = {premiumOf(o, k, p.types[k], strike), strike, p.types[k], 0.0 + o.days};
    (p.written[k] ? option.written[written++] : option.bought[bought++]) = leg;
    fields.push_back({std::string(p.written[k] ? "written " : "bought ") +
                          (leg.type == kCall ? "call " : "put ") + fullNumber(strike),
                      leg.premium, 4});
  }
  qv::check(p.profile(&option), o.position);
  const bool twoSided = option.lowerBreakeven != option.upperBreakeven;
  fields.push_back(
      {"greatest profit", p.unlimitedProfit ? Cell(std::string("unlimited")) : Cell(option.maxProfit), 4});
  fields.push_back(
      {"greatest loss", p.unlimitedLoss ? Cell(std::string("unlimited")) : Cell(option.maxLoss), 4});
  fields.push_back({twoSided ? "lower break-even" : "break-even", option.lowerBreakeven, 4});
  fields.push_back({twoSided ? "lower move %" : "move %", 100.0 * option.lowerMove, 2});
  if (twoSided) {
    fields.push_back({"upper break-even", option.upperBreakeven, 4});
    fields.push_back({"upper move %", 100.0 * option.upperMove, 2});
  }
  printRecord(o.output.form(), fields);
  return kDone;
}

int run(const Options& options) {
  if (options.position == "call") return price(options, kCall);
  if (options.position == "put") return price(options, kPut);
  qv::NearestWord nearest(options.position);
  std::string names = "call, put";
  for (const Position& p : kPositions) {
    if (options.position == p.name) return profile(options, p);
    nearest.offer(p.name);
    names += std::string(", ") + p.name;
  }
  throw UsageError(
      options.position + ": no such position" +
      (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?" : "; there are " + names));
}

}  // namespace

void addOption(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      tool.add("option", "Price an option, or show the risk of a spread, straddle or strangle",
               {"qv option call --underlying 100 --strike 105 --days 90 --rate 5 --volatility 20",
                "qv option long-strangle --underlying 100 --strike 105 95 --premium 2.5 1.8"},
               [options] { return run(*options); });
  command
      .add_option("POSITION", options->position,
                  "call, put, bull-call, bull-put, bear-call, bear-put, long-straddle, short-straddle, "
                  "long-strangle or "
                  "short-strangle")
      ->required();
  const CLI::Validator positive = above0();
  command.add_option("--underlying", options->underlying, "Price of the underlying")
      ->required()
      ->check(positive);
  command
      .add_option("--strike", options->strikes,
                  "Strike; two for spreads (lower, higher) and strangles (call, put)")
      ->required()
      ->expected(1, 2)
      ->check(positive);
  command.add_option("--days", options->days, "Days to expiry")->check(CLI::Range(1, 100000).description(""));
  command.add_option("--rate", options->rate, "Interest, percent a year")->capture_default_str();
  command.add_option("--volatility", options->volatility, "Volatility, percent a year")->check(positive);
  command
      .add_option("--premium", options->premiums, "Premiums paid and received, instead of computed values")
      ->expected(1, 2)
      ->check(from0());
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
