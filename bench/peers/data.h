// The bars that the library and its peers are timed on.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "qvlib60.h"

namespace qvpeers {

inline const std::vector<std::string> kShapes{"walk", "rising", "falling", "constant"};

// n doubles on a boundary of 64 bytes, their pages touched.
struct FreeBlock {
  void operator()(double* block) const { std::free(block); }
};
using Block = std::unique_ptr<double[], FreeBlock>;
Block touchedBlock(int n);

// Input of n bars and room for the outputs. Short series are one of several windows of a longer one, and each
// call takes the next: on the same 5,000 bars again and again the branch predictor knows them by heart, and
// branches look three to six times better than in use.
class Data {
 public:
  Data(int n, const std::string& shape);
  ~Data();
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;

  void rewind() { show(0); }
  void next() { show(window_ + 1 < windows_ ? window_ + 1 : 0); }

  // The candle records of the present window.
  QvCandles* candles();
  // An output with room past the last bar, for spans that lead.
  QvArray* wideOut(int k, int room);

  const int n;
  const std::string shape;
  QvBars bars{};     // the present window
  QvArray second{};  // another close, on the random walk correlated 0.6 with the first
  Block room[5];     // the outputs: all write to the same blocks, for where they lie and what of them is
                     // still near makes up to a fifth of a copy's time
  QvArray out[5]{};  // the library's, in there
  std::vector<int> peerInts;

 private:
  void fill();
  void show(int window);

  int windows_, stride_, window_ = 0;
  Block series_[8];  // date, open, high, low, close, volume, open interest, second
  QvArray wide_[5]{};
  std::vector<QvCandles> candles_;
};

// Keeps the sets of up to 200,000 bars, and the last larger one.
Data& dataOf(int n, const std::string& shape);

}  // namespace qvpeers
