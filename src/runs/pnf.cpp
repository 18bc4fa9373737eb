#include "runs/pnf.h"

#include <cmath>
#include <fstream>

#include "runs/rules.h"
#include "runs/temporary_file.h"

namespace qv::runs {

namespace {

// About a hundredth of the price: 1, 2 or 5 times a power of ten.
double usualBox(double price) {
  if (!(price > 0.0) || !std::isfinite(price)) return 1.0;
  const double power = std::pow(10.0, std::floor(std::log10(price / 100.0)));
  const double digits = price / 100.0 / power;
  return power * (digits < 2.0 ? 1.0 : digits < 5.0 ? 2.0 : 5.0);
}

// The library writes charts to files only.
std::string chartOf(const QvBars& columns, double box) {
  const TemporaryFile file;
  check(qvPNFchart(&columns, box, file.path.string().c_str(), 0), "chart");
  std::ifstream chart(file.path);
  std::string line, text;
  while (std::getline(chart, line)) {
    if (line.empty()) continue;
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

}  // namespace

PointAndFigure pointAndFigure(const QvBars& bars, const std::string& name, double box, double reversal,
                              bool byHighsAndLows) {
  if (bars.barsize < 1) throw Error(name, "no bars", QV_INVALID_PARM);
  PointAndFigure made;
  made.box = box > 0.0 ? box : usualBox(bars.close.data[bars.barsize - 1]);
  const auto draw = byHighsAndLows ? qvBars2PNFhilo : qvBars2PNF;
  const int status = draw(&bars, &made.columns, &made.columnOf, made.box, reversal, 0);
  if (status == QV_MALLOC) throw Error(name, status);
  if (status != QV_OK)
    throw Error(name, "the price never moves a box of " + numberText(made.box) + ": give a smaller box",
                QV_INVALID_PARM);
  made.text = chartOf(made.columns, made.box);
  return made;
}

}  // namespace qv::runs
