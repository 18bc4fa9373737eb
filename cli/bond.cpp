// qv bond: price, duration and yields of a bond.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  double face = 100.0, coupon = 0.0, yield = -1.0, price = -1.0;
  int payments = 2;
  std::string maturity, settlement;
  OutputOptions output;
};

int run(const Options& o) {
  const double maturity = dateOption("--maturity", o.maturity),
               settlement = dateOption("--settlement", o.settlement);
  if (maturity <= settlement) throw UsageError("--maturity must be after --settlement");
  if ((o.yield < 0.0) == (o.price < 0.0)) throw UsageError("give one of --yield and --price");
  QvBond bond = {o.face, o.price, o.face * o.coupon / 100.0, o.payments, maturity};
  if (o.price < 0.0) bond.price = qvBondPricing(&bond, o.yield, settlement);
  const double approximate = 100.0 * qvYieldtoMaturity(&bond, settlement);
  const double yield = o.price < 0.0 ? o.yield : approximate;
  printRecord(o.output.form(), {{"face", o.face, 2},
                                {"coupon %", o.coupon, 3},
                                {"payments a year", static_cast<double>(o.payments)},
                                {"settlement", Date{settlement}},
                                {"maturity", Date{maturity}},
                                {"yield %", o.price < 0.0 ? Cell(o.yield) : Cell(Unknown{}), 3},
                                {"price", bond.price, 4},
                                {"approximate yield to maturity %", approximate, 3},
                                {"current yield %", 100.0 * bond.coupon / bond.price, 3},
                                {"duration in years", qvBondDuration(&bond, yield, settlement), 3}});
  return kDone;
}

}  // namespace

void addBond(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      tool.add("bond", "Price a bond at a yield, or tell its yield at a price",
               {"qv bond --face 1000 --coupon 5 --maturity 2030-04-17 --settlement 2020-04-17 --yield 4"},
               [options] { return run(*options); });
  const CLI::Validator positive = above0(), least0 = from0();
  command.add_option("--face", options->face, "Face value")->check(positive)->capture_default_str();
  command.add_option("--coupon", options->coupon, "Coupon, percent of the face a year")
      ->required()
      ->check(least0);
  command.add_option("--payments", options->payments, "Coupons a year")
      ->check(CLI::Range(1, 12).description(""))
      ->capture_default_str();
  command.add_option("--maturity", options->maturity, "Date of maturity, YYYY-MM-DD")->required();
  command.add_option("--settlement", options->settlement, "Date of purchase, YYYY-MM-DD")->required();
  command.add_option("--yield", options->yield, "Yield, percent a year: gives the price")->check(least0);
  command.add_option("--price", options->price, "Price: gives the yield")->check(positive);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
