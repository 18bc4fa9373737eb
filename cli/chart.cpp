// qv chart: prices and formulas as a picture.
#include "cli/chart.h"

#include <algorithm>
#include <climits>

#include "cli/options.h"
#include "cli/picture.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::string file, against, kind = "candles", title;
  std::vector<std::string> formulas;
  bool log = false, percent = false, volume = false;
  FileOptions how;
  RangeOptions range;
  PictureOptions picture;
};

const std::vector<std::pair<std::string, int>> kKinds = {{"candles", QV_CHART_CANDLES},
                                                         {"bars", QV_CHART_BARS},
                                                         {"line", QV_CHART_LINE},
                                                         {"area", QV_CHART_AREA},
                                                         {"heikin-ashi", QV_CHART_HEIKIN_ASHI}};

// Formulas see all bars, so that averages are known from the first visible one on.
void setRange(QvGraph* graph, const qv::Bars& bars, const RangeOptions& range) {
  const double from = range.from.empty() ? -1e300 : dateOption("--from", range.from);
  // To the end of that day.
  const double to =
      range.to.empty() ? 1e300 : dateOption("--to", range.to) + (range.to.size() > 10 ? 0.0 : 1.0 - 1e-9);
  const double* dates = bars.date.data;
  const auto first = std::lower_bound(dates, dates + bars.barsize, from) - dates;
  const auto end = std::upper_bound(dates, dates + bars.barsize, to) - dates;
  if (first >= end) throw qv::Error("the chart", "no bars from --from to --to", QV_RECORD_NOT_FOUND);
  const int last = range.last > 0 ? range.last : INT_MAX;
  qv::check(
      qvGraphRange(
          graph, std::max(static_cast<int>(first), static_cast<int>(std::max<std::ptrdiff_t>(end - last, 0))),
          static_cast<int>(end) - 1),
      "the visible bars");
}

int run(const Options& options) {
  checkPictureOptions(options.picture);
  for (const std::string& formula : options.formulas) openCalculation(formula, !options.against.empty());
  RangeOptions loaded;
  loaded.every = options.range.every;
  const qv::Bars bars = loadBars(options.file, options.how, loaded);
  const auto other = loadAgainst(options.against, options.how, options.range.every);
  const qv::runs::GraphPointer graph =
      qv::runs::openGraph(bars, options.title.empty() ? options.file : options.title);
  const auto kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& k) { return k.first == options.kind; });
  qv::check(qvGraphChart(graph.get(), QV_GRAPH_NEW, 0, nullptr, qv::runs::chartKindFor(bars, kind->second), 0,
                         QV_GRAPH_REFER),
            "the chart");
  if (options.volume) {
    const int below = qv::check(qvGraphSubWindow(graph.get(), QV_GRAPH_NEW, "", 1), "the volumes");
    qv::check(qvGraphChart(graph.get(), QV_GRAPH_NEW, below, nullptr, QV_CHART_VOLUME, 0, QV_GRAPH_REFER),
              "the volumes");
  }
  for (const std::string& formula : options.formulas) qv::runs::addFormula(graph.get(), formula, other.get());
  const int scale = options.log ? QV_SCALE_LOG : options.percent ? QV_SCALE_PERCENT : QV_SCALE_LINEAR;
  qv::check(qvGraphScale(graph.get(), 0, QV_SIDE_RIGHT, scale, 0, 0), "the scale");
  setRange(graph.get(), bars, options.range);
  showPicture(graph.get(), options.picture);
  return kDone;
}

}  // namespace

void addChart(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      tool.add("chart", "Draw prices and formulas: a picture, or block characters on the terminal",
               {"qv chart data/text/SPX.CSV --last 250 'sma(50)' 'bollinger(2,20)' 'rsi(14)' 'macd(12,26,9)' "
                "-o spx.svg",
                "qv chart data/text/SPX.CSV --log 'sma(200)' 'close crosses above sma(200)'"},
               [options] { return run(*options); });
  command.add_option("FILE", options->file, "A price file, or DIR/NAME in a vendor's directory")->required();
  command.add_option("FORMULAS", options->formulas, "What to draw with the prices, or below them");
  std::vector<std::string> names;
  names.reserve(kKinds.size());
  for (const auto& [name, kind] : kKinds) names.push_back(name);
  command
      .add_option("--kind", options->kind,
                  "candles, bars, line, area or heikin-ashi; a line where there are only closes")
      ->check(CLI::IsMember(names));
  command.add_flag("--volume", options->volume, "The volumes below the prices");
  command.add_flag("--log", options->log, "A logarithmic scale");
  command.add_flag("--percent", options->percent, "A scale of percentages from the first bar shown");
  command.add_option("--title", options->title, "The title (the file's name)");
  addAgainstOption(command, options->against);
  addPictureOptions(command, options->picture);
  addRangeOptions(command, options->range);
  addFileOptions(command, options->how);
}

}  // namespace qvcli
