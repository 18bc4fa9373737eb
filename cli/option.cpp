// qv option: the price of an option, or the risk of a position of two.
#include "runs/options.h"

#include "cli/options.h"
#include "cli/output.h"
#include "cli/rules.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::string position;
  double underlying = 0.0, rate = 0.0, volatility = 0.0;
  std::vector<double> strikes, premiums;
  int days = 0;
  OutputOptions output;
};

constexpr int kCall = QV_OPTION_CALL, kPut = QV_OPTION_PUT;

qv::runs::OptionTerms termsOf(const Options& o) {
  return {o.underlying, o.rate, o.volatility, 0.0 + o.days};
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
                                {"value", qv::runs::optionValue(termsOf(o), type, o.strikes[0]), 4}});
  return kDone;
}

int profile(const Options& o, const qv::runs::OptionPosition& p) {
  const auto made = asUsage("", [&] { return qv::runs::profileOf(p, termsOf(o), o.strikes, o.premiums); });
  const QvOption& option = made.option;
  std::vector<Field> fields = {{"position", o.position}, {"underlying", o.underlying, 2}};
  for (std::size_t k = 0; k < 2; ++k)
    fields.push_back({std::string(p.written[k] ? "written " : "bought ") +
                          (p.types[k] == kCall ? "call " : "put ") +
                          fullNumber(o.strikes[std::min(k, o.strikes.size() - 1)]),
                      made.premiums[k], 4});
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
  return profile(options, asUsage("", [&] { return qv::runs::findOptionPosition(options.position); }));
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
