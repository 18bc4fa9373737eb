// qv pnf: a point-and-figure chart in the terminal.
#include <cmath>
#include <cstdio>
#include <fstream>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/picture.h"
#include "cli/tool.h"
#include "runs/temporary_file.h"

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

// About a hundredth of the price: 1, 2 or 5 times a power of ten.
double usualBox(double price) {
  const double power = std::pow(10.0, std::floor(std::log10(price / 100.0)));
  const double digits = price / 100.0 / power;
  return power * (digits < 2.0 ? 1.0 : digits < 5.0 ? 2.0 : 5.0);
}

// The library writes charts to files only.
void printChart(const qv::Bars& columns, double box) {
  const qv::runs::TemporaryFile file;
  qv::check(qvPNFchart(&columns, box, file.path.string().c_str(), 0), "chart");
  std::ifstream chart(file.path);
  std::string line;
  while (std::getline(chart, line)) {
    if (line.empty()) continue;
    line.erase(line.find_last_not_of(' ') + 1);
    std::printf("%s\n", line.c_str());
  }
}

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
  const double last = bars.close.data[bars.barsize - 1];
  const double box = options.box > 0.0 ? options.box : last > 0.0 ? usualBox(last) : 1.0;
  qv::Bars columns;
  qv::Series columnOf;
  const auto chart = options.hilo ? qvBars2PNFhilo : qvBars2PNF;
  if (chart(&bars, &columns, &columnOf, box, options.reversal, 0) != QV_OK)
    throw qv::Error(options.file,
                    "the price never moves a box of " + fullNumber(box) + ": give a smaller --box",
                    QV_INVALID_PARM);
  const std::string title = titleOf(options, bars, box);
  if (!options.picture.file.empty()) {
    writeChart(options, columns, box, title);
    return kDone;
  }
  if (options.output.form() == Form::Table) {
    std::printf("%s\n", title.c_str());
    printChart(columns, box);
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
