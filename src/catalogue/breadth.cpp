// Market breadth: totals of a market that the caller supplies.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr std::array<QvCatalogueInput, 4> kIssues = {{{"adv", 0, 0}, {"dec", 0, 0}}};
constexpr std::array<QvCatalogueInput, 4> kVolumes = {
    {{"adv", 0, 0}, {"dec", 0, 0}, {"advVol", 0, 0}, {"decVol", 0, 0}}};
constexpr const char kMcClellan[] = "Sherman and Marian McClellan, Patterns for Profit, 1970";
constexpr const char kArms[] = "Richard W. Arms Jr., The Arms Index (TRIN), 1989";
constexpr const char kMcClellanNote[] =
    "Both averages are seeded with the first value; published series began long ago, so that a sum over a "
    "shorter "
    "history stands at another level.";

std::int64_t mcClellanSettles(const History& h) noexcept {
  return h.exponential(std::max(h.values[0], h.values[1]), 1, 10);
}

int QVCALL armsIdx(const QvArray* adv, const QvArray* dec, const QvArray* advVol, const QvArray* decVol,
                   QvArray* out, int start) noexcept {
  return qvArmsIdx(adv, dec, advVol, decVol, out, start, INT32_MAX);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvADIssues, "adissues", "Advancing less Declining Issues", "Advancing less declining issues.").takes(kIssues).params().gives(panel().histogram()),
    ENTRY(qvADLine, "adline", "Advance/Decline Line", "The running sum of advancing less declining issues.")
        .takes(kIssues).params().gives(panel()).source("Leonard P. Ayres and James F. Hughes, 1926; no publication known").valid<1>().neverSettles(),
    ENTRY(qvCVI, "cvi", "Cumulative Volume Index", "The running sum of up less down volume.")
        .takes(kIssues).params().gives(panel()).neverSettles(),
    ENTRY(qvADLineBreadth, "adbreadth", "Advance/Decline Breadth", "The share of advancing issues.").takes(kIssues).params().gives(panel().range(0, 1)),
    ENTRY(qvADRatio, "adratio", "Advance/Decline Ratio", "Advancing over declining issues.").takes(kIssues).params().gives(panel()),
    ENTRY(qvUpDownRatio, "updownratio", "Up/Down Volume Ratio", "Up over down volume.")
        .takes({{{"up", 0, 0}, {"down", 0, 0}}}).params().gives(panel()),
    ENTRY(qvUpDownVolume, "updownvolume", "Up less Down Volume", "Up less down volume.")
        .takes({{{"up", 0, 0}, {"down", 0, 0}}}).params().gives(panel().histogram()),
    ENTRY(qvABI, "abi", "Absolute Breadth Index", "The absolute difference of advancing and declining issues.")
        .takes(kIssues).params().gives(panel()).source("Norman G. Fosback, Stock Market Logic, 1976"),
    ENTRY(qvBreadthThrust, "breadththrust", "Breadth Thrust", "The ten-bar average of the share of advancing issues.")
        .takes(kIssues).params().gives(panel().range(0, 1).zone(0.4).zone(0.615)).source("Martin E. Zweig, Winning on Wall Street, 1986").valid<9>(),
    ENTRY(qvOverBoughtSold, "obos", "Overbought/Oversold", "The ten-bar exponential average of advancing less declining issues.")
        .takes(kIssues).params().gives(panel()).note(kSeeded).settles([](const History& h) noexcept { return h.exponential(10); }),
    ENTRY(qvSTIX, "stix", "STIX", "The exponential average of the share of advancing issues, in percent.")
        .takes(kIssues).params(period("p", 21)).gives(panel().range(0, 100).zone(45).zone(56)).source("The Polymetric Report, a newsletter; author and year not known").note(kSeeded)
        .settles([](const History& h) noexcept { return h.exponential(h.values[0]); }),
    ENTRY(qvTRIN, "trin", "Arms Index", "The ratio of advancing and declining issues over that of their volumes.").takes(kVolumes).params().gives(panel()).source(kArms),
    ENTRY(qvBretzTRIN5, "bretztrin", "Bretz TRIN-5", "The five-bar sum of the Arms index.").takes(kVolumes).params().gives(panel()).source("W. G. Bretz, Juncture Recognition in the Stock Market, 1972").valid<4>(),
    ENTRY(qvOpen10TRIN, "opentrin", "Open Ten-Day Arms Index", "The Arms index of ten-bar sums.")
        .takes(kVolumes).params().gives(panel()).source("Peter Eliades, after Arms; no publication known").valid<9>(),
    ADAPTED(qvArmsIdx, armsIdx, "arms", "Arms Index of a Stretch", "The Arms index from a bar to another, here to the last.").takes(kVolumes).params().gives(panel()).source(kArms),
    ENTRY(qvBoltonTremblay, "bolton", "Bolton-Tremblay", "The running sum of the signed square roots of advancing less declining over unchanged issues.")
        .takes({{{"adv", 0, 0}, {"dec", 0, 0}, {"unchanged", 0, 0}}}).params().gives(panel()).source("A. Hamilton Bolton and Essiambre Tremblay; no publication known").valid<1>().neverSettles(),
    ENTRY(qvMcClellanOscillator, "mcclellan", "McClellan Oscillator", "Fast less slow exponential average of advancing less declining issues.")
        .takes(kIssues).params(period("fast", 19), period("slow", 39)).gives(panel().zone(-100).zone(100)).source(kMcClellan).note(kSeeded).settles(mcClellanSettles),
    ENTRY(qvMcClellanSummation, "mcclellansum", "McClellan Summation Index", "The running sum of the McClellan oscillator.")
        .takes(kIssues).params(period("fast", 19), period("slow", 39)).gives(panel()).source(kMcClellan).note(kMcClellanNote).neverSettles(),
    ENTRY(qvMcClellanOscSum, "mcclellanboth", "McClellan Oscillator and Summation", "The oscillator, and its running sum.")
        .takes(kIssues).params(period("fast", 19), period("slow", 39)).gives(panel("osc").zone(-100).zone(100), panel("sum")).source(kMcClellan).note(kMcClellanNote)
        .valid([](const Valid& v) noexcept { return v.start + v.output; }).neverSettles(),
};
// clang-format on

constexpr auto kItems = items<kRows>("Market breadth");

}  // namespace

constinit const Family breadth{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
