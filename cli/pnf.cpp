// qv pnf: a point-and-figure chart in the terminal.
#include "runs/pnf.h"

#include <cstdio>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/picture.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::string file;
  double box = 0.0, reversal = 3.0;
  bool hilo = false;
  FileOptions how;
  RangeOptions range;
  OutputOptions output;
  PictureOptions picture;
};

std::string titleOf(const Options& options, const qv::Bars& bars, double box) {
  return options.file + ", " + isoDate(bars.date.data[0]) + " to " +
         isoDate(bars.date.data[bars.barsize - 1]) + ", box " + fullNumber(box) + ", reversal " +
         fullNumber(options.reversal) + " boxes, by " + (options.hilo ? "highs and lows" : "closes");
}

void writeChart(const Options& options, const qv::Bars& columns, double box, const std::string& title) {
  const qv::runs::GraphPointer graph = qv::runs::openGraph(columns, title);
  qv::check(qvGraphChart(graph.get(), QV_GRAPH_NEW, 0, nullptr, QV_CHART_PNF, box, QV_GRAPH_REFER),
            "the chart");
  showPicture(graph.get(), options.picture);
}

int run(const Options& options) {
  checkPictureOptions(options.picture);
  const qv::Bars bars = loadBars(options.file, options.how, options.range);
  const qv::runs::PointAndFigure chart =
      qv::runs::pointAndFigure(bars, options.file, options.box, options.reversal, options.hilo);
  const qv::Bars& columns = chart.columns;
  const std::string title = titleOf(options, bars, chart.box);
  if (!options.picture.file.empty()) {
    writeChart(options, columns, chart.box, title);
    return kDone;
  }
  if (options.output.form() == Form::Table) {
    std::printf("%s\n%s", title.c_str(), chart.text.c_str());
    return kDone;
  }
  Rows rows(options.output.form(), {{"column"}, {"date"}, {"direction"}, {"high"}, {"low"}});
  for (int i = 0; i < columns.barsize; ++i)
    rows.add({i + 1.0, Date{columns.date.data[i]},
              std::string(columns.close.data[i] >= columns.open.data[i] ? "X" : "O"), columns.high.data[i],
              columns.low.data[i]});
  rows.print();
  return kDone;
}

}  // namespace

void addPointAndFigure(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("pnf", "Draw a point-and-figure chart",
                               {"qv pnf data/text/SPX.CSV --box 20 --reversal 3 --from 2019-01-01",
                                "qv pnf data/text/SPX.CSV --box 50 -o columns.svg"},
                               [options] { return run(*options); });
  command.add_option("FILE", options->file, "Price file, or DIR/NAME of a security")->required();
  command.add_option("--box", options->box, "Size of a box; about a hundredth of the price unless given")
      ->check(above0());
  command.add_option("--reversal", options->reversal, "Boxes that turn a column")
      ->check(above0())
      ->capture_default_str();
  command.add_flag("--hilo", options->hilo, "By highs and lows instead of closes");
  addPictureOptions(command, options->picture);
  addRangeOptions(command, options->range);
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
