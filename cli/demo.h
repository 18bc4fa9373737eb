// `qv demo`: what the library does, chapter by chapter, on the bundled prices.
#pragma once

#include <string>

#include "qvlib60.h"

namespace qvcli {

// What every chapter works on.
struct DemoData {
  std::string directory;  // the bundled data
  QvBars* bars;           // the daily bars of the price file
};

// One function per chapter. They throw std::runtime_error with the library's text on failure.
void showAverages(const DemoData& demo);
void showDataFiles(const DemoData& demo);
void showMomentum(const DemoData& demo);
void showBands(const DemoData& demo);
void showCandles(const DemoData& demo);
void showPointAndFigure(const DemoData& demo);
void showFinance(const DemoData& demo);
void showTrading(const DemoData& demo);
void showStreams(const DemoData& demo);

}  // namespace qvcli
